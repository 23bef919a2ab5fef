// Assertion: a programming error stops the process where it happens, in release builds too.
// Thread: any. It does not return.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace Vek {

/// Prints the broken assertion in the manner of the C library's assert() and aborts.
[[noreturn]] inline void assertionFailed(char const* assertion, char const* file, unsigned line) noexcept {
  std::fprintf(stderr, "%s:%u: Assertion `%s' failed.\n", file, line, assertion);
  std::abort();
}

}  // namespace Vek
