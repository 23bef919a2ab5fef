// What the figures say of hosts made of recorded messages.
#include "apps/kernel/KernelReader.h"

#include "apps/kernel/Dump.h"
#include "tests/apps/RecordedSource.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace Apps::Kernel {
namespace {

// A host with link 1 (Ethernet), link 2 (Ethernet), link 3 (a GRE tunnel, without ARP) and link 4 (VXLAN).
// 10.0.0.1 and fd00::1 are resolved on link 1.
void equip(RecordedSource& kernel) {
  kernel.messages(RTM_GETLINK, {link(1, IFF_UP), link(2, IFF_UP), link(3, IFF_UP | IFF_NOARP, "gre"),
                                link(4, IFF_UP, "vxlan"), link(5, IFF_UP | IFF_NOARP, "vrf")});
  kernel.messages(RTM_GETNEIGH, {neighbour(1, "10.0.0.1", NUD_REACHABLE).put(NDA_LLADDR, Buffer(6)),
                                 neighbour(1, "fd00::1", NUD_STALE), neighbour(1, "10.0.0.8", NUD_INCOMPLETE),
                                 neighbour(1, "10.0.0.9", NUD_FAILED)});
}

class Host : public testing::Test {
 protected:
  Host() { equip(kernel_); }

  KernelFigures with(std::vector<Message> routes, std::vector<Message> nextHops = {}) {
    kernel_.messages(RTM_GETROUTE, std::move(routes));
    kernel_.messages(RTM_GETNEXTHOP, std::move(nextHops));
    return readKernel(kernel_);
  }

