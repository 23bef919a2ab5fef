// BitSet: N named positions in one word of type T.
// Owner: it is a plain value. Thread: its owner's.
#pragma once

#include "dornl3/core/Assertion.h"

namespace Vek {

template <int N, class T>
class BitSet {
  static_assert(N > 0 && N <= static_cast<int>(8 * sizeof(T)));

 public:
  static constexpr int bits = N;

  constexpr BitSet() noexcept = default;
  constexpr explicit BitSet(T word) noexcept : word_(word) {}

  /// The positions as one word, position 0 being the lowest bit.
  [[nodiscard]] constexpr T word() const noexcept { return word_; }

  [[nodiscard]] constexpr bool operator==(BitSet const&) const noexcept = default;

  [[nodiscard]] bool operator[](int pos) const noexcept {
    check(pos, 31);
    return (word_ & mask(pos)) != 0;
  }

  /// Sets one position. A position outside 0 to N-1 stops the process.
  void set(int pos) noexcept {
    check(pos, 37);
    word_ = static_cast<T>(word_ | mask(pos));
  }

  /// Clears one position. A position outside 0 to N-1 stops the process.
  void reset(int pos) noexcept {
    check(pos, 43);
    word_ = static_cast<T>(word_ & static_cast<T>(~mask(pos)));
  }

 private:
  static constexpr T mask(int pos) noexcept { return static_cast<T>(T{1} << pos); }

  // The line numbers are part of the message that support scripts look for; they name operations, not lines here.
  static void check(int pos, unsigned line, char const* function = __builtin_FUNCTION()) noexcept {
    if (!(pos >= 0 && pos < bits)) assertionFailed("pos>=0 && pos<bits", "BitSet", line, function);
  }

  T word_ = 0;
};

}  // namespace Vek
