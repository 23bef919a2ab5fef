// The readers of kernel messages: recorded ones, and hand-made ones good and bad.
#include "apps/kernel/LinkMessage.h"
#include "apps/kernel/NeighbourMessage.h"
#include "apps/kernel/NextHopMessage.h"
#include "apps/kernel/RouteMessage.h"
#include "tests/apps/MessageBuilder.h"

#include <gtest/gtest.h>

namespace Apps::Kernel {
namespace {

Buffer fromHex(std::string_view hex) {
  Buffer buffer;
  for (std::size_t i = 0; i < hex.size(); i += 2) {
    buffer.push_back(static_cast<std::byte>(std::stoi(std::string{hex.substr(i, 2)}, nullptr, 16)));
  }
  return buffer;
}

Adjacency at(std::uint32_t link, char const* gateway) {
  Adjacency adjacency;
  adjacency.link = link;
  EXPECT_TRUE(adjacency.gateway.set(familyOf(gateway), ip(gateway)));
  return adjacency;
}

TEST(RouteMessage, ReadsARecordedMultiPathRouteThatNamesAnObject) {
  Buffer const body = fromHex("02180000fe030001"                    // IPv4, 24 bits of destination, table main, unicast
                              "00000000"                            //
                              "08000f00fe000000"                    // table
                              "08000100c0a80900"                    // destination
                              "08001e000a000000"                    // next-hop object 10
                              "24000900"                            // paths
                              "1000000003000000080005000a000002"    // by link 3
                              "1000000403000000080005000a000003");  // by link 3, weight 5
  Route route;
  ASSERT_TRUE(readRoute(body, route));
  EXPECT_EQ(route.family, Family::ipv4);
  EXPECT_EQ(route.prefixLength, 24U);
  EXPECT_EQ(route.nextHopId, 10U);
  ASSERT_EQ(route.paths.size(), 2U);
  EXPECT_EQ(route.paths[0].adjacency, at(3, "10.0.0.2"));
  EXPECT_EQ(route.paths[1].adjacency, at(3, "10.0.0.3"));
}

TEST(NextHopMessage, ReadsARecordedGroup) {
  Buffer const body = fromHex("0000000000000000"  // header
                              "080001000a000000"  // id 10
                              "0600030000000000"  // type of the group
                              "14000200"
                              "0100000000000000"
                              "0200000000000000"    // members 1 and 2
                              "08000e0000000080");  // something that older kernels do not send
  NextHopObject object;
  ASSERT_TRUE(readNextHop(body, object));
  EXPECT_EQ(object.id, 10U);
  EXPECT_TRUE(object.isGroup);
  EXPECT_EQ(object.members, (std::vector<std::uint32_t>{1, 2}));
}

TEST(RouteMessage, RefusesLengthsThatDoNotFit) {
  Buffer longAddress = bytesOf(__kernel_sa_family_t{AF_PACKET});
  longAddress.resize(2 + Address::limit + 1);
  rtnexthop tooLong{};
  tooLong.rtnh_len = 64;
  rtnexthop tooShort{};
  tooShort.rtnh_len = 4;
  struct {
    char const* what;
    Message message;
  } const cases[] = {
      {"IPv4 gateway of 16 bytes", route(AF_INET).put(RTA_GATEWAY, ip("fd00::1"))},
      {"IPv6 gateway of 4 bytes", route(AF_INET6).put(RTA_GATEWAY, ip("10.0.0.1"))},
      {"link of 2 bytes", route(AF_INET).put(RTA_OIF, std::uint16_t{1})},
      {"object of 8 bytes", route(AF_INET).put(RTA_NH_ID, std::uint64_t{1})},
      {"via without a family", route(AF_INET).put(RTA_VIA, Buffer(1))},
      {"via of no known family", route(AF_INET).put(RTA_VIA, Buffer(6))},
      {"link-layer address of 33 bytes", route(AF_MPLS).put(RTA_VIA, longAddress)},
      {"next hop longer than its list", route(AF_INET).put(RTA_MULTIPATH, tooLong)},
      {"next hop shorter than its header", route(AF_INET).put(RTA_MULTIPATH, tooShort)},
      {"prefix longer than an IPv4 address", prefix(AF_INET, 33)},
      {"prefix longer than an IPv6 address", prefix(AF_INET6, 129)},
      {"half a next hop", route(AF_INET).put(RTA_MULTIPATH, Buffer(4))},
  };
  for (auto const& one : cases) {
    Route into;
    EXPECT_FALSE(readRoute(one.message.body(), into)) << one.what;
  }
}

TEST(NeighbourMessage, TellsWhetherPacketsCanBeSent) {
  for (int const state : {NUD_PERMANENT, NUD_NOARP, NUD_REACHABLE, NUD_STALE, NUD_DELAY, NUD_PROBE}) {
    EXPECT_EQ(readNeighbour(neighbour(1, "10.0.0.1", static_cast<std::uint16_t>(state)).body())->resolution,
              Resolution::resolved)
        << state;
  }
  EXPECT_EQ(readNeighbour(neighbour(1, "10.0.0.1", NUD_NONE).body())->resolution, Resolution::open);
  EXPECT_EQ(readNeighbour(neighbour(1, "10.0.0.1", NUD_INCOMPLETE).body())->resolution, Resolution::open);
  EXPECT_EQ(readNeighbour(neighbour(1, "10.0.0.1", NUD_FAILED).body())->resolution, Resolution::failed);
}

TEST(NeighbourMessage, TellsWhetherALinkLayerAddressWasLearntOrGiven) {
  auto const has = [](std::uint16_t state, Buffer const& address) {
    return readNeighbour(neighbour(1, "10.0.0.1", state).put(NDA_LLADDR, address).body())->hasLinkLayerAddress;
  };
  EXPECT_TRUE(has(NUD_STALE, Buffer(6)));
  EXPECT_TRUE(has(NUD_PERMANENT, Buffer(6)));
  EXPECT_FALSE(has(NUD_STALE, Buffer{})) << "a link without addresses of its own";
  EXPECT_FALSE(has(NUD_NOARP, Buffer(6))) << "a multicast address, or a link without ARP";
  EXPECT_FALSE(readNeighbour(neighbour(1, "10.0.0.1", NUD_INCOMPLETE).body())->hasLinkLayerAddress);
}

TEST(LinkMessage, DoesNotTakeALinkElsewhereForOneHere) {
  EXPECT_EQ(readLink(link(5, 0, "vlan", 0, 3).body())->below, 3U);
  EXPECT_EQ(readLink(link(5, 0, "vlan", 0, 3).put(IFLA_LINK_NETNSID, 0).body())->below, 0U);
}

}  // namespace
}  // namespace Apps::Kernel
