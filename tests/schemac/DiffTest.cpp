#include "schemac/Diff.h"

#include "tests/schemac/Schemas.h"

#include <gmock/gmock.h>

namespace Schemac::Test {
namespace {

// A value, an entity that uses it, and a child; each test changes one thing.
constexpr std::string_view before = R"(namespace = 'Acme'
[[value]]
name = 'Sizes'
doc = 'sizes'
attributes = [
  { number = 2, name = 'small', type = 'U8', doc = 'small' },
  { number = 3, name = 'large', type = 'U8', min = 3, max = 5, default = 4, doc = 'large' },
]
[[entity]]
name = 'Part'
doc = 'a part'
attributes = [
  { number = 258, name = 'mode', type = 'U32', doc = 'mode' },
]
[[entity]]
name = 'Whole'
doc = 'all of it'
attributes = [
  { number = 258, name = 'count', type = 'U64', doc = 'count' },
  { number = 259, retired = true },
  { number = 260, name = 'banks', hashed = 'U32', type = 'bool', doc = 'banks' },
  { number = 261, name = 'part', child = 'Part', doc = 'part' },
]
[[entity]]
name = 'Slot'
doc = 'a slot'
attributes = [
  { number = 258, name = 'label', type = 'Vek::String', fixed = true, doc = 'label' },
  { number = 259, name = 'used', type = 'bool', doc = 'used' },
  { number = 260, name = 'rows', type = 'U32', constant = 4, doc = 'rows' },
]
[[entity]]
name = 'Lid'
doc = 'a lid'
attributes = [
  { number = 258, name = 'mode', type = 'U32', doc = 'mode' },
]
)";

struct Change {
  char const* situation;
  std::vector<std::pair<std::string, std::string>> edits;
  std::vector<std::string> told;
};

std::string edited(std::vector<std::pair<std::string, std::string>> const& edits) {
  std::string text(before);
  for (auto const& [from, to] : edits) {
    std::size_t const at = text.find(from);
    if (at == std::string::npos) throw std::logic_error("the schema has no " + from);
    text.replace(at, from.size(), to);
  }
  return text;
}

std::string const countLine = "  { number = 258, name = 'count', type = 'U64', doc = 'count' },";
std::string const partLine = "  { number = 261, name = 'part', child = 'Part', doc = 'part' },";
std::string const largeLine =
    "  { number = 3, name = 'large', type = 'U8', min = 3, max = 5, default = 4, doc = 'large' },";
std::string const rowsLine = "  { number = 260, name = 'rows', type = 'U32', constant = 4, doc = 'rows' },";
std::string const banksLine = "  { number = 260, name = 'banks', hashed = 'U32', type = 'bool', doc = 'banks' },";

std::vector<Change> const changes = {
    {"nothing", {}, {}},
    {"another doc", {{"'count' }", "'how many' }"}}, {}},
    {"another namespace",
     {{"'Acme'", "'Other'"}},
     {"breaks: all types move from namespace 'Acme' to 'Other'; peers know them by their full names"}},
    {"a type is gone",
     {{partLine, ""},
      {"[[entity]]\nname = 'Part'", "[[entity]]\nname = 'Piece'"},
      {"'mode', type = 'U32'", "'mode', type = 'U8'"}},
     {"breaks: type 'Part' is gone", "breaks: 'Whole.part' is gone; hold its place: { number = 261, retired = true }",
      "note: type 'Piece' is new"}},
    {"a type like another is gone",
     {{"[[entity]]\nname = 'Lid'\ndoc = 'a lid'\nattributes = [\n"
       "  { number = 258, name = 'mode', type = 'U32', doc = 'mode' },\n]\n",
       ""}},
     {"breaks: type 'Lid' is gone"}},
    {"a type is renamed",
     {{"'Part'\ndoc", "'Piece'\ndoc"}, {"child = 'Part'", "child = 'Piece'"}},
     {"breaks: type 'Part' is called 'Piece' now; peers know it by its old name",
      "breaks: 'Whole.part' was a child of Part and is a child of Piece"}},
    {"a value becomes an entity",
     {{"[[value]]", "[[entity]]"},
      {"number = 2,", "number = 258,"},
      {"number = 3,", "number = 259,"},
      {"min = 3, max = 5, ", ""}},
     {"breaks: 'Sizes' was a value and is an entity"}},
    {"an attribute of an entity is retired",
     {{countLine, "  { number = 258, retired = true },"}},
     {"note: 'Whole.count' is retired"}},
    {"an attribute of a value is retired",
     {{largeLine, "  { number = 3, retired = true },"}},
     {"breaks: 'Sizes.large' is retired"}},
    {"an attribute is renumbered",
     {{banksLine, ""}, {partLine, "  { number = 260, name = 'part', child = 'Part', doc = 'part' },"}},
     {"breaks: 'Whole.banks' is gone, and its number 260 went to 'part'",
      "breaks: 'Whole.part' has number 260 and had 261"}},
    {"an attribute is renamed",
     {{"name = 'count'", "name = 'total'"}},
     {"breaks: 'Whole.count' is called 'total' now; texts and the generic interface know it by its old name"}},
    {"another type",
     {{"type = 'U64'", "type = 'U32'"}},
     {"breaks: 'Whole.count' was a scalar of U64 and is a scalar of U32"}},
    {"another key",
     {{"hashed = 'U32'", "hashed = 'Vek::String'"}},
     {"breaks: 'Whole.banks' was a hashed collection of bool by U32 and is a hashed collection of bool by "
      "Vek::String"}},
    {"another constant",
     {{"constant = 4", "constant = 5"}},
     {"breaks: 'Slot.rows' was a constant of U32 = 4 and is a constant of U32 = 5"}},
    {"another shape",
     {{"hashed = 'U32'", "ordered = 'U32'"}},
     {"breaks: 'Whole.banks' was a hashed collection of bool by U32 and is an ordered collection of bool by U32"}},
    {"a range where there was none",
     {{"'small', type = 'U8'", "'small', type = 'U8', min = 1, max = 255, default = 2"}},
     {"note: 'Sizes.small' had no default and has default 2",
      "breaks: the range of 'Sizes.small' is narrowed, 0 to 255 before and 1 to 255 now: texts of peers that go beyond "
      "it are refused"}},
    {"another range",
     {{"min = 3, max = 5", "min = 4, max = 6"}},
     {"breaks: the range of 'Sizes.large' is moved, 3 to 5 before and 4 to 6 now: texts of peers that go beyond it are "
      "refused"}},
    {"no range any more",
     {{"min = 3, max = 5, ", ""}},
     {"note: the range of 'Sizes.large' is widened, 3 to 5 before and 0 to 255 now: peers refuse texts that go beyond "
      "theirs"}},
    {"a range that takes in all", {{"'small', type = 'U8'", "'small', type = 'U8', min = 0, max = 255"}}, {}},
    {"a constructor argument more",
     {{rowsLine, rowsLine + "  { number = 261, name = 'row', type = 'Vek::String', fixed = true, doc = 'row' },"}},
     {"breaks: 'Slot.row' is new: peers make the entity without it"}},
    {"a constructor argument less",
     {{"number = 258, name = 'label', type = 'Vek::String', fixed = true, doc = 'label'",
       "number = 258, retired = true"}},
     {"breaks: 'Slot.label' is retired"}},
    {"an attribute more",
     {{partLine, partLine + "  { number = 262, name = 'mode', type = 'bool', doc = 'mode' },"}},
     {"note: 'Whole.mode' is new"}},
    {"an attribute more in a value",
     {{largeLine, largeLine + "  { number = 4, name = 'huge', type = 'bool', doc = 'huge' },"}},
     {"breaks: 'Sizes.huge' is new: peers know a shorter record"}},
    {"a retired number is used again",
     {{"number = 259, retired = true", "number = 259, name = 'again', type = 'bool', doc = 'again'"}},
     {"breaks: 'Whole.again' takes number 259, which is retired; take a new one"}},
    {"a value becomes bare",
     {{"[[value]]", "[[value]]\nbare = true"}, {largeLine, ""}},
     {"breaks: the text of 'Sizes' has another form: 'bare' was added",
      "breaks: 'Sizes.large' is gone; hold its place: { number = 3, retired = true }"}},
};

TEST(Diff, TellsWhatAChangeDoesToPeersOfTheOldSchema) {
  File const was = good(before, "Old.toml");
  for (Change const& change : changes) {
    std::vector<Difference> const differences = diff(was, good(edited(change.edits), "New.toml"));
    std::vector<std::string> told;
    bool anyBreak = false;
    for (Difference const& d : differences) {
      std::string const line = toString(d);
      told.push_back(line.substr(line.find(": ") + 2));
      anyBreak = anyBreak || told.back().compare(0, 6, "breaks") == 0;
    }
    EXPECT_THAT(told, testing::UnorderedElementsAreArray(change.told)) << change.situation;
    EXPECT_EQ(breaks(differences), anyBreak) << change.situation;
  }
}

TEST(Diff, PointsIntoTheNewFileAndForWhatIsGoneIntoTheOld) {
  File const was = good(before, "Old.toml");
  File const is = good(edited({{"name = 'count'", "name = 'total'"}, {partLine, ""}}), "New.toml");
  std::vector<Difference> const differences = diff(was, is);
  ASSERT_EQ(differences.size(), 2u);
  EXPECT_EQ(toString(differences[0]).substr(0, 14), "New.toml:19:26");
  EXPECT_EQ(toString(differences[1]).substr(0, 14), "Old.toml:22:14");
}

}  // namespace
}  // namespace Schemac::Test
