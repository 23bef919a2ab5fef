#include "schemac/Names.h"

#include "tests/schemac/Emitted.h"

#include <regex>
#include <set>

namespace Schemac::Test {
namespace {

// The rules of names look at what derivedNames gives, so it must give all that the templates make of an attribute, but
// for the names of its stream adapter: these begin with the stem of the framework, as no attribute may.
TEST(Names, AreAllThatStandInTheHeaderForAnAttribute) {
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
