// One body over all value types: what the attribute table says is what the text holds.
#include "platform/vek/ScalarText.h"
#include "schema/AclIntf.h"
#include "schema/DornL3CliConfig.h"
#include "schema/Status.h"
#include "text/ValueText.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <limits>
#include <numeric>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace Hardware::DornL3Unicast;

template <class X>
class ValueTypes : public testing::Test {};

using All = testing::Types<RouteStats, SchanStats, JLpmStats, JLpmDetailStats, LpmStats, LpmDetailStats, PetraFecStats,
                           FecStats, FecQuarantineStats, LemCmdsStats, InternalState, FecCountStats, Host6RouteStats,
                           Host6RouteDetailStats, TimingMarkers, CmdRingStats, RestartHelperStats, LpmLevelBits>;
TYPED_TEST_SUITE(ValueTypes, All);

// The text of a value that the declared type may have.
std::string anyText(std::string_view declared) {
  auto const text = [](auto value) { return std::string(Vek::valueToStrep(value)); };
  if (declared == "U64") return text(*rc::gen::arbitrary<Vek::U64>());
  if (declared == "U32") return text(Vek::U64{*rc::gen::arbitrary<Vek::U32>()});
  if (declared == "U8") return text(Vek::U64{*rc::gen::inRange<Vek::U8>(3, 8)});  // levels: within every limit
  if (declared == "bool") return text(*rc::gen::arbitrary<bool>());
  if (declared == "Vek::Seconds") return text(*rc::gen::arbitrary<double>());
  if (declared == "Vek::String") return text(Vek::String8(std::string_view(*rc::gen::arbitrary<std::string>())));
  RC_FAIL("no generator for this type");
  return {};
}

std::string joined(std::string_view fullName, std::vector<std::string> const& attributes) {
  std::string text = "Value('" + std::string(fullName) + "', ** {";
  for (auto const& attribute : attributes) text += (&attribute == &attributes.front() ? "" : ", ") + attribute;
  return text + "})";
}

template <class X>
std::vector<std::string> anyAttributes() {
  std::vector<std::string> attributes;
  for (auto const& attr : X::_fwkType()->attributes()) {
    attributes.push_back("'" + std::string(attr->name()) + "': " + anyText(attr->valueType()->fullName()));
  }
  return attributes;
}

TYPED_TEST(ValueTypes, ReadWhatTheyWriteWithEveryAttributeInItsPlace) {
  rc::check([] {
    std::string const text = joined(TypeParam::_fwkType()->fullName(), anyAttributes<TypeParam>());
    auto const value = Vek::valueFromText<TypeParam>(std::string_view(text));
    RC_ASSERT(valueToStrep(value).view() == text);
    RC_ASSERT(value == value);
    RC_ASSERT(Vek::valueFromText<TypeParam>(valueToStrep(value)) == value);
    std::ostringstream os;
    os.width(400);
    os.fill('*');
    os << value;
    RC_ASSERT(os.str() == text);
  });
}

TYPED_TEST(ValueTypes, ReadTheirAttributesInAnyOrder) {
  rc::check([] {
    auto attributes = anyAttributes<TypeParam>();
    std::string const inOrder = joined(TypeParam::_fwkType()->fullName(), attributes);
    auto const place = *rc::gen::inRange<std::size_t>(0, attributes.size());
    std::rotate(attributes.begin(), attributes.begin() + static_cast<std::ptrdiff_t>(place), attributes.end());
    std::string const rotated = joined(TypeParam::_fwkType()->fullName(), attributes);
    RC_ASSERT(valueToStrep(Vek::valueFromText<TypeParam>(std::string_view(rotated))).view() == inOrder);
  });
}

TYPED_TEST(ValueTypes, DifferWhereOneAttributeDiffers) {
  TypeParam const plain;
  for (auto const& attr : TypeParam::_fwkType()->attributes()) {
    std::string_view const type = attr->valueType()->fullName();
    std::string const other = type == "bool" ? "True" : type == "Vek::String" ? "'x'" : "4";
    std::string const text =
        joined(TypeParam::_fwkType()->fullName(), {"'" + std::string(attr->name()) + "': " + other});
    EXPECT_TRUE(Vek::valueFromText<TypeParam>(std::string_view(text)) != plain) << text;
  }
  EXPECT_TRUE(plain == TypeParam());
}

