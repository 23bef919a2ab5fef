// BitReverse: the 32 bits of a word in reverse order. It turns a hash into the order in which tables are walked.
// Thread: any.
#pragma once

#include "dornl3/core/Integers.h"

namespace Vek {

/// Bit 0 becomes bit 31, and so on.
[[nodiscard]] constexpr U32 bitReverse(U32 word) noexcept {
  word = ((word >> 1) & 0x55555555U) | ((word & 0x55555555U) << 1);
  word = ((word >> 2) & 0x33333333U) | ((word & 0x33333333U) << 2);
  word = ((word >> 4) & 0x0f0f0f0fU) | ((word & 0x0f0f0f0fU) << 4);
  return __builtin_bswap32(word);
}

}  // namespace Vek
