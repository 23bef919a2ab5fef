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

TEST(Emitted, NumbersAreThoseOfTheSchemaAlsoWhereTomlEnds) {
  Emitted const emitted =
      emit(good(acme +
                typed("value", "Duty",
                      R"({ number = 2, name = "share", type = "U8", min = 3, max = 7, default = 4, doc = "d" })") +
                typed("entity", "Fan", R"(
  { number = 258, name = "serial", type = "U64", default = "18446744073709551615", doc = "d" },
  { number = 259, name = "none", type = "U64", constant = "9223372036854775808", doc = "d" },)")),
           "");
  for (char const* line :
       {" share_ = 4;", " serial_ = 18446744073709551615u;", " none() { return 9223372036854775808u; }"})
    EXPECT_NE(emitted.header.find(line), std::string::npos) << line;
  for (char const* line : {"#include \"Toy.h\"\n", " min = 3;", " max = 7;", " constant = 9223372036854775808u;"})
    EXPECT_NE(emitted.source.find(line), std::string::npos) << line;
}

}  // namespace
}  // namespace Schemac::Test
