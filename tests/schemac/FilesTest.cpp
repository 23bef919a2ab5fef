// Files that are read, whatever stands in them, and files that are written.
#include "schemac/Diff.h"
#include "schemac/Docs.h"
#include "schemac/Write.h"
#include "tests/schemac/Emitted.h"

#include <rapidcheck/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace Schemac::Test {
namespace {

namespace Files = std::filesystem;

std::string contentOf(Files::path const& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

class WriteIfChanged : public testing::Test {
 protected:
  WriteIfChanged() {
    std::string pattern = (Files::temp_directory_path() / "schemac-XXXXXX").string();
    root_ = ::mkdtemp(pattern.data());
  }
  ~WriteIfChanged() override { Files::remove_all(root_); }

  Files::path root_;
};

TEST_F(WriteIfChanged, TouchesNothingThatStaysTheSame) {
  Files::path const path = root_ / "schema" / "deep" / "Toy.h";
  EXPECT_EQ(writeIfChanged(path, "one"), Written::written);
  auto const old = Files::file_time_type::clock::now() - std::chrono::hours(1);
  Files::last_write_time(path, old);
  EXPECT_EQ(writeIfChanged(path, "one"), Written::unchanged);
  EXPECT_EQ(Files::last_write_time(path), old);
  EXPECT_EQ(writeIfChanged(path, "two"), Written::written);
  EXPECT_EQ(contentOf(path), "two");
}

TEST_F(WriteIfChanged, LeavesNothingBehindWhenItFails) {
  Files::create_directory(root_ / "Toy.h");
  std::ofstream(root_ / "Toy.h" / "inhabitant") << 'x';
  EXPECT_THROW(writeIfChanged(root_ / "Toy.h", "text"), FileError);
  EXPECT_THROW(writeIfChanged(root_ / "Toy.h" / "inhabitant" / "Toy.h", "text"), FileError);
  EXPECT_EQ(std::distance(Files::directory_iterator(root_), Files::directory_iterator()), 1);
}

TEST(Read, RefusesFilesThatCannotBeRead) {
  EXPECT_THROW((void)readFile("/nowhere/Toy.toml"), FileError);
  EXPECT_THROW((void)readFile("/"), FileError);
  Complaints const complaints = readFile("/dev/zero").complaints;  // of which no more is taken than is needed
  ASSERT_EQ(complaints.size(), 1u);
  EXPECT_EQ(complaints[0].text, "the file is longer than 1048576 bytes; split it");
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
  RC_ASSERT(!emit(*result.file, "").source.empty());
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

RC_GTEST_PROP(Read, SurvivesMutatedSchemas, ()) {
  static std::vector<std::string> const seeds = {contentOf(sourceDirectory() / "tests/frame/Toy.toml"),
                                                 contentOf(sourceDirectory() / "dornl3/schema/AuditStatus.toml"),
                                                 contentOf(sourceDirectory() / "dornl3/schema/DornL3CliConfig.toml")};
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
