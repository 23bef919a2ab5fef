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
  using Paths = std::set<unsigned>;  // 0 to 5: gateway n % 3 on link 1 + n / 3; 6 and 7: links 1 and 2 without gateway

  struct Route {
    Paths paths;
    std::uint32_t object = 0;  // a next-hop object instead of paths
    friend bool operator==(Route const&, Route const&) = default;
  };

  ModelKernel() { answer(); }

  RecordedSource source;
  RecordedNotifications notifications;
  RouteCommands commands;  // what was done, but for what the kernel did silently

  // IPv4 routes to prefix `key`. What the kernel would refuse is not done.
  void add4(unsigned key, Route const& route);      // where there is none
  void append4(unsigned key, Route const& route);   // behind others of the same key, which may go the same way
  void prepend4(unsigned key, Route const& route);  // before them
  void replace4(unsigned key, Route const& route);  // the first of them
  void delete4(unsigned key, std::size_t which);
  // IPv6 routes; paths with gateways make up one route, others are routes of their own.
  void add6(unsigned key, unsigned path);
  void replace6(unsigned key, Paths const& paths);  // paths with gateways
  void delete6(unsigned key, unsigned path);        // one path
  void deleteAll6(unsigned key, std::size_t which);

  void object(std::uint32_t id, unsigned path);  // makes or replaces it
  void deleteObject(std::uint32_t id);           // and silently the IPv4 routes by way of it
  void neighbour(unsigned gateway, std::uint16_t state);
  void deleteNeighbour(unsigned gateway);
  void flap(std::uint32_t link);  // down and up: silently without its IPv4 routes

 private:
  using Table = std::map<unsigned, std::vector<Route>>;
  enum class Place { alone, first, last };  // among the routes to one prefix

  [[nodiscard]] Message message(std::uint8_t family, unsigned key, Route const& route) const;
  void tell(Message const& route, std::uint16_t flags = 0);
  void insert4(unsigned key, Route const& route, Place place, std::uint16_t flags);
  void erase(std::uint8_t family, unsigned key, std::size_t which);
  void dropSilently(bool (*isGone)(Route const&, std::uint32_t), std::uint32_t what);
  void answer();

  Table ipv4_;
  Table ipv6_;
  std::map<std::uint32_t, unsigned> objects_;
  std::map<unsigned, std::uint16_t> neighbours_;  // by link and gateway, as paths
};

}  // namespace Apps::Kernel