  RecordedSource kernel_;
};

Message connected(std::uint32_t link, std::uint32_t flags = 0) {
  return route(AF_INET, RTN_UNICAST, flags).put(RTA_OIF, link);
}

Message labelled(Message message) {
  return message.put(RTA_ENCAP_TYPE, std::uint16_t{LWTUNNEL_ENCAP_MPLS}).put(RTA_ENCAP, Buffer(8));
}

TEST_F(Host, CountsLinksAndNeighbours) {
  KernelFigures const figures = with({});
  EXPECT_EQ(figures.vrfs, 2U);
  EXPECT_EQ(figures.vxlanTunnels, 1U);
  EXPECT_EQ(figures.tunnels, 2U) << "GRE and VXLAN";
  EXPECT_EQ(figures.failedNeighbours, 1U);
  EXPECT_EQ(figures.linkLayerNeighbours, 1U);
}

TEST_F(Host, CountsRoutesByTheLengthOfTheirPrefix) {
  KernelFigures const figures = with({
      prefix(AF_INET, 0), prefix(AF_INET, 24), prefix(AF_INET, 24), prefix(AF_INET, 31), prefix(AF_INET, 32),
      prefix(AF_INET, 32), prefix(AF_INET, 24, RTN_LOCAL), prefix(AF_INET, 32, RTN_BROADCAST), prefix(AF_INET6, 0),
      prefix(AF_INET6, 32), prefix(AF_INET6, 127), prefix(AF_INET6, 128), prefix(AF_MPLS, 20),  // a label is no prefix
  });
  PrefixCounts ipv4{.hosts = 2};
  ipv4.byLength[0] = 1;
  ipv4.byLength[24] = 2;
  ipv4.byLength[31] = 1;
  EXPECT_EQ(figures.ipv4Prefixes, ipv4);
  PrefixCounts ipv6{.hosts = 1};
  ipv6.byLength[0] = ipv6.byLength[32] = ipv6.byLength[127] = 1;
  EXPECT_EQ(figures.ipv6Prefixes, ipv6);
}

TEST_F(Host, CountsRoutesThatForwardOrDiscardAndNoOthers) {
  KernelFigures const figures = with({
      connected(1), routeVia(1, "10.0.0.1"), routeVia(1, "fd00::1"), route(AF_INET, RTN_BLACKHOLE),
      route(AF_INET6, RTN_PROHIBIT).put(RTA_OIF, 1U),  // by no link all the same
      route(AF_INET, RTN_LOCAL), route(AF_INET, RTN_BROADCAST), route(AF_INET6, RTN_ANYCAST),
      route(AF_INET6, RTN_MULTICAST), routeVia(1, "10.0.0.1", RTM_F_CLONED),
      route(RTNL_FAMILY_IPMR),  // no unicast at all: not even a message handled
  });
  EXPECT_EQ(figures.ipv4, (RouteCounts{.routes = 3, .adjacencies = 2}));
  EXPECT_EQ(figures.ipv6, (RouteCounts{.routes = 2, .adjacencies = 1}));
  EXPECT_EQ(figures.commands.processed, 10U);
  EXPECT_EQ(figures.commands.added, 5U);
}

TEST_F(Host, HasRoutesPendingWhoseGatewayIsNotResolved) {
  struct {
    char const* what;
    Message route;
    bool pending;
  } const cases[] = {
      {"resolved", routeVia(1, "10.0.0.1"), false},
      {"resolved on another link", routeVia(2, "10.0.0.1"), true},
      {"missing", routeVia(1, "10.0.0.7"), true},
      {"incomplete", routeVia(1, "10.0.0.8"), true},
      {"failed", routeVia(1, "10.0.0.9"), true},
      {"directly connected", connected(1), false},
      {"link without ARP", routeVia(3, "10.0.0.7"), false},
      {"unknown link", routeVia(77, "10.0.0.7"), true},
      {"IPv6 gateway, resolved", route(AF_INET).put(RTA_OIF, 1U).put(RTA_VIA, via("fd00::1")), false},
      {"IPv6 gateway, missing", route(AF_INET).put(RTA_OIF, 1U).put(RTA_VIA, via("fd00::2")), true},
      {"one path of two missing", routeVia(AF_INET, {hop(1, "10.0.0.1"), hop(1, "10.0.0.7")}), true},
  };
  for (auto const& one : cases) {
    RecordedSource again;
    equip(again);
    again.messages(RTM_GETROUTE, {one.route});
    KernelFigures const figures = readKernel(again);
    EXPECT_EQ(figures.ipv4.pendingRoutes, one.pending ? 1U : 0U) << one.what;
    EXPECT_EQ(figures.ipv4.pendingAdjacencies, one.pending ? 1U : 0U) << one.what;
  }
}

TEST_F(Host, HasRoutesUnprogrammedOrTrappedThatAreMarkedSo) {
  KernelFigures const figures =
      with({routeVia(1, "10.0.0.1", RTNH_F_DEAD), connected(2, RTNH_F_LINKDOWN),
            routeVia(1, "10.0.0.1", RTM_F_OFFLOAD_FAILED), connected(1, RTM_F_TRAP), connected(1, RTM_F_OFFLOAD)});
  EXPECT_EQ(figures.ipv4,
            (RouteCounts{.routes = 5, .adjacencies = 3, .unprogrammedRoutes = 3, .unprogrammedAdjacencies = 2}));
  EXPECT_EQ(figures.routesTrapped, 1U);
}

TEST_F(Host, HasAMultiPathRouteUnprogrammedWhenNoPathIsUp) {
  KernelFigures const figures =
      with({routeVia(AF_INET, {hop(1, "10.0.0.1"), hop(2, "10.0.0.2", RTNH_F_DEAD | RTNH_F_LINKDOWN)}),
            routeVia(AF_INET, {hop(2, "10.0.0.2", RTNH_F_LINKDOWN), hop(3, "10.0.0.3", RTNH_F_LINKDOWN)})});
  EXPECT_EQ(figures.ipv4.unprogrammedRoutes, 1U);
  EXPECT_EQ(figures.ipv4.unprogrammedAdjacencies, 2U);
}

TEST_F(Host, CountsSetsOfNextHopsByTheirMembers) {
  KernelFigures const figures = with({
      connected(1),
      routeVia(1, "10.0.0.1"),
      routeVia(1, "10.0.0.1"),
      routeVia(AF_INET, {hop(1, "10.0.0.1"), hop(1, "10.0.0.2")}),
      routeVia(AF_INET, {hop(1, "10.0.0.2", 0, 9), hop(1, "10.0.0.1")}),  // neither order nor weight matters
      routeVia(AF_INET, {hop(1, "10.0.0.1"), hop(1, "10.0.0.3")}),
      route(AF_INET6).put(RTA_OIF, 1U),  // the set of the connected IPv4 route
      route(AF_INET, RTN_BLACKHOLE),
  });
  EXPECT_EQ(figures.ipv4.adjacencies, 4U);
  EXPECT_EQ(figures.ipv6.adjacencies, 1U);
  EXPECT_EQ(figures.ipSets, (SetCounts{.singlePath = 2, .multiPath = 2}));
  EXPECT_EQ(figures.mplsSets, SetCounts{});
  EXPECT_EQ(figures.tunnelSets, SetCounts{});
}

TEST_F(Host, CountsSetsThroughTunnelsApart) {
  KernelFigures const figures = with({
      routeVia(1, "10.0.0.1"), labelled(routeVia(1, "10.0.0.1")),  // the same adjacency, with a label pushed
      connected(3), connected(4),
      routeVia(AF_INET, {hop(1, "10.0.0.1"), hop(3, "10.0.0.5")}),  // one path through a tunnel is enough
  });
  EXPECT_EQ(figures.ipv4.adjacencies, 4U);
  EXPECT_EQ(figures.ipSets, (SetCounts{.singlePath = 1}));
  EXPECT_EQ(figures.tunnelSets, (SetCounts{.singlePath = 3, .multiPath = 1}));
}

TEST_F(Host, ReadsMplsRoutes) {
  auto const swap = [](std::uint32_t link, char const* gateway, std::uint32_t label) {
    return route(AF_MPLS).put(RTA_OIF, link).put(RTA_VIA, via(gateway)).put(RTA_NEWDST, label);
  };
  Buffer direct = bytesOf(__kernel_sa_family_t{AF_PACKET});
  direct.resize(2 + 6);  // a next hop given by its Ethernet address: nothing to resolve
  KernelFigures const figures = with({swap(1, "10.0.0.1", 100), swap(1, "10.0.0.1", 200), swap(1, "10.0.0.7", 100),
                                      route(AF_MPLS).put(RTA_OIF, 1U).put(RTA_VIA, direct)});
  EXPECT_EQ(figures.mpls, (RouteCounts{.routes = 4, .adjacencies = 3, .pendingRoutes = 1, .pendingAdjacencies = 1}));
  EXPECT_EQ(figures.mplsSets, (SetCounts{.singlePath = 4})) << "two labels make two sets";
  EXPECT_EQ(figures.ipSets, SetCounts{});
}

// An MPLS route by link 1 with so many labels for the one it takes off.
Message labelRoute(std::size_t labels) {
  Message message = route(AF_MPLS).put(RTA_OIF, 1U).put(RTA_VIA, via("10.0.0.1"));
  if (labels != 0) message.put(RTA_NEWDST, Buffer(labels * 4));
  return message;
}

TEST_F(Host, CountsEachMplsRouteThatPops) {
  Buffer const swap = pathBy(1, nested(RTA_NEWDST, Buffer(4)));
  KernelFigures const figures =
      with({labelRoute(0), labelRoute(0), labelRoute(1), routeVia(AF_MPLS, {swap, pathBy(2, {})}), connected(1)});
  EXPECT_EQ(figures.mplsPops, 3U) << "two to one next hop, and one that pops on one path of two";
  EXPECT_EQ(figures.mplsPushes, 0U) << "a swap adds no label";
}

TEST_F(Host, CountsDistinctPathsThatPushLabels) {
  Message const otherLabels = routeVia(1, "10.0.0.1")
                                  .put(RTA_ENCAP_TYPE, std::uint16_t{LWTUNNEL_ENCAP_MPLS})
                                  .put(RTA_ENCAP, Buffer(8, std::byte{1}));
  Message const noLabels =
      routeVia(1, "10.0.0.1").put(RTA_ENCAP_TYPE, std::uint16_t{LWTUNNEL_ENCAP_IP}).put(RTA_ENCAP, Buffer(8));
  KernelFigures const figures = with(
      {
          noLabels, labelled(routeVia(1, "10.0.0.1")), labelled(routeVia(1, "10.0.0.1")),  // the two are one path
          labelled(routeVia(1, "10.0.0.2")), otherLabels, connected(1),
          labelRoute(2),  // a swap and a push
      },
      {nextHop(1, 1, "10.0.0.77").put(NHA_ENCAP_TYPE, std::uint16_t{LWTUNNEL_ENCAP_MPLS}).put(NHA_ENCAP, Buffer(8))});
  EXPECT_EQ(figures.mplsPushes, 4U) << "no route uses the next-hop object";
  EXPECT_EQ(figures.mplsPops, 0U);
}

TEST_F(Host, ResolvesNextHopObjects) {
  auto const named = [](std::uint32_t id) { return route(AF_INET).put(RTA_NH_ID, id); };
  KernelFigures const figures = with(
      {named(1), named(10), named(10), route(AF_INET, RTN_BLACKHOLE), named(3), routeVia(1, "10.0.0.1"), named(99)},
      {nextHopGroup(10, {1, 2}),  // before its members
       nextHop(1, 1, "10.0.0.1"), nextHop(2, 2, "10.0.0.2", RTNH_F_LINKDOWN),
       Message{RTM_NEWNEXTHOP, nhmsg{}}.put(NHA_ID, 3U).put(NHA_BLACKHOLE, Buffer{}), nextHop(4, 1, "10.0.0.4")});
  EXPECT_EQ(
      figures.ipv4,
      (RouteCounts{
          .routes = 7, .adjacencies = 2, .pendingRoutes = 2, .pendingAdjacencies = 1, .unprogrammedAdjacencies = 1}));
  EXPECT_EQ(figures.ipSets, (SetCounts{.singlePath = 1, .multiPath = 1}));
  EXPECT_EQ(figures.missingNextHops, 1U);
}

TEST_F(Host, ComesToAnEndWithGroupsThatNameEachOther) {
  KernelFigures const figures =
      with({route(AF_INET).put(RTA_NH_ID, 10U)}, {nextHopGroup(10, {11, 1}), nextHopGroup(11, {10, 2}),
                                                  nextHop(1, 1, "10.0.0.1"), nextHop(2, 1, "10.0.0.2")});
  EXPECT_EQ(figures.ipv4.adjacencies, 2U);
  EXPECT_EQ(figures.nestedGroups, 2U);
}

TEST_F(Host, CountsMalformedMessagesAndGoesOn) {
  KernelFigures const figures =
      with({routeVia(1, "10.0.0.1"), route(AF_INET).put(RTA_GATEWAY, Buffer(3)), Message{RTM_NEWROUTE, 'x'}},
           {nextHopGroup(0, {1})});
  EXPECT_EQ(figures.ipv4.routes, 1U);
  EXPECT_EQ(figures.commands.failed, 2U);
  EXPECT_EQ(figures.failedNextHops, 1U);
}

TEST_F(Host, StartsTheFiguresOverWithEachAttempt) {
  kernel_.answer(RTM_GETROUTE,
                 {.messages = {routeVia(2, "10.0.0.7"), connected(1), prefix(AF_INET, 24)}, .interrupted = true});
  KernelFigures const figures = with({connected(1)});
  EXPECT_EQ(figures.ipv4Prefixes.byLength[24], 0U);
  EXPECT_EQ(figures.ipv4, (RouteCounts{.routes = 1, .adjacencies = 1}));
  EXPECT_EQ(figures.commands.processed, 1U);
  EXPECT_TRUE(figures.interrupted.empty());
}

TEST_F(Host, NamesTheTablesThatNeverSettledAndKeepsTheirLastState) {
  kernel_.answer(RTM_GETROUTE, {.messages = {connected(1)}, .interrupted = true});
  KernelFigures const figures = readKernel(kernel_);
  EXPECT_EQ(figures.interrupted, std::vector<std::string_view>{"The kernel's routes"});
  EXPECT_EQ(kernel_.requests(RTM_GETROUTE), Dumper::attempts);
  EXPECT_EQ(figures.ipv4.routes, 1U);
}

RC_GTEST_PROP(KernelReader, SurvivesAnySpoiledAnswer, ()) {
  RecordedSource kernel;
  equip(kernel);
  kernel.messages(RTM_GETNEXTHOP, {nextHop(1, 1, "10.0.0.1"), nextHopGroup(10, {1, 2})});
  kernel.messages(RTM_GETROUTE, {routeVia(AF_INET, {hop(1, "10.0.0.1"), hop(3, "10.0.0.5")}),
                                 route(AF_INET).put(RTA_NH_ID, 10U), labelled(routeVia(1, "fd00::1"))});
  auto const mutations = *rc::gen::container<std::vector<std::pair<std::size_t, std::uint8_t>>>(
      rc::gen::pair(rc::gen::inRange<std::size_t>(0, 400), rc::gen::arbitrary<std::uint8_t>()));
  kernel.spoilWith([&mutations](Buffer& datagram) {
    for (auto const& [place, value] : mutations) {
      if (place < datagram.size()) datagram[place] = std::byte{value};
    }
    datagram.shrink_to_fit();
  });
  try {
    KernelFigures const figures = readKernel(kernel);
    RC_ASSERT(figures.ipv4.routes <= figures.commands.processed);
  } catch (KernelError const&) {
    // As good an end: the message says that the answer could not be read.
  }
}

}  // namespace
}  // namespace Apps::Kernel
