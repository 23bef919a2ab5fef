// Assertion: a programming error stops the process where it happens, in release builds too.
// Thread: any. It does not return.
#pragma once

// The C library declares it only where assert() is not switched off.
// NOLINTNEXTLINE(readability-redundant-declaration)
extern "C" [[gnu::noreturn]] void __assert_fail(char const* assertion, char const* file, unsigned line,
                                                char const* function) noexcept;

namespace Vek {

/// Stops the process as a failed assert() does, in the name of the caller.
[[noreturn]] inline void assertionFailed(char const* assertion, char const* file, unsigned line,
                                         char const* function = __builtin_FUNCTION()) noexcept {
  __assert_fail(assertion, file, line, function);
}

}  // namespace Vek
