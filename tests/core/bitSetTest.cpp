#include "dornl3/core/BitSet.h"

#include <gtest/gtest.h>

namespace {

using Bits = Vek::BitSet<29, unsigned>;

TEST(BitSet, SetsAndClearsOnePosition) {
  Bits bits;
  for (int pos = 0; pos < Bits::bits; ++pos) {
    bits.set(pos);
    EXPECT_EQ(bits.word(), 1U << pos);
    EXPECT_TRUE(bits[pos]);
    bits.set((pos + 1) % Bits::bits);
    bits.reset(pos);
    bits.reset(pos);
    EXPECT_EQ(bits.word(), 1U << (pos + 1) % Bits::bits);
    bits = Bits{};
  }
}

TEST(BitSetDeathTest, APositionOutsideStopsTheProcess) {
  for (int const pos : {-1, 29, 31, 32}) {
    Bits bits;
    // The program's name ahead: the C library's assertion, which handlers of crashes know.
    EXPECT_DEATH(bits.set(pos), "^coreTests: BitSet:37: set: Assertion `pos>=0 && pos<bits' failed");
    EXPECT_DEATH(bits.reset(pos), "^coreTests: BitSet:43: reset: Assertion `pos>=0 && pos<bits' failed");
  }
}

}  // namespace
