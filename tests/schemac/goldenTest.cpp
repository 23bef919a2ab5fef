// What the compiler emits: for the toys byte by byte, for all files how much.
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

// How many lines a type may cost its reader, header and source together.
int budget(Type const& type) {
  if (!type.isEntity()) return 96 + 8 * static_cast<int>(type.attributes.size());
  int lines = 220;
  for (Attribute const& a : type.attributes) {
    switch (a.shape) {
    case Shape::retired: break;
    case Shape::child: lines += 40; break;
    case Shape::ordered:
    case Shape::hashed:
    case Shape::childCollection: lines += 80; break;
    default: lines += 20; break;
    }
  }
  return lines;
}

TEST(Golden, NoTypeCostsMoreLinesThanItsBudget) {
  for (File const& file : allFiles()) {
    // A type costs what the file grows by with it; it names none that is defined behind it.
    File part = file;
    part.types.clear();
    int before = emit(part, "dornl3/schema").lines();
    for (Type const& type : file.types) {
      part.types.push_back(type);
      int const now = emit(part, "dornl3/schema").lines();
      EXPECT_LE(now - before, budget(type)) << file.stem << ", " << type.name << ": shorten the templates";
      before = now;
    }
  }
}

}  // namespace
}  // namespace Schemac::Test
