#include "schemac/Diff.h"
#include "schemac/Docs.h"
#include "tests/schemac/Schemas.h"

#include <fmt/format.h>
#include <rapidcheck/gtest.h>

#include <fstream>
#include <iterator>

namespace Schemac::Test {
namespace {

constexpr std::string_view everyShape = R"(namespace = "Acme::Net"
doc = "Toys."

[[entity]]
name = "Part"
doc = "a part"
attributes = [
  { number = 258, name = "slotName", type = "Vek::String", fixed = true, doc = "its slot" },
]

[[value]]
name = "Sizes"
doc = "sizes"
attributes = [
  { number = 2, name = "small", type = "U8", min = 1, max = 9, default = 4, doc = "the small one" },
]

[[entity]]
name = "Whole"
factory = "wholeFactory"
doc = "all of it"
attributes = [
  { number = 258, name = "count",  type = "U64", increment = true, doc = "a scalar" },
  { number = 259, name = "title",  type = "Vek::String", default = "none", doc = "a text" },
  { number = 260, name = "start",  type = "bool", constant = true, doc = "a constant" },
  { number = 261, retired = true },
  { number = 262, name = "banks",  ordered = "U32", type = "Sizes", doc = "ordered" },
  { number = 263, name = "marks",  hashed = "Vek::String", type = "bool", doc = "hashed" },
  { number = 264, name = "parts",  child = "Part", hashed = "slotName", doc = "children" },
]
)";

TEST(Read, KeepsWhereEachKeyStands) {
  Attribute const small = good(everyShape).types[1].attributes[0];
  EXPECT_EQ(small.where("name"), (SourcePosition{15, 24}));
  EXPECT_EQ(small.where("increment"), small.at);  // not given: the attribute itself
}

TEST(Read, ComplainsAboutALineThatIsTooLong) {
  std::string const text = "namespace = \"Acme\"\n# " + std::string(maxLineLength, 'x') + "\n";
  Complaints const complaints = complaintsOf("Toy.toml", text);
  ASSERT_EQ(complaints.size(), 1u);
  EXPECT_EQ(toString(complaints[0]), "Toy.toml:2:1: error: line is longer than 2000 bytes; break it");
}

TEST(Read, RefusesFilesThatCannotBeReadAndEndlessOnes) {
  EXPECT_THROW((void)readFile("/nowhere/Toy.toml"), FileError);
  EXPECT_THROW((void)readFile("/"), FileError);
  EXPECT_THROW((void)readFile("/dev/zero"), FileError);
}

TEST(Check, SeesAllFilesTogether) {
  std::string const second = R"(namespace = "Acme"
[[value]]
name = "Net"
doc = "hides a namespace"
attributes = [ { number = 2, name = "size", type = "U32", doc = "a size" } ]
)";
  File const first = good(everyShape, "one/Toy.toml");
  Complaints const complaints =
      check({first, *readText("two/Toy.toml", second).file, *readText("Three.toml", everyShape).file});
  std::vector<std::string> told;
  for (Complaint const& c : complaints) told.push_back(toString(c));
  std::vector<std::string> const expected = {
      "Three.toml:5:8: error: type 'Acme::Net::Part' is defined already in one/Toy.toml:5; choose another name",
      "Three.toml:12:8: error: type 'Acme::Net::Sizes' is defined already in one/Toy.toml:12; choose another name",
      "Three.toml:19:8: error: type 'Acme::Net::Whole' is defined already in one/Toy.toml:19; choose another name",
      "Three.toml:20:11: error: factory 'Acme::Net::wholeFactory' is defined already in one/Toy.toml:20; choose "
      "another name",
      "two/Toy.toml:1:1: error: file name 'Toy' is defined already in one/Toy.toml:1; choose another name",
      "two/Toy.toml:3:8: error: type 'Acme::Net' is a namespace of one/Toy.toml; choose another name",
  };
  EXPECT_EQ(told, expected);
}

