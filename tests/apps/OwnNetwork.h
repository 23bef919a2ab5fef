// OwnNetwork: an empty network namespace for a test, and 'ip' to furnish it.
#pragma once

#include <gtest/gtest.h>
#include <sched.h>

#include <cstdio>
#include <string>
#include <thread>

namespace Apps {

// Runs `body` on a thread that has an empty network namespace for itself; the programs it starts share it.
// Skips the test if this process may not make one.
template <class Body>
void inOwnNetwork(Body&& body) {
  bool made = false;
  std::thread{[&] {
    made = unshare(CLONE_NEWNET) == 0;
    if (made) body();
  }}.join();
  if (!made) GTEST_SKIP() << "making a network namespace is not permitted: run the test as root";
}

// Has 'ip -batch' carry out the lines. True if all of them succeed.
inline bool ip(std::string const& lines, char const* command = "ip -batch -") {
  FILE* pipe = popen(command, "w");
  if (pipe == nullptr) return false;
  bool const written = std::fwrite(lines.data(), 1, lines.size(), pipe) == lines.size();
  return pclose(pipe) == 0 && written;
}

}  // namespace Apps
