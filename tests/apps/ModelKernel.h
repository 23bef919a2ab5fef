// ModelKernel: a kernel that changes its forwarding state, tells of it as the real one does, and answers dumps.
#pragma once

#include "apps/kernel/KernelFigures.h"
#include "tests/apps/RecordedNotifications.h"
#include "tests/apps/RecordedSource.h"

#include <map>
#include <set>

namespace Apps::Kernel {

class ModelKernel {
 public:
  // 0 to 5: by a gateway, three on each of two links; 2 goes like 1, with labels around the packet; those on the second
  // link are down. 6 and 7: by the links without gateway.
  using Paths = std::set<unsigned>;

  struct Route {
    Paths paths;
    std::uint32_t object = 0;  // a next-hop object instead of paths
    friend bool operator==(Route const&, Route const&) = default;
  };

  enum class Place { alone, first, last };  // of a route among those of the same key

  // What the keys 1 and 2 of routes differ in; 0 is the default route.
  enum class Differ { prefix, typeOfService, metric, table, source, count };

  explicit ModelKernel(Differ differ = Differ::prefix) : differ_{differ} { answer(); }

  RecordedSource source;
  RecordedNotifications notifications;
  RouteCommands commands;  // what was done, but for what the kernel did silently

  // What the kernel would refuse is not done.
  void add4(unsigned key, Route const& route, Place place = Place::alone);
  void replace4(unsigned key, Route const& route);  // the first of them
  void replaceByLocal4(unsigned key);               // a route that is the only one
  // IPv6 paths with gateways make up one route, others are routes of their own.
  void add6(unsigned key, unsigned path);
  void replace6(unsigned key, Paths const& paths);  // paths with gateways
  void delete6(unsigned key, unsigned path);        // one path
  void erase(std::uint8_t family, unsigned key, std::size_t which);

  void object(std::uint32_t id, unsigned path);  // makes or replaces it
  void deleteObject(std::uint32_t id);           // and silently the IPv4 routes by way of it
  void neighbour(unsigned gateway, std::uint16_t state);
  void deleteNeighbour(unsigned gateway);
  void flap(std::uint32_t link);  // silently without its IPv4 routes: the first loses its carrier, the second goes down

 private:
  [[nodiscard]] Message message(std::uint8_t family, unsigned key, Route const& route,
                                std::uint8_t type = RTN_UNICAST) const;
  [[nodiscard]] Message objectMessage(std::uint32_t id, unsigned path) const;
  [[nodiscard]] Message neighbourMessage(unsigned gateway, std::uint16_t state) const;
  void tell(Message const& message, std::uint16_t flags = 0);
  void tellRoute(Message const& route, std::uint64_t& count, std::uint16_t flags = 0);
  void dropSilently(std::function<bool(Route const&)> const& isGone);
  void answer();

  Differ differ_;
  std::map<std::pair<std::uint8_t, unsigned>, std::vector<Route>> routes_;  // by family and key
  std::map<std::uint32_t, unsigned> objects_;
  std::map<unsigned, std::uint16_t> neighbours_;  // on the first link
};

}  // namespace Apps::Kernel
