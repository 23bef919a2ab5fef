// Values with limits, whose complaints people read.
#include "dornl3/schema/AclIntf.h"
#include "dornl3/schema/DornL3CliConfig.h"
#include "dornl3/text/ValueText.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace Hardware::DornL3Unicast;

template <class X>
std::string complaintAbout(std::string const& text) {
  try {
    static_cast<void>(Vek::valueFromText<X>(std::string_view(text)));
    return "";
  } catch (Vek::RangeException const& exception) {
    return exception.what();
  }
}

TEST(LpmLevelBits, LimitsHoldForTextOnceItIsComplete) {
  struct {
    char const* attributes;
    char const* complaint;
  } const cases[] = {
      {"", ""},
      {"'level0': 14, 'level1': 3, 'level5': 7", ""},
      {"'level0': 15", "LpmLevelBits::level0 < 0 or > 14 not allowed"},
      {"'level1': 2", "LpmLevelBits::level1 < 3 or > 7 not allowed"},
      {"'level2': 8", "LpmLevelBits::level2 < 3 or > 7 not allowed"},
      {"'level5': 0, 'level3': 0", "LpmLevelBits::level3 < 3 or > 7 not allowed"},
      {"'level4': 259", ""},  // cut to 3
      {"'level1': 2, 'level1': 3", ""},
      {"'level1': 2, 'levle2': 3", "LpmLevelBits has no such attribute: levle2"},
  };
  for (auto const& c : cases) {
    std::string const text = "Value('Hardware::DornL3Unicast::LpmLevelBits', ** {" + std::string(c.attributes) + "})";
    EXPECT_EQ(complaintAbout<LpmLevelBits>(text), c.complaint) << c.attributes;
  }
}

TEST(Ipv4EgressAclLabel, IsAVlanOrNone) {
  EXPECT_EQ(complaintAbout<AclRoute::Ipv4EgressAclLabel>("4094"), "");
  EXPECT_EQ(complaintAbout<AclRoute::Ipv4EgressAclLabel>("4095"), "value: VlanIdOrNone::value > 4094 not allowed");
}

}  // namespace
