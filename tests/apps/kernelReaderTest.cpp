// What the figures say of hosts made of recorded messages, read once or read to be followed.
#include "apps/kernel/KernelReader.h"

#include "apps/kernel/KernelFollower.h"
#include "tests/apps/RecordedNotifications.h"
#include "tests/apps/RecordedSource.h"

#include <gtest/gtest.h>

namespace Apps::Kernel {
namespace {

Message labelled(Message message, std::byte label = {}) {
  return message.put(RTA_ENCAP_TYPE, std::uint16_t{LWTUNNEL_ENCAP_MPLS}).put(RTA_ENCAP, Buffer(8, label));
}

// A host with two Ethernet links, a GRE tunnel without ARP, VXLAN, and a VRF. 10.0.0.1 and fd00::1 are resolved on
// link 1.
class Host : public testing::Test {
 protected:
  Host() {
    kernel_.messages(RTM_GETLINK, {link(1, IFF_UP), link(2, IFF_UP), link(3, IFF_UP | IFF_NOARP, "gre"),
                                   link(4, IFF_UP, "vxlan"), link(5, IFF_UP | IFF_NOARP, "vrf")});
    kernel_.messages(RTM_GETADDR, {linkAddress(4, RT_SCOPE_LINK)});
    Buffer const mac(6);
    kernel_.messages(RTM_GETNEIGH,
                     {neighbour(1, "10.0.0.1", NUD_REACHABLE).put(NDA_LLADDR, mac), neighbour(1, "fd00::1", NUD_STALE),
                      neighbour(1, "10.0.0.8", NUD_INCOMPLETE), neighbour(1, "10.0.0.9", NUD_FAILED),
                      neighbour(1, "10.0.0.7", NUD_REACHABLE, NTF_PROXY).put(NDA_LLADDR, mac)});
  }

  KernelFigures with(std::vector<Message> routes, std::vector<Message> nextHops = {}) {
    kernel_.onlyMessages(RTM_GETROUTE, std::move(routes));
    kernel_.onlyMessages(RTM_GETNEXTHOP, std::move(nextHops));
    return read();
  }

  KernelFigures read() {
    KernelFigures const figures = readKernel(kernel_);
    kernel_.again();
    RecordedNotifications none;
    KernelFollower follower{kernel_, none, [] { return 1.0; }, {}};
    EXPECT_EQ(follower.figures(), figures) << "read to be followed";
    EXPECT_EQ(follower.patience().has_value(), !figures.interrupted.empty());
    return figures;
  }

