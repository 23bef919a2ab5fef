#include "core/BitSet.h"

#include "core/NotifieeConst.h"

#include <gtest/gtest.h>

namespace {

using Bits = Vek::BitSet<29, unsigned>;
using FlagWord = Vek::PtrInterface::NotifieeConst::Vek_BitSet;

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
    EXPECT_DEATH(bits.set(pos), "BitSet:37: Assertion `pos>=0 && pos<bits' failed");
    EXPECT_DEATH(bits.reset(pos), "BitSet:43: Assertion `pos>=0 && pos<bits' failed");
  }
}

TEST(NotificationFlags, ChangeAroundTheStateBits) {
  EXPECT_EQ(FlagWord::notificationBitMask(), 0xfa8fffffU);
  for (unsigned const own : {0U, 0x05700000U, 0x01200000U, 0xffffffffU}) {
    for (unsigned const given : {0U, 0xffffffffU, 0x05700000U, 0xfa8fffffU, 0x80000001U}) {
      FlagWord flags{own};
      flags.notificationFlagsIs(FlagWord{given});
      EXPECT_EQ(flags.word() & 0x05700000U, own & 0x05700000U);
      EXPECT_EQ(flags.word() & 0xfa8fffffU, given & 0xfa8fffffU);
    }
  }
}

}  // namespace
