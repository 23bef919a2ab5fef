#include "dornl3/platform/siblings/FapId.h"
#include "dornl3/platform/siblings/Fapmask.h"
#include "dornl3/platform/siblings/VlanIdOrNone.h"
#include "tests/core/LeakCheck.h"
#include "tests/platform/ReadText.h"

using Bridging::VlanIdOrNone;
using Hardware::Dorn::FapId;
using Kiln::Fapmask;

namespace {

struct Siblings : LeakCheck {};

constexpr char const* badFap = "FapId::value < FapId::min or > FapId::null not allowed";
constexpr char const* badVlan = "VlanIdOrNone::value > 4094 not allowed";

template <class T>
auto readSibling(char const* text) {
  return readText(text, [](auto& it, auto const& end) { return T(it, end); });
}

TEST_F(Siblings, IdsAreNumbersWithinTheirLimits) {
  EXPECT_THROW(FapId{2049}, Vek::RangeException);
  EXPECT_THROW(VlanIdOrNone{4095}, Vek::RangeException);
  struct {
    char const* text;
    int vlan, fap;  // -1: out of range; -2: no number
    int column;     // behind a good number
  } const cases[] = {
      {"0", 0, 0, 1},      {"2048", 2048, 2048, 4},   {"2049", 2049, -1, 4}, {"4094", 4094, -1, 4},
      {"4095", -1, -1, 0}, {"65537", -1, -1, 0},      {"-1", -1, -1, 0},     {"7x", 7, 7, 1},
      {"x", -2, -2, 0},    {"4294967297", -1, -1, 0},
  };
  auto const expect = [](auto const& read, int value, int column, char const* outOfRange) {
    if (value >= 0) {
      ASSERT_TRUE(read.value) << read.message;
      EXPECT_EQ(read.value->value(), value);
      EXPECT_EQ(read.column, column);
    } else {
      EXPECT_FALSE(read.value);
      EXPECT_EQ(read.column, 0) << "the cursor stays at the bad number";
      EXPECT_EQ(read.message == outOfRange, value == -1) << read.message;
    }
  };
  for (auto const& c : cases) {
    SCOPED_TRACE(c.text);
    expect(readSibling<VlanIdOrNone>(c.text), c.vlan, c.column, badVlan);
    expect(readSibling<FapId>(c.text), c.fap, c.column, badFap);
  }
}

TEST_F(Siblings, AFapMaskIsFourWordsOfEightDigits) {
  Fapmask const mask{Fapmask::Words{0xf, 0, 0x80000000, 1}};
  char const* const text = "'0000000f:00000000:80000000:00000001'";
  EXPECT_EQ(valueToStrep(mask), text);
  EXPECT_TRUE(readSibling<Fapmask>(text).value == mask);
  for (char const* bad : {"'0000000f:00000000:80000000:0000001'", "'0000000::00000000:80000000:00000001'",
                          "'0000000f:00000000-80000000:00000001'"}) {
    EXPECT_FALSE(readSibling<Fapmask>(bad).value) << bad;
    EXPECT_EQ(readSibling<Fapmask>(bad).column, 0);
  }
}

}  // namespace
