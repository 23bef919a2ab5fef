// The schemas that stand in documents as ```toml blocks, and as ```toml refused with the complaints that they must
// draw: comments "# error: ..." below the faulty line. rejects.md has what the documents do not show.
#include "tests/schemac/Emitted.h"

#include <fmt/format.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <ostream>
#include <sstream>

namespace Schemac::Test {
namespace {

struct Example {
  std::string place;  // "README.md:91"
  std::string text;   // a whole schema file
};

void PrintTo(Example const& example, std::ostream* out) { *out << example.place; }

// The block as a whole file: attributes alone get a type around them, types alone a namespace, a namespace alone a
// type.
std::string completed(std::string const& block) {
  std::string const nameSpace = "namespace = \"Acme\"\n";
  std::string const rest = "name = \"Toy\"\ndoc = \"a toy\"\nattributes = [\n";
  if (block.rfind("{ number = 2,", 0) == 0) return nameSpace + "[[value]]\n" + rest + block + "]\n";
  if (block[0] == '{') return nameSpace + "[[entity]]\n" + rest + block + "]\n";
  if (block[0] == '[') return nameSpace + block;
  if (block.find('[') != std::string::npos) return block;
  return block + "[[value]]\n" + rest + "{ number = 2, name = \"a\", type = \"U8\", doc = \"a\" } ]\n";
}

// The blocks that begin with the line `fence`.
std::vector<Example> examplesIn(std::initializer_list<char const*> files, std::string const& fence) {
  std::vector<Example> examples;
  for (char const* file : files) {
    std::ifstream in(sourceDirectory() / file);
    std::string const all{std::istreambuf_iterator<char>(in), {}};
    for (std::size_t at = all.find(fence); at != std::string::npos; at = all.find(fence, at + 1)) {
      std::size_t const begin = at + fence.size();
      examples.push_back(
          {fmt::format("{}:{}", file, std::count(all.begin(), all.begin() + static_cast<long>(begin), '\n')),
           completed(all.substr(begin, all.find("```", begin) - begin))});
    }
  }
  return examples;
}

TEST(Examples, OfTheDocumentsAreCompiled) {
  std::vector<Example> const examples =
      examplesIn({"docs/schema.md", "docs/architecture.md", "README.md"}, "```toml\n");
  EXPECT_GE(examples.size(), 10u);
  for (Example const& example : examples) {
    SCOPED_TRACE(example.place);
    Complaints const complaints = complaintsOf("Toy.toml", example.text);
    for (Complaint const& complaint : complaints) ADD_FAILURE() << toString(complaint);
    if (!complaints.empty()) continue;
    EXPECT_NE(emit(good(example.text), "").source.find("loadSchemaFile(vekInitToy, Defined{})"), std::string::npos);
  }
}

class RefusedExamples : public testing::TestWithParam<Example> {};

std::vector<std::string> quotedIn(std::string const& schema) {
  std::vector<std::string> complaints;
  std::istringstream in(schema);
  int faulty = 0;
  int number = 0;
  for (std::string line; std::getline(in, line);) {
    ++number;
    constexpr std::string_view mark = "# error: ";
    if (line.rfind(mark, 0) == 0) {
      complaints.push_back(fmt::format("{}: {}", faulty, line.substr(mark.size())));
    } else {
      faulty = number;
    }
  }
  return complaints;
}

// A quotation may break off in "...".
bool says(std::string const& found, std::string const& quoted) {
  if (quoted.size() < 3 || quoted.substr(quoted.size() - 3) != "...") return found == quoted;
  return found.compare(0, quoted.size() - 3, quoted, 0, quoted.size() - 3) == 0;
}

TEST_P(RefusedExamples, DrawTheComplaintsThatTheyQuote) {
  std::vector<std::string> const quoted = quotedIn(GetParam().text);
  std::vector<std::string> found;
  for (Complaint const& c : complaintsOf("Toy.toml", GetParam().text)) {
    found.push_back(fmt::format("{}: {}", c.at.line, c.text));
  }
  ASSERT_FALSE(quoted.empty());
  EXPECT_TRUE(std::equal(found.begin(), found.end(), quoted.begin(), quoted.end(), says))
      << "found\n  " << fmt::format("{}", fmt::join(found, "\n  ")) << "\nquoted\n  "
      << fmt::format("{}", fmt::join(quoted, "\n  "));
}

INSTANTIATE_TEST_SUITE_P(All, RefusedExamples,
                         testing::ValuesIn(examplesIn({"docs/schema.md", "tests/schemac/rejects.md"},
                                                      "```toml refused\n")));

}  // namespace
}  // namespace Schemac::Test
