#include "apps/kernel/KernelReader.h"

#include "apps/kernel/Dump.h"
#include "apps/kernel/LinkTable.h"
#include "apps/kernel/NeighbourTable.h"
#include "apps/kernel/RouteFigures.h"

#include <sys/socket.h>

namespace Apps::Kernel {

namespace {

class Reader {
 public:
  explicit Reader(MessageSource& source) noexcept : dumper_{source} {}

  KernelFigures read() {
    readLinks();
    readAddresses();
    readNeighbours();
    readNextHops();
    readRoutes();
    sumUp();
    return std::move(figures_);
  }

 private:
  template <class Start, class Take>
  void table(Table name, Start&& start, Take&& take) {
    if (dumper_.read(name, start, take) == Outcome::interrupted) figures_.interrupted.push_back(tableName(name));
  }

  void readLinks() {
    table(
        Table::links, [this] { links_.clear(); },
        [this](Bytes body) {
          if (std::optional<Link> const link = readLink(body)) links_.add(*link);
        });
  }

  void readAddresses() {
    table(
        Table::addresses, [this] { links_.clearAddresses(); },
        [this](Bytes body) {
          if (std::optional<LinkAddress> const address = readLinkAddress(body)) links_.add(*address);
        });
  }

  void readNeighbours() {
    table(
        Table::neighbours,
        [this] {
          neighbours_.clear();
          unreadableNeighbours_ = 0;
        },
        [this](Bytes body) {
          if (std::optional<Neighbour> const neighbour = readNeighbour(body)) {
            neighbours_.add(*neighbour);
          } else {
            ++unreadableNeighbours_;
          }
        });
  }

  void readNextHops() {
    table(
        Table::nextHops,
        [this] {
          objects_.clear();
          figures_.failedNextHops = 0;
        },
        [this](Bytes body) {
          if (readNextHop(body, object_)) {
            objects_.add(object_);
          } else {
            ++figures_.failedNextHops;
          }
        });
  }

  void readRoutes() {
    table(
        Table::routes, [this] { routes_.clear(); },
        [this](Bytes body) {
          if (readRoute(body, route_)) {
            routes_.add(route_);
          } else {
            routes_.addUnreadable();
          }
        });
  }

  void sumUp() {
    figures_.vrfs = links_.count(LinkKind::vrf) + 1;
    figures_.vxlanTunnels = links_.count(LinkKind::vxlan);
    figures_.tunnels = links_.tunnelCount();
    figures_.routesVxlan = links_.routesVxlan();
    figures_.linkLayerNeighbours = neighbours_.linkLayerCount();
    figures_.failedNeighbours = neighbours_.failedCount() + unreadableNeighbours_;
    figures_.nestedGroups = objects_.nestedGroupCount();
    figures_.missingNextHops = objects_.missingCount();
    auto const isPending = [this](Adjacency const& adjacency) {
      // A gateway given by its link-layer address has nothing to be resolved.
      return adjacency.gateway.family != AF_PACKET && links_.needsNeighbours(adjacency.link) &&
             !neighbours_.isResolved(adjacency);
    };
    routes_.sumUp(figures_, isPending, [this](std::uint32_t link) { return links_.isTunnel(link); });
  }

  Dumper dumper_;
  LinkTable links_;
  NeighbourTable neighbours_;
  std::uint32_t unreadableNeighbours_ = 0;
  NextHopTable nextHops_;
  NextHopObjects objects_{nextHops_};
  RouteFigures routes_{nextHops_, objects_};
  NextHopObject object_;  // room that each message uses again
  Route route_;           // likewise
  KernelFigures figures_;
};

}  // namespace

KernelFigures readKernel(MessageSource& source) { return Reader{source}.read(); }

}  // namespace Apps::Kernel
