#include "dornl3/platform/siblings/FapId.h"
#include "dornl3/platform/siblings/Fapmask.h"
#include "dornl3/platform/siblings/VlanIdOrNone.h"
#include "tests/core/LeakCheck.h"
#include "tests/platform/ReadText.h"

using Bridging::VlanIdOrNone;
using Hardware::Dorn::FapId;

namespace {

struct Siblings : LeakCheck {};

constexpr char const* badFap = "FapId::value < FapId::min or > FapId::null not allowed";
constexpr char const* badVlan = "VlanIdOrNone::value > 4094 not allowed";

template <class Id>
auto readId(char const* text) {
  return readText(text, [](auto& it, auto const& end) { return Id(it, end); });
}

std::string messageOf(auto const& make) {
  try {
    static_cast<void>(make());
  } catch (Vek::RangeException const& e) {
    return e.what();
  }
  return "";
}

TEST_F(Siblings, DefaultsAreTheNullIds) {
  EXPECT_EQ(FapId{}.value(), 2048);
  EXPECT_TRUE(FapId{} == FapId{2048});
  EXPECT_TRUE(FapId{7} < FapId{});
  EXPECT_EQ(VlanIdOrNone{}.value(), 0);
  EXPECT_TRUE(Kiln::Fapmask{} == (Kiln::Fapmask{Kiln::Fapmask::Words{0, 0, 0, 0}}));
}

TEST_F(Siblings, IdsKeepTheirLimits) {
  EXPECT_EQ(messageOf([] { return FapId{2049}; }), badFap);
  EXPECT_EQ(messageOf([] { return VlanIdOrNone{4095}; }), badVlan);
  EXPECT_EQ(VlanIdOrNone{4094}.value(), 4094);
}

TEST_F(Siblings, TextsAreNumbersWithinTheLimits) {
  struct {
    char const* text;
    int vlan, fap;  // -1: out of range; -2: no number
    int column;     // behind a good number
  } const cases[] = {
      {"0", 0, 0, 1},
      {"2048", 2048, 2048, 4},
      {"2049", 2049, -1, 4},
      {"4094", 4094, -1, 4},
      {"4095", -1, -1, 0},
      {"65535", -1, -1, 0},
      {"65536", -1, -1, 0},
      {"65537", -1, -1, 0},
      {"-1", -1, -1, 0},
      {"7x", 7, 7, 1},
      {"x", -2, -2, 0},
      {"", -2, -2, 0},
      {"4294967297", -1, -1, 0},
      {"18446744073709551615", -1, -1, 0},
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
    expect(readId<VlanIdOrNone>(c.text), c.vlan, c.column, badVlan);
    expect(readId<FapId>(c.text), c.fap, c.column, badFap);
  }
  EXPECT_TRUE(valueToStrep(VlanIdOrNone{4094}) == "4094");
  EXPECT_TRUE(valueToStrep(FapId{}) == "2048");
}

}  // namespace
