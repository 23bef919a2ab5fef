// Command: a command of the shell, of which "dornl3" is the program under test, with its output to be read line by
// line.
#pragma once

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <string>
#include <utility>

namespace Apps {

class Command {
 public:
  explicit Command(std::string const& line)
      : pipe_{popen(("dornl3() { " DORNL3_PROGRAM " \"$@\"; }; exec 2>&1; " + line).c_str(), "r")} {}
  Command(Command const&) = delete;
  Command& operator=(Command const&) = delete;
  ~Command() {
    if (pipe_ != nullptr) pclose(pipe_);
  }

  std::string line() {
    std::array<char, 4096> buffer{};
    return std::fgets(buffer.data(), static_cast<int>(buffer.size()), pipe_) == nullptr ? "" : buffer.data();
  }
  // Reads what is left; the exit status.
  int finish() {
    while (!line().empty()) {
    }
    int const status = pclose(std::exchange(pipe_, nullptr));
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  FILE* pipe_;
};

}  // namespace Apps