TEST(Check, LimitsTypesAndAttributes) {
  std::string types = "namespace = \"Acme\"\n";
  for (std::size_t i = 0; i <= maxTypes; ++i) {
    types += fmt::format("[[value]]\nname = \"T{}\"\ndoc = \"t\"\n"
                         "attributes = [ {{ number = 2, name = \"a\", type = \"bool\", doc = \"a\" }} ]\n",
                         i);
  }
  std::string attributes = "namespace = \"Acme\"\n[[value]]\nname = \"T\"\ndoc = \"t\"\nattributes = [\n";
  for (std::size_t i = 0; i <= maxAttributes; ++i) {
    attributes += fmt::format("  {{ number = {0}, name = \"a{0}\", type = \"bool\", doc = \"a\" }},\n", i + 2);
  }
  auto const onlyComplaint = [](std::string const& text) {
    Complaints const found = complaintsOf("Toy.toml", text);
    return found.size() == 1 ? found[0].text : fmt::format("{} complaints", found.size());
  };
  EXPECT_EQ(onlyComplaint(types), "the file has 257 types; write at most 256");
  EXPECT_EQ(onlyComplaint(attributes + "]\n"), "'T' has 513 attributes; write at most 512");
}

// Whatever stands in a file, it is read, checked and, if nothing is wrong, worked with; it never ends the program.
void surviveText(std::string const& text) {
  ReadResult const result = readText("Toy.toml", text);
  if (!result.file) {
    RC_ASSERT(!result.complaints.empty());
    return;
  }
  Complaints const complaints = check({*result.file});
  if (!result.complaints.empty() || !complaints.empty()) return;
  RC_ASSERT(!docsOf(*result.file).empty());
  RC_ASSERT(diff(*result.file, *result.file).empty());
}

TEST(Read, SurvivesWhatNobodyWouldWrite) {
  std::string const head = "namespace = \"Acme\"\n";
  auto const repeat = [](std::string_view part, std::size_t times) {
    std::string text;
    for (std::size_t i = 0; i < times; ++i) text += part;
    return text;
  };
  std::vector<std::string> const texts = {
      "",
      std::string(1, '\0'),
      "\xff\xfe\x00binary",
      head + "x = " + repeat("[", 1900) + "\n",
      head + "x = " + repeat("{ a = ", 300) + "\n",
      head + repeat("a.", 990) + "a = 1\n",
      head + "[" + repeat("a.", 990) + "a]\n" + repeat("b.", 990) + "b = 1\n",
      head + repeat("[[value]]\n", 5000),
      head + "[[value]]\nattributes = [ { number = 99999999999999999999 } ]\n",
      head + "[[value]]\nattributes = [ { number = 9223372036854775807 } ]\n",
      head + "[[value]]\nattributes = [ { number = -9223372036854775808 } ]\n",
      head + "[[value]]\nattributes = [ { number = 1e999, name = 1979-05-27 } ]\n",
      head + "[[value]]\nname = \"\"\"\n",
  };
  for (std::string const& text : texts) {
    EXPECT_FALSE(complaintsOf("Toy.toml", text).empty()) << text.substr(0, 60);
  }
}

std::string houseText(std::string const& stem) {
  std::ifstream in(sourceDirectory() / "dornl3/schema" / (stem + ".toml"), std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

RC_GTEST_PROP(Read, SurvivesMutatedSchemas, ()) {
  static std::vector<std::string> const seeds = {std::string(everyShape), houseText("AuditStatus"),
                                                 houseText("AclIntf"), houseText("DornL3CliConfig")};
  static std::vector<std::string> const tokens = [] {
    std::vector<std::string> all{
        "[[value]]\n",        "[[entity]]\n",     "258",   "-1", "inf", "true", "fixed = true, ", "child = \"Part\", ",
        "hashed = \"U32\", ", "retired = true, ", "\"\"\""};
    for (char const mark : std::string_view("{}[]\"=,#\n'.\\\xc3")) all.emplace_back(1, mark);
    return all;
  }();
  std::string text = *rc::gen::elementOf(seeds);
  int const edits = *rc::gen::inRange(1, 6);
  for (int i = 0; i < edits && !text.empty(); ++i) {
    auto const at = *rc::gen::inRange<std::size_t>(0, text.size());
    auto const length = std::min(*rc::gen::inRange<std::size_t>(0, 40), text.size() - at);
    switch (*rc::gen::inRange(0, 5)) {
    case 0: text.erase(at, length); break;
    case 1: text.insert(at, *rc::gen::elementOf(tokens)); break;
    case 2: text[at] = *rc::gen::arbitrary<char>(); break;
    case 3: text.insert(at, text.substr(*rc::gen::inRange<std::size_t>(0, text.size()), length)); break;
    default: text.resize(at); break;
    }
  }
  surviveText(text);
}

}  // namespace
}  // namespace Schemac::Test
