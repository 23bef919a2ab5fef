// The layout of what the compiler emits: that of the house, but for the length of lines, since a template cannot wrap.
#include "tests/schemac/Emitted.h"

#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <memory>
#include <regex>
#include <sstream>

namespace Schemac::Test {
namespace {

// A folder that is gone at the end of the scope.
struct Folder {
  Folder() : path(std::filesystem::path(testing::TempDir()) / ("schemac-format-" + std::to_string(::getpid()))) {
    std::filesystem::create_directories(path);
  }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
  Folder(Folder const&) = delete;
  Folder& operator=(Folder const&) = delete;

  void write(std::string const& name, std::string const& text) const {
    std::ofstream(path / name, std::ios::binary) << text;
  }
  std::filesystem::path const path;
};

struct Outcome {
  int code = 0;
  std::string output;
};

Outcome run(std::string const& command) {
  Outcome outcome;
  std::FILE* const pipe = ::popen((command + " 2>&1").c_str(), "r");
  if (pipe == nullptr) return {-1, "cannot start a shell"};
  char block[4096];
  while (std::size_t const length = std::fread(block, 1, sizeof block, pipe)) outcome.output.append(block, length);
  outcome.code = ::pclose(pipe);
  return outcome;
}

std::string styleWithoutLineLength() {
  std::ifstream in(sourceDirectory() / ".clang-format");
  std::ostringstream style;
  style << in.rdbuf();
  return std::regex_replace(style.str(), std::regex("ColumnLimit: *[0-9]+"), "ColumnLimit: 0");
}

TEST(Format, WhatIsEmittedIsLaidOutAsTheHouseDoes) {
  if (run("clang-format --version").code != 0) {
    GTEST_SKIP() << "clang-format is not installed; scripts/packages.txt lists it";
  }
  Folder const folder;
  std::string const style = styleWithoutLineLength();
  ASSERT_NE(style.find("ColumnLimit: 0"), std::string::npos);
  folder.write(".clang-format", style);
  for (File const& file : allFiles()) {
    Emitted const emitted = emit(file, "dornl3/schema");
    folder.write(file.stem + ".h", emitted.header);
    folder.write(file.stem + ".cpp", emitted.source);
  }
  Outcome const checked = run("cd '" + folder.path.string() + "' && clang-format --dry-run -Werror *.h *.cpp");
  EXPECT_EQ(checked.code, 0) << checked.output;
}

}  // namespace
}  // namespace Schemac::Test