TEST(LpmLevelBits, DefaultsAreLegalAndNotZero) {
  EXPECT_EQ(LpmLevelBits(), LpmLevelBits(0, 3, 3, 3, 3, 3));
  EXPECT_EQ(Vek::valueFromText<LpmLevelBits>("Value('Hardware::DornL3Unicast::LpmLevelBits', ** {})"), LpmLevelBits());
}

struct LimitCase {
  char const* attributes;
  char const* complaint;  // null: the text is accepted
};

TEST(LpmLevelBits, LimitsHoldForTextOnceItIsComplete) {
  for (LimitCase const& c : {
           LimitCase{"'level0': 14, 'level1': 3, 'level5': 7", nullptr},
           LimitCase{"'level0': 15", "LpmLevelBits::level0 < 0 or > 14 not allowed"},
           LimitCase{"'level1': 2", "LpmLevelBits::level1 < 3 or > 7 not allowed"},
           LimitCase{"'level2': 8", "LpmLevelBits::level2 < 3 or > 7 not allowed"},
           LimitCase{"'level5': 0, 'level3': 0", "LpmLevelBits::level3 < 3 or > 7 not allowed"},
           LimitCase{"'level4': 259", nullptr},  // cut to 3
           LimitCase{"'level1': 2, 'level1': 3", nullptr},
           LimitCase{"'level1': 2, 'levle2': 3", "LpmLevelBits has no such attribute: levle2"},
       }) {
    SCOPED_TRACE(c.attributes);
    std::string const text = joined("Hardware::DornL3Unicast::LpmLevelBits", {c.attributes});
    try {
      static_cast<void>(Vek::valueFromText<LpmLevelBits>(std::string_view(text)));
      EXPECT_EQ(c.complaint, nullptr);
    } catch (Vek::RangeException const& exception) {
      EXPECT_STREQ(exception.what(), c.complaint);
    }
  }
}

TEST(LpmLevelBits, LimitsDoNotHoldForWhatCodeBuilds) {
  Vek::Ptr<CliConfig> const config = cliConfigFactory("config");
  config->lpmLevelBitsIs(LpmLevelBits(0, 8, 3, 3, 3, 3));
  EXPECT_EQ(config->lpmLevelBits().level1(), 8);
  EXPECT_EQ(config->writeCount(), 1U);
}

TEST(Ipv4EgressAclLabel, HasTheTextOfItsVlanAlone) {
  using AclRoute::Ipv4EgressAclLabel;
  Ipv4EgressAclLabel const label{Bridging::VlanIdOrNone(17)};
  EXPECT_EQ(valueToStrep(label), Bridging::valueToStrep(label.value()));
  EXPECT_EQ(Vek::valueFromText<Ipv4EgressAclLabel>(valueToStrep(label)), label);
  EXPECT_EQ(Ipv4EgressAclLabel().value().value(), 0);
  try {
    static_cast<void>(Vek::valueFromText<Ipv4EgressAclLabel>("4095"));
    ADD_FAILURE() << "4095 is no VLAN";
  } catch (Vek::RangeException const& exception) {
    EXPECT_STREQ(exception.what(), "value: VlanIdOrNone::value > 4094 not allowed");
  }
}

TEST(TimingMarkers, ANaNDiffersFromItselfAndZerosAreEqual) {
  TimingMarkers markers;
  markers.lastRouteUpdateTimeIs(-0.0);
  EXPECT_TRUE(markers == TimingMarkers());
  markers.lastRouteUpdateTimeIs(std::numeric_limits<double>::quiet_NaN());
  TimingMarkers const copy = markers;
  EXPECT_FALSE(markers == copy);
  EXPECT_TRUE(markers != markers);
}

TEST(Narrowing, CutsBitsWithoutAComplaint) {
  auto const stats = Vek::valueFromText<JLpmStats>(
      "Value('Hardware::DornL3Unicast::JLpmStats', ** {'routes6': 4294967301, 'backlog': 4294967301})");
  EXPECT_EQ(stats.routes6(), 5U);
  EXPECT_EQ(stats.backlog(), 4294967301U);
}

}  // namespace