  RecordedSource kernel_;
};

Message connected(std::uint32_t link, std::uint32_t flags = 0) {
  return route(AF_INET, RTN_UNICAST, flags).put(RTA_OIF, link);
}

TEST_F(Host, CountsLinksAndNeighbours) {
  KernelFigures const figures = with({});
  EXPECT_EQ(figures.vrfs, 2U);
  EXPECT_EQ(figures.vxlanTunnels, 1U);
  EXPECT_EQ(figures.tunnels, 2U) << "GRE and VXLAN";
  EXPECT_FALSE(figures.routesVxlan) << "by an address that does not reach beyond the link";
  EXPECT_EQ(figures.failedNeighbours, 1U);
  EXPECT_EQ(figures.linkLayerNeighbours, 1U);
}

TEST_F(Host, CountsRoutesThatForwardOrDiscardAndNoOthers) {
  KernelFigures const figures = with({
      prefix(AF_INET, 0), prefix(AF_INET, 24), prefix(AF_INET, 24), prefix(AF_INET, 31), prefix(AF_INET, 32),
      prefix(AF_INET, 24, RTN_LOCAL), prefix(AF_INET, 32, RTN_BROADCAST), prefix(AF_INET6, 0, RTN_THROW),
      prefix(AF_INET6, 127, RTN_UNREACHABLE), prefix(AF_INET6, 128, RTN_PROHIBIT).put(RTA_OIF, 1U),  // by no link
      prefix(AF_INET6, 64, RTN_ANYCAST), prefix(AF_INET6, 8, RTN_MULTICAST), prefix(AF_MPLS, 20),
      routeVia(1, "10.0.0.1", RTM_F_CLONED), connected(1, RTM_F_TRAP),
      route(RTNL_FAMILY_IPMR),  // no unicast at all: not even a message handled
  });
  PrefixCounts ipv4{.hosts = 1};
  ipv4.byLength[0] = ipv4.byLength[24] = 2;
  ipv4.byLength[31] = 1;
  EXPECT_EQ(figures.ipv4Prefixes, ipv4);
  PrefixCounts ipv6{.hosts = 1};
  ipv6.byLength[0] = ipv6.byLength[127] = 1;
  EXPECT_EQ(figures.ipv6Prefixes, ipv6);
  EXPECT_EQ(figures.ipv4, (RouteCounts{.routes = 6, .adjacencies = 1}));
  EXPECT_EQ(figures.ipv6, (RouteCounts{.routes = 3}));
  EXPECT_EQ(figures.mpls, (RouteCounts{.routes = 1}));
  EXPECT_EQ(figures.commands, (RouteCommands{.processed = 15, .added = 10}));
  EXPECT_EQ(figures.routesTrapped, 1U);
}

TEST_F(Host, HasRoutesPendingOrUnprogrammed) {
  std::vector<Message> const objects{nextHopGroup(10, {1, 2}),  // before its members
                                     nextHop(1, 1, "10.0.0.1").put(NHA_ENCAP_TYPE, std::uint16_t{LWTUNNEL_ENCAP_IP}),
                                     nextHopGroup(11, {12, 1}),
                                     Message{RTM_NEWNEXTHOP, nhmsg{}}.put(NHA_ID, 3U).put(NHA_BLACKHOLE, Buffer{}),
                                     nextHop(2, 2, "10.0.0.2", RTNH_F_LINKDOWN),
                                     nextHopGroup(12, {11, 2}),
                                     Message{RTM_NEWNEXTHOP, nhmsg{}}.put(NHA_ID, 4U).put(NHA_OIF, 1U),
                                     nextHopGroup(13, {1}).put(NHA_GROUP_TYPE, std::uint16_t{})};
  auto const named = [](std::uint32_t id, std::uint32_t flags = 0) {
    return route(AF_INET, RTN_UNICAST, flags).put(RTA_NH_ID, id);
  };
  constexpr RouteCounts none{1};
  constexpr RouteCounts fine{1, 1};
  constexpr RouteCounts pending{1, 1, 1, 1};
  constexpr RouteCounts unprogrammed{1, 1, 0, 0, 1, 1};
  constexpr RouteCounts half{1, 2, 1, 1, 0, 1};
  struct {
    char const* what;
    Message route;
    RouteCounts counts;
  } const cases[] = {
      {"resolved", routeVia(1, "10.0.0.1"), fine},
      {"resolved on another link", routeVia(2, "10.0.0.1"), pending},
      {"a proxy for others alone", routeVia(1, "10.0.0.7"), pending},
      {"incomplete", routeVia(1, "10.0.0.8"), pending},
      {"failed", routeVia(1, "10.0.0.9"), pending},
      {"directly connected", connected(1), fine},
      {"link without ARP", routeVia(3, "10.0.0.7"), fine},
      {"unknown link", routeVia(77, "10.0.0.7"), pending},
      {"IPv6 gateway, resolved", route(AF_INET).put(RTA_OIF, 1U).put(RTA_VIA, via("fd00::1")), fine},
      {"IPv6 gateway, missing", route(AF_INET).put(RTA_OIF, 1U).put(RTA_VIA, via("fd00::2")), pending},
      {"one path of two missing and down", routeVia(AF_INET, {hop(1, "10.0.0.1"), hop(2, "10.0.0.2", RTNH_F_DEAD)}),
       half},
      {"both paths down",
       routeVia(AF_INET, {hop(1, "10.0.0.1", RTNH_F_DEAD), hop(3, "10.0.0.2", RTNH_F_LINKDOWN)}),
       {1, 2, 0, 0, 1, 2}},
      {"dead", routeVia(1, "10.0.0.1", RTNH_F_DEAD), unprogrammed},
      {"link down", connected(2, RTNH_F_LINKDOWN), unprogrammed},
      {"not taken by the hardware", routeVia(1, "10.0.0.1", RTM_F_OFFLOAD_FAILED), unprogrammed},
      {"taken by the hardware", connected(1, RTM_F_OFFLOAD), fine},
      {"object", named(1), fine},
      {"object, not taken by the hardware", named(1, RTM_F_OFFLOAD_FAILED), unprogrammed},
      {"object, down", named(2), {1, 1, 1, 1, 1, 1}},
      {"object that discards", named(3), none},
      {"object without gateway", named(4), fine},
      {"group", named(10), half},
      {"group of one", named(13), fine},
      {"group, told with its paths",
       routeVia(AF_INET, {hop(1, "10.0.0.1"), hop(2, "10.0.0.2", RTNH_F_DEAD)}).put(RTA_NH_ID, 10U), half},
      {"groups that name each other", named(11), half},
      {"missing object", named(99), none},
  };
  for (auto const& one : cases) {
    KernelFigures const figures = with({one.route}, objects);
    EXPECT_EQ(figures.ipv4, one.counts) << one.what;
    EXPECT_EQ(figures.missingNextHops, one.what == std::string_view{"missing object"} ? 1U : 0U) << one.what;
    EXPECT_EQ(figures.nestedGroups, 2U);
  }
}

TEST_F(Host, CountsSetsOfNextHopsByTheirMembers) {
  KernelFigures const figures = with({
      connected(1), routeVia(1, "10.0.0.1"), routeVia(1, "10.0.0.1"),
      routeVia(AF_INET, {hop(1, "10.0.0.1"), hop(1, "10.0.0.2")}),
      routeVia(AF_INET, {hop(1, "10.0.0.2", 0, 9), hop(1, "10.0.0.1")}),  // neither order nor weight matters
      routeVia(AF_INET, {hop(1, "10.0.0.1"), hop(1, "10.0.0.3")}),
      route(AF_INET6).put(RTA_OIF, 1U),  // the set of the connected IPv4 route
      route(AF_INET, RTN_BLACKHOLE), labelled(routeVia(1, "10.0.0.1")), connected(3), connected(4),
      routeVia(AF_INET, {hop(1, "10.0.0.1"), hop(3, "10.0.0.5")}),  // one path through a tunnel is enough
  });
  EXPECT_EQ(figures.ipv4.adjacencies, 7U);
  EXPECT_EQ(figures.ipv6.adjacencies, 1U);
  EXPECT_EQ(figures.ipSets, (SetCounts{.singlePath = 2, .multiPath = 2}));
  EXPECT_EQ(figures.mplsSets, SetCounts{});
  EXPECT_EQ(figures.tunnelSets, (SetCounts{.singlePath = 3, .multiPath = 1})) << "by labels, by two tunnels";
}

// An MPLS route by link 1 with so many labels for the one it takes off.
Message labelRoute(std::size_t labels, std::uint8_t label = 0) {
  Message message = route(AF_MPLS).put(RTA_OIF, 1U).put(RTA_VIA, via("10.0.0.1"));
  return labels == 0 ? message : message.put(RTA_NEWDST, Buffer(labels * 4, std::byte{label}));
}

TEST_F(Host, CountsMplsRoutesAndLabels) {
  Buffer direct = bytesOf(__kernel_sa_family_t{AF_PACKET});
  direct.resize(2 + Address::limit);  // a next hop given by its address on the link: nothing to resolve
  Buffer const swap = pathBy(1, nested(RTA_NEWDST, Buffer(4)));
  Message const noLabels =
      routeVia(1, "10.0.0.1").put(RTA_ENCAP_TYPE, std::uint16_t{LWTUNNEL_ENCAP_IP}).put(RTA_ENCAP, Buffer(8));
  KernelFigures const figures = with(
      {labelRoute(0), labelRoute(0), labelRoute(1), labelRoute(1, 7), routeVia(AF_MPLS, {swap, pathBy(2, {})}),
       route(AF_MPLS).put(RTA_OIF, 1U).put(RTA_VIA, direct).put(RTA_NEWDST, 1U),
       route(AF_MPLS).put(RTA_OIF, 1U).put(RTA_VIA, via("10.0.0.7")).put(RTA_NEWDST, 1U), connected(1), noLabels,
       labelled(routeVia(1, "10.0.0.1")), labelled(routeVia(1, "10.0.0.1")),  // the two are one path
       labelled(routeVia(1, "10.0.0.2")), labelled(routeVia(1, "10.0.0.1"), std::byte{1}),
       labelRoute(2)},  // a swap and a push
      {nextHop(1, 1, "10.0.0.77").put(NHA_ENCAP_TYPE, std::uint16_t{LWTUNNEL_ENCAP_MPLS}).put(NHA_ENCAP, Buffer(8))});
  EXPECT_EQ(figures.mpls, (RouteCounts{.routes = 8, .adjacencies = 5, .pendingRoutes = 1, .pendingAdjacencies = 1}));
  EXPECT_EQ(figures.mplsSets, (SetCounts{.singlePath = 6, .multiPath = 1})) << "two labels make two sets";
  EXPECT_EQ(figures.mplsPops, 3U) << "two to one next hop, and one that pops on one path of two";
  EXPECT_EQ(figures.mplsPushes, 4U) << "a swap adds no label; no route uses the next-hop object";
}

TEST_F(Host, CountsMalformedMessagesAndStartsOverWithEachAttempt) {
  Message const malformed{RTM_NEWROUTE, 'x'};
  for (auto const& [table, reply] :
       {std::pair{RTM_GETNEIGH, RTM_NEWNEIGH}, std::pair{RTM_GETNEXTHOP, RTM_NEWNEXTHOP}}) {
    kernel_.onlyAnswer(table, {.messages = {malformed.as(reply)}, .interrupted = true});
    kernel_.messages(table, {malformed.as(reply)});
  }
  kernel_.answer(RTM_GETROUTE,
                 {.messages = {routeVia(2, "10.0.0.7"), connected(1, RTM_F_TRAP), malformed}, .interrupted = true});
  kernel_.messages(RTM_GETROUTE, {prefix(AF_INET, 24), route(AF_INET).put(RTA_GATEWAY, Buffer(3))});
  KernelFigures const figures = read();
  EXPECT_EQ(figures.ipv4, RouteCounts{1});
  EXPECT_EQ(figures.ipv4Prefixes.byLength[0], 0U);
  EXPECT_EQ(figures.routesTrapped, 0U);
  EXPECT_EQ(figures.commands, (RouteCommands{.processed = 2, .added = 1, .failed = 1}));
  EXPECT_EQ(figures.failedNextHops, 1U);
  EXPECT_EQ(figures.failedNeighbours, 1U);
  EXPECT_TRUE(figures.interrupted.empty());
}

TEST_F(Host, NamesTheTablesThatNeverSettledAndKeepsTheirLastState) {
  kernel_.answer(RTM_GETROUTE, {.messages = {connected(1)}, .interrupted = true});
  KernelFigures const figures = read();
  EXPECT_EQ(figures.interrupted, std::vector<std::string_view>{"The kernel's routes"});
  EXPECT_EQ(kernel_.requests(RTM_GETROUTE), Dumper::attempts);
  EXPECT_EQ(figures.ipv4.routes, 1U);
}

}  // namespace
}  // namespace Apps::Kernel
