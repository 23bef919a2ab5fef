// The readers of kernel messages.
#include "apps/kernel/LinkMessage.h"
#include "apps/kernel/NeighbourMessage.h"
#include "apps/kernel/RouteMessage.h"
#include "tests/apps/MessageBuilder.h"

#include <gtest/gtest.h>

namespace Apps::Kernel {
namespace {

TEST(RouteMessage, RefusesLengthsThatDoNotFit) {
  Buffer longAddress = bytesOf(__kernel_sa_family_t{AF_PACKET});
  longAddress.resize(2 + Address::limit + 1);
  rtnexthop const tooLong{64, {}, {}, {}};
  std::pair<char const*, Message> const cases[] = {
      {"IPv4 gateway of 16 bytes", route(AF_INET).put(RTA_GATEWAY, ip("fd00::1"))},
      {"link of 2 bytes", route(AF_INET).put(RTA_OIF, std::uint16_t{1})},
      {"via without a family", route(AF_INET).put(RTA_VIA, Buffer(1))},
      {"via of no known family", route(AF_INET).put(RTA_VIA, Buffer(6))},
      {"link-layer address of 33 bytes", route(AF_MPLS).put(RTA_VIA, longAddress)},
      {"next hop longer than its list", route(AF_INET).put(RTA_MULTIPATH, tooLong)},
      {"next hop shorter than its header", route(AF_INET).put(RTA_MULTIPATH, rtnexthop{})},
      {"prefix longer than an IPv4 address", prefix(AF_INET, 33)},
      {"prefix longer than an IPv6 address", prefix(AF_INET6, 129)},
  };
  for (auto const& [what, message] : cases) {
    Route into;
    EXPECT_FALSE(readRoute(message.body(), into)) << what;
  }
}

TEST(NeighbourMessage, TellsWhetherPacketsCanBeSentAndWhetherAnAddressWasLearntOrGiven) {
  struct {
    int state;
    std::size_t linkLayerAddress;
    Resolution resolution;
    bool counts;
  } const cases[] = {
      {NUD_PERMANENT, 6, Resolution::resolved, true}, {NUD_REACHABLE, 6, Resolution::resolved, true},
      {NUD_STALE, 0, Resolution::resolved, false},  // a link without addresses of its own
      {NUD_DELAY, 6, Resolution::resolved, true},     {NUD_PROBE, 6, Resolution::resolved, true},
      {NUD_NOARP, 6, Resolution::resolved, false},  // a multicast address, or a link without ARP
      {NUD_NONE, 0, Resolution::open, false},         {NUD_INCOMPLETE, 0, Resolution::open, false},
      {NUD_FAILED, 0, Resolution::failed, false},
  };
  for (auto const& one : cases) {
    auto const read = readNeighbour(neighbour(1, "10.0.0.1", static_cast<std::uint16_t>(one.state))
                                        .put(NDA_LLADDR, Buffer(one.linkLayerAddress))
                                        .body());
    EXPECT_EQ(read->resolution, one.resolution) << one.state;
    EXPECT_EQ(read->hasLinkLayerAddress, one.counts) << one.state;
  }
}

TEST(LinkMessage, DoesNotTakeALinkElsewhereForOneHere) {
  EXPECT_EQ(readLink(link(5, 0, "vlan", 0, 3).body())->below, 3U);
  EXPECT_EQ(readLink(link(5, 0, "vlan", 0, 3).put(IFLA_LINK_NETNSID, 0).body())->below, 0U);
}

}  // namespace
}  // namespace Apps::Kernel
