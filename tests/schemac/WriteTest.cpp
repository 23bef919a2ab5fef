#include "schemac/Write.h"

#include "schemac/Read.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace Schemac {
namespace {

namespace Files = std::filesystem;

class WriteIfChanged : public testing::Test {
 protected:
  WriteIfChanged() {
    std::string pattern = (Files::temp_directory_path() / "schemac-XXXXXX").string();
    root_ = ::mkdtemp(pattern.data());
  }
  ~WriteIfChanged() override { Files::remove_all(root_); }

  static std::string contentOf(Files::path const& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }

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

}  // namespace
}  // namespace Schemac
