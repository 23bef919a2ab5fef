// What the compiler emits, where neither compiling the toys nor the tests on them would show it.
#include "tests/schemac/Emitted.h"

#include "schemac/Names.h"

#include <fmt/format.h>

#include <regex>
#include <set>
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

// The rules of names look at what derivedNames gives, so it must give all that the templates make of an attribute, but
// for the names of its stream adapter: these begin with the stem of the framework, as no attribute may.
TEST(Emitted, NamesAreAllThatStandInTheHeaderForAnAttribute) {
  File const file = good(
      acme + typed("value", "Record", R"({ number = 2, name = "zulu", type = "U32", doc = "d" })") +
      typed("entity", "Part", R"({ number = 258, name = "alpha", type = "Vek::String", fixed = true, doc = "d" })") +
      typed("entity", "Lid", R"({ number = 258, name = "bravo", type = "U8", constant = 1, doc = "d" })") +
      typed("entity", "Whole", R"(
  { number = 258, name = "charlie", type = "U64", increment = true, doc = "d" },
  { number = 259, name = "delta", type = "Vek::String", doc = "d" },
  { number = 260, name = "echo", ordered = "U32", type = "bool", doc = "d" },
  { number = 261, name = "foxtrot", hashed = "U32", type = "bool", doc = "d" },
  { number = 262, name = "golf", child = "Lid", doc = "d" },
  { number = 263, name = "hotel", child = "Part", hashed = "alpha", doc = "d" },)"));
  std::string const header = emit(file, "").header;
  for (Type const& type : file.types) {
    for (Attribute const& a : type.attributes) {
      std::regex const yielded("\\b(?:new|on|Vek)?[" + a.name.substr(0, 1) + upperFirst(a.name)[0] + ']' +
                               a.name.substr(1) + "[A-Za-z]*\\b");
      std::set<std::string> const found(std::sregex_token_iterator(header.begin(), header.end(), yielded),
                                        std::sregex_token_iterator());
      std::vector<std::string> const names = derivedNames(a, type.kind);
      EXPECT_EQ(found, std::set<std::string>(names.begin(), names.end())) << a.name;
    }
  }
}

}  // namespace
}  // namespace Schemac::Test
