// What the compiler emits, where neither compiling the toys nor the tests on them would show it.
#include "tests/schemac/Emitted.h"

#include <fmt/format.h>

#include <algorithm>
#include <regex>
#include <sstream>

namespace Schemac::Test {
namespace {

TEST(Emitted, MembersTellTheirDocAndWhatTheyDo) {
  File const toys = toyFile();
  auto const [header, source] = emit(toys, "tests/frame");
  for (Type const& type : toys.types) {
    EXPECT_NE(header.find("/// " + type.doc + "\nclass " + type.name + ' '), std::string::npos) << type.name;
    for (Attribute const& a : type.attributes) {
      if (a.retired()) continue;
      std::string const line = fmt::format("\n  /// {}: {}", a.number, a.doc);
      EXPECT_NE(header.find(line), std::string::npos) << line;
    }
  }
  for (char const* words : {"how far east; 0 to 100 in texts", "HashMap<Shelf, Vek::Name, Shelf>",
                            "Vek::Name key() const { return name(); }", "HashMap<Drawer, Vek::String8, Drawer>"}) {
    EXPECT_NE(header.find(words), std::string::npos) << words;
  }
  EXPECT_NE(source.find("Defined = Vek::List<\n    ToyPoint::_Type,\n    ToyVlan::_Type,\n    Toy::_Type,"),
            std::string::npos);

  // Not what serves logs: nobody calls that but their adapters.
  std::regex const changes(R"((?!.*(ekIs|AttrLog))  [\w:<>]+ (new[A-Z]|(\w+(Is|Inc|Del|DelAll|Notify)\()).*\);)");
  std::istringstream in(header);
  int found = 0;
  for (std::string before, line; std::getline(in, line); before = line) {
    if (!std::regex_match(line, changes)) continue;
    ++found;
    EXPECT_EQ(before.substr(0, 6), "  /// ") << line;
  }
  EXPECT_GT(found, 50);
}

// Emitted code is read, compiled and shipped with each attribute: behaviour that is not its own belongs in a template.
TEST(Emitted, AnAttributeMoreIsAFewLinesMore) {
  auto const lines = [](std::string const& attribute) {
    Emitted const emitted = emit(good(R"(namespace = "Acme"
[[entity]]
name = "Part"
doc = "d"
attributes = [ { number = 258, name = "size", type = "U8", doc = "d" } ]
[[entity]]
name = "Whole"
doc = "d"
attributes = [
  { number = 258, name = "size", type = "U8", doc = "d" },
)" + attribute + "]\n"),
                                 "");
    return std::count(emitted.header.begin(), emitted.header.end(), '\n') +
           std::count(emitted.source.begin(), emitted.source.end(), '\n');
  };
  auto const without = lines("");
  for (auto const& [keys, most] : {std::pair{"type = 'U32', increment = true", 25},
                                   {"type = 'U32', constant = 3", 8},
                                   {"ordered = 'U32', type = 'U32'", 95},
                                   {"child = 'Part'", 55},
                                   {"child = 'Part', hashed = 'name'", 110}}) {
    EXPECT_LE(lines(fmt::format("{{ number = 259, name = 'next', doc = 'd', {} }}\n", keys)) - without, most) << keys;
  }
}

TEST(Emitted, NumbersAreThoseOfTheSchemaAlsoWhereTomlEnds) {
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
