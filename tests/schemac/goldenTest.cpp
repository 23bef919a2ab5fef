// What the compiler emits: for the toys byte by byte.
#include "tests/schemac/Emitted.h"

#include <fmt/format.h>

#include <fstream>
#include <iterator>
#include <sstream>

namespace Schemac::Test {
namespace {

// Where two texts first differ, as a person looks for it; empty where they do not.
std::string firstDifference(std::string const& kept, std::string const& emitted) {
  if (kept == emitted) return {};
  std::istringstream before(kept);
  std::istringstream after(emitted);
  for (int number = 1;; ++number) {
    std::string was;
    std::string is;
    bool const more = !std::getline(before, was).fail();
    bool const moreNow = !std::getline(after, is).fail();
    if (was != is || more != moreNow || !more)
      return fmt::format("line {}\n  kept:    {}\n  emitted: {}", number, was, is);
  }
}

void expectGolden(char const* file, std::string const& emitted) {
  std::ifstream in(sourceDirectory() / file, std::ios::binary);
  std::string const kept{std::istreambuf_iterator<char>(in), {}};
  std::string const difference = firstDifference(kept, emitted);
  EXPECT_TRUE(difference.empty()) << file << " is not what Toy.toml yields, from " << difference
                                  << "\nIf the new form is meant, make it anew, from the root of the sources: schemac "
                                     "compile --out . --include-prefix tests/frame tests/frame/Toy.toml";
}

TEST(Golden, TheToysAreEmittedAsTheyAreKept) {
  ASSERT_TRUE(readFile(sourceDirectory() / "tests/frame/Toy.toml").complaints.empty());
  ASSERT_TRUE(check({toyFile()}).empty());
  Emitted const toys = emit(toyFile(), "tests/frame");
  expectGolden("tests/frame/Toy.h", toys.header);
  expectGolden("tests/frame/Toy.cpp", toys.source);
}

TEST(Golden, NumbersAreThoseOfTheSchemaAlsoWhereTomlEnds) {
  Emitted const emitted = emit(good(R"(namespace = "Acme"
[[value]]
name = "Duty"
doc = "d"
attributes = [ { number = 2, name = "share", type = "U8", min = 3, max = 7, default = 4, doc = "d" } ]
[[entity]]
name = "Fan"
doc = "d"
attributes = [
  { number = 258, name = "serial", type = "U64", default = "18446744073709551615", doc = "d" },
  { number = 259, name = "none", type = "U64", constant = "9223372036854775808", doc = "d" },
]
)"),
                               "");
  for (char const* line :
       {" share_ = 4;", " serial_ = 18446744073709551615u;", " none() { return 9223372036854775808u; }"})
    EXPECT_NE(emitted.header.find(line), std::string::npos) << line;
  for (char const* line : {"#include \"Toy.h\"\n", " min = 3;", " max = 7;", " constant = 9223372036854775808u;"})
    EXPECT_NE(emitted.source.find(line), std::string::npos) << line;
}

}  // namespace
}  // namespace Schemac::Test
