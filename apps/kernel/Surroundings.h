// Surroundings: what routes refer to: links and their addresses, neighbours, next-hop objects. They are few beside the
// routes, and kept whole. Owner: who reads the kernel.
#pragma once

#include "apps/kernel/Dump.h"
#include "apps/kernel/LinkTable.h"
#include "apps/kernel/NeighbourTable.h"
#include "apps/kernel/RouteFigures.h"

#include <vector>

namespace Apps::Kernel {

class Surroundings {
 public:
  using Interrupted = std::vector<std::string_view>;  // names of tables that changed during every attempt to read them

  Surroundings() = default;
  Surroundings(Surroundings const&) = delete;
  Surroundings& operator=(Surroundings const&) = delete;

  /// Reads all anew. Throws KernelError.
  void read(Dumper& dumper, Interrupted& interrupted);

  /// What a notification came to.
  enum class Taken {
    foreign,  // it is about something else
    taken,
    takenAndMore  // the kernel changes other things with it, of which it tells nothing: they must be read anew
  };
  /// Takes a notification. Malformed ones are counted and passed over.
  Taken take(std::uint16_t messageType, Bytes body);

  /// Figures of these and of the routes that `routes` counts.
  [[nodiscard]] KernelFigures sumUp(RouteFigures const& routes) const;

  [[nodiscard]] NextHopTable& nextHops() noexcept { return nextHops_; }
  [[nodiscard]] NextHopObjects& objects() noexcept { return objects_; }

 private:
  Taken takeLink(Bytes body, bool isNew);
  Taken takeAddress(Bytes body, bool isNew);
  Taken takeNeighbour(Bytes body, bool isNew);
  Taken takeNextHop(Bytes body, bool isNew);

  LinkTable links_;
  NeighbourTable neighbours_;
  std::uint32_t unreadableNeighbours_ = 0;
  NextHopTable nextHops_;
  NextHopObjects objects_{nextHops_};
  std::uint32_t unreadableNextHops_ = 0;
  NextHopObject object_;  // room that each message uses again
};

}  // namespace Apps::Kernel
