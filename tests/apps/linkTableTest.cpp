#include "apps/kernel/LinkTable.h"

#include <gtest/gtest.h>
#include <net/if.h>

namespace Apps::Kernel {
namespace {

constexpr std::uint32_t vxlan = 1;
constexpr std::uint32_t bridge = 2;
constexpr std::uint32_t vlan = 3;
constexpr std::uint32_t vrf = 4;
constexpr std::uint32_t underlay = 5;

constexpr Link alone{vxlan, IFF_UP, 0, 0, LinkKind::vxlan};
constexpr Link bridged{vxlan, IFF_UP, bridge, 0, LinkKind::vxlan};

TEST(LinkTable, TellsWhetherVxlanTakesPartInRouting) {
  struct {
    char const* what;
    std::vector<Link> links;
    std::vector<LinkAddress> addresses;
    bool routes;
  } const situations[] = {
      {"no VXLAN link", {{bridge, IFF_UP}}, {{bridge, true}}, false},
      {"a VXLAN link without address", {alone}, {}, false},
      {"a link-local address alone", {alone}, {{vxlan, false}}, false},
      {"an address on the link", {alone}, {{vxlan, true}}, true},
      {"the link is down", {{vxlan, 0, 0, 0, LinkKind::vxlan}}, {{vxlan, true}}, false},
      {"an address on its underlay only",
       {{vxlan, IFF_UP, 0, underlay, LinkKind::vxlan}, {underlay, IFF_UP}},
       {{underlay, true}},
       false},
      {"an address on its bridge", {bridged, {bridge, IFF_UP}}, {{bridge, true}}, true},
      {"the bridge is down", {bridged, {bridge, 0}}, {{bridge, true}}, false},
      {"its bridge in a VRF", {bridged, {bridge, IFF_UP, vrf}, {vrf, IFF_UP, 0, 0, LinkKind::vrf}}, {}, true},
      {"an address on a VLAN of its bridge",
       {bridged, {bridge, IFF_UP}, {vlan, IFF_UP, 0, bridge, LinkKind::stacked}},
       {{vlan, true}},
       true},
      {"links that stand on each other",
       {bridged, {bridge, IFF_UP, bridge, vlan, LinkKind::stacked}, {vlan, IFF_UP, 0, bridge, LinkKind::stacked}},
       {},
       false},
  };
  for (auto const& situation : situations) {
    LinkTable table;
    for (Link const& link : situation.links) table.add(link);
    for (LinkAddress const& address : situation.addresses) table.add(address);
    EXPECT_EQ(table.routesVxlan(), situation.routes) << situation.what;
  }
}

TEST(LinkTable, ForgetsTheAddressesOfALinkThatGoes) {
  LinkTable table;
  LinkAddress const address{vxlan, true};
  EXPECT_FALSE(table.add(address)) << "of no known link";
  table.add(alone);
  EXPECT_TRUE(table.add(address));
  table.remove(vxlan);
  table.add(alone);
  EXPECT_FALSE(table.routesVxlan());
  EXPECT_TRUE(table.add(address));
  EXPECT_FALSE(table.add(address)) << "told again";
  EXPECT_TRUE(table.routesVxlan());
  EXPECT_TRUE(table.remove(address));
  EXPECT_FALSE(table.routesVxlan());
}

}  // namespace
}  // namespace Apps::Kernel
