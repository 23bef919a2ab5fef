#include "apps/kernel/RouteUse.h"

#include <linux/rtnetlink.h>

namespace Apps::Kernel {

RouteUse RouteReader::useOf(Route const& route) {
  RouteUse use;
  use.family = route.family;
  use.type = route.type;
  use.prefixLength = route.prefixLength;
  // The flags of an only path are those of the route: it is told down as a route with several is that lost the others.
  bool const isDownAsAWhole = isDown(route.flags) && route.paths.size() != 1;
  use.isOff = isDownAsAWhole || (route.flags & RTM_F_OFFLOAD_FAILED) != 0;
  use.isTrapped = (route.flags & (RTM_F_TRAP | RTNH_F_TRAP)) != 0;
  if (route.type == RTN_UNICAST) use.nextHopId = route.nextHopId;
  // The kernel may tell a next-hop object's paths in the route too; they are then of one state with the route.
  paths_.clear();
  down_.clear();
  for (Path const& path : route.paths) {
    paths_.push_back(table_.pathOf(path));
    if (isDown(path.flags)) down_.push_back(paths_.back());
  }
  use.set = table_.setOf(paths_);
  use.downSet = table_.setOf(down_);
  return use;
}

}  // namespace Apps::Kernel
