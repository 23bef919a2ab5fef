// Each file of rejects/ breaks one rule. The complaints it must raise stand as comments at the end of the faulty lines;
// one that ends in "..." is compared as far as it goes.
#include "tests/schemac/Schemas.h"

#include <fmt/format.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>

namespace Schemac::Test {
namespace {

using Lines = std::vector<std::string>;  // "7: what is wrong"

std::string contentOf(std::filesystem::path const& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

Lines expectedIn(std::string const& text) {
  constexpr std::string_view mark = "  # error: ";
  Lines expected;
  std::istringstream in(text);
  std::string line;
  for (int number = 1; std::getline(in, line); ++number) {
    for (std::size_t at = line.find(mark); at != std::string::npos;) {
      std::size_t const next = line.find(mark, at + 1);
      std::size_t const begin = at + mark.size();
      expected.push_back(
          fmt::format("{}: {}", number, line.substr(begin, next == std::string::npos ? next : next - begin)));
      at = next;
    }
  }
  return expected;
}

Lines foundIn(std::filesystem::path const& path, std::string const& text) {
  Lines found;
  for (Complaint const& c : complaintsOf(path.filename().string(), text)) {
    found.push_back(fmt::format("{}: {}", c.at.line, c.text));
  }
  return found;
}

bool says(std::string const& found, std::string const& expected) {
  if (expected.size() < 3 || expected.substr(expected.size() - 3) != "...") return found == expected;
  return found.compare(0, expected.size() - 3, expected, 0, expected.size() - 3) == 0;
}

std::vector<std::filesystem::path> rejectFiles() {
  std::vector<std::filesystem::path> files;
  for (auto const& entry : std::filesystem::directory_iterator(sourceDirectory() / "tests/schemac/rejects")) {
    files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

class Rejects : public testing::TestWithParam<std::filesystem::path> {};

TEST_P(Rejects, AreToldWhatIsWrongWhereItIsWrong) {
  std::string const text = contentOf(GetParam());
  Lines const expected = expectedIn(text);
  Lines const found = foundIn(GetParam(), text);
  ASSERT_FALSE(expected.empty());
  EXPECT_TRUE(std::equal(found.begin(), found.end(), expected.begin(), expected.end(), says))
      << "found\n  " << fmt::format("{}", fmt::join(found, "\n  ")) << "\nexpected\n  "
      << fmt::format("{}", fmt::join(expected, "\n  "));
}

INSTANTIATE_TEST_SUITE_P(All, Rejects, testing::ValuesIn(rejectFiles()), [](auto const& reject) {
  std::string name = reject.param.stem().string();
  std::replace_if(
      name.begin(), name.end(), [](char c) { return c == '-'; }, '_');
  return name;
});

}  // namespace
}  // namespace Schemac::Test
