#include "tests/apps/ModelKernel.h"

#include <algorithm>
#include <string>

namespace Apps::Kernel {

namespace {

using Route = ModelKernel::Route;

constexpr unsigned up = IFF_UP | IFF_RUNNING;

std::uint32_t linkOf(unsigned path) { return path < 6 ? 1 + path / 3 : path - 5; }
bool hasGateway(unsigned path) { return path < 6; }
std::uint8_t flagsOf(unsigned path) { return hasGateway(path) && linkOf(path) == 2 ? RTNH_F_LINKDOWN : 0; }
std::string gatewayOf(std::uint8_t family, unsigned path) {
  return (family == AF_INET ? "10.0.0." : "fd00::") + std::to_string(1 + (path == 2 ? 1 : path % 3));
}

Buffer attributesOf(std::uint8_t family, unsigned path) {
  if (!hasGateway(path)) return {};
  Buffer const gateway = nested(RTA_GATEWAY, ip(gatewayOf(family, path).c_str()));
  if (path != 2) return gateway;
  return joined({gateway, nested(RTA_ENCAP_TYPE, bytesOf(std::uint16_t{LWTUNNEL_ENCAP_MPLS})),
                 nested(RTA_ENCAP, Buffer(8, std::byte{1}))});
}

template <class Member>
bool holds(std::vector<Member> const& all, Member const& one) {
  return std::find(all.begin(), all.end(), one) != all.end();
}

// The one of the IPv6 routes to a prefix that is made up of paths with gateways.
auto withGateways(std::vector<Route>& routes) {
  return std::find_if(routes.begin(), routes.end(),
                      [](Route const& route) { return hasGateway(*route.paths.begin()); });
}

}  // namespace

Message ModelKernel::message(std::uint8_t family, unsigned key, Route const& route, std::uint8_t type) const {
  auto const differs = [&](Differ by) { return key == 2 && differ_ == by; };
  bool const isAlone = route.paths.size() == 1;
  std::uint32_t const flags = (isAlone ? flagsOf(*route.paths.begin()) : 0U) | (key == 2 ? RTM_F_TRAP : 0U);
  rtmsg header = routeHeader(family, key == 0 ? 0 : 24, type, flags);
  header.rtm_tos = differs(Differ::typeOfService) ? 8 : 0;
  header.rtm_src_len = differs(Differ::source) && family == AF_INET6 ? 16 : 0;
  Message message{RTM_NEWROUTE, header};
  bool const byPrefix = differ_ == Differ::prefix || (differ_ == Differ::source && family == AF_INET);
  std::string const number = std::to_string(byPrefix ? key : 1);
  if (key != 0)
    message.put(RTA_DST, ip((family == AF_INET ? "30.0." + number + ".0" : "fd01:" + number + "::").c_str()));
  if (differs(Differ::metric)) message.put(RTA_PRIORITY, 7U);
  if (differs(Differ::table)) message.put(RTA_TABLE, 1000U);
  if (header.rtm_src_len != 0) message.put(RTA_SRC, ip("fd05::"));
  if (route.object != 0) return message.put(RTA_NH_ID, route.object);
  if (isAlone) {
    unsigned const path = *route.paths.begin();
    return message.put(RTA_OIF, linkOf(path)).append(attributesOf(family, path));
  }
  std::vector<Buffer> hops;
  for (unsigned path : route.paths) {
    hops.push_back(pathBy(static_cast<int>(linkOf(path)), attributesOf(family, path), flagsOf(path)));
  }
  return message.put(RTA_MULTIPATH, joined(hops));
}

Message ModelKernel::objectMessage(std::uint32_t id, unsigned path) const {
  return nextHop(id, linkOf(path), gatewayOf(AF_INET, path).c_str(), flagsOf(path));
}

Message ModelKernel::neighbourMessage(unsigned gateway, std::uint16_t state) const {
  return Kernel::neighbour(1, gatewayOf(AF_INET, gateway).c_str(), state);
}

void ModelKernel::tell(Message const& message, std::uint16_t flags) {
  notifications.tell(message, flags);
  answer();
}

void ModelKernel::tellRoute(Message const& route, std::uint64_t& count, std::uint16_t flags) {
  ++commands.processed;
  ++count;
  tell(route, flags);
}

void ModelKernel::add4(unsigned key, Route const& route, Place place) {
  auto& routes = routes_[{AF_INET, key}];
  if (routes.empty() != (place == Place::alone)) return;
  routes.insert(place == Place::first ? routes.begin() : routes.end(), route);
  constexpr std::uint16_t flags[] = {NLM_F_CREATE | NLM_F_EXCL, NLM_F_CREATE, NLM_F_CREATE | NLM_F_APPEND};
  tellRoute(message(AF_INET, key, route), commands.added, flags[static_cast<std::size_t>(place)]);
}

void ModelKernel::replace4(unsigned key, Route const& route) {
  auto& routes = routes_[{AF_INET, key}];
  if (routes.empty() || holds(routes, route)) return;
  routes.front() = route;
  tellRoute(message(AF_INET, key, route), commands.overwritten, NLM_F_REPLACE);
}

void ModelKernel::replaceByLocal4(unsigned key) {
  auto& routes = routes_[{AF_INET, key}];
  if (routes.size() != 1) return;
  Message const local = message(AF_INET, key, routes.front(), RTN_LOCAL);
  routes.clear();
  tellRoute(local, commands.deleted, NLM_F_REPLACE);
}

void ModelKernel::erase(std::uint8_t family, unsigned key, std::size_t which) {
  auto& routes = routes_[{family, key}];
  if (which >= routes.size()) return;
  Message const gone = message(family, key, routes[which]).as(RTM_DELROUTE);
  routes.erase(routes.begin() + static_cast<std::ptrdiff_t>(which));
  tellRoute(gone, commands.deleted);
}

void ModelKernel::add6(unsigned key, unsigned path) {
  auto& routes = routes_[{AF_INET6, key}];
  Route const alone{{path}};
  auto const joined = withGateways(routes);
  if (!hasGateway(path) || joined == routes.end()) {
    if (holds(routes, alone)) return;
    std::uint16_t const flags = routes.empty() ? NLM_F_CREATE | NLM_F_EXCL : NLM_F_CREATE;
    routes.push_back(alone);
    return tellRoute(message(AF_INET6, key, alone), commands.added, flags);
  }
  if (!joined->paths.insert(path).second) return;
  tellRoute(message(AF_INET6, key, *joined), commands.overwritten, NLM_F_CREATE | NLM_F_APPEND);
}

void ModelKernel::replace6(unsigned key, Paths const& paths) {
  auto& routes = routes_[{AF_INET6, key}];
  auto const replaced = withGateways(routes);
  if (replaced == routes.end() || holds(routes, Route{paths})) return;
  replaced->paths = paths;
  tellRoute(message(AF_INET6, key, *replaced), commands.overwritten, NLM_F_REPLACE);
}

void ModelKernel::delete6(unsigned key, unsigned path) {
  auto& routes = routes_[{AF_INET6, key}];
  auto const holder =
      std::find_if(routes.begin(), routes.end(), [path](Route const& route) { return route.paths.contains(path); });
  if (holder == routes.end()) return;
  holder->paths.erase(path);
  bool const isGone = holder->paths.empty();
  if (isGone) routes.erase(holder);
  tellRoute(message(AF_INET6, key, Route{{path}}).as(RTM_DELROUTE), isGone ? commands.deleted : commands.overwritten);
}

void ModelKernel::object(std::uint32_t id, unsigned path) {
  objects_[id] = path;
  tell(objectMessage(id, path));
}

void ModelKernel::deleteObject(std::uint32_t id) {
  if (objects_.erase(id) == 0) return;
  dropSilently([id](Route const& route) { return route.object == id; });
  tell(objectMessage(id, 0).as(RTM_DELNEXTHOP));
}

void ModelKernel::neighbour(unsigned gateway, std::uint16_t state) {
  neighbours_[gateway] = state;
  tell(neighbourMessage(gateway, state));
}

void ModelKernel::deleteNeighbour(unsigned gateway) {
  if (neighbours_.erase(gateway) == 0) return;
  tell(neighbourMessage(gateway, NUD_FAILED).as(RTM_DELNEIGH));
}

void ModelKernel::flap(std::uint32_t link) {
  dropSilently([link](Route const& route) {
    return std::any_of(route.paths.begin(), route.paths.end(), [link](unsigned path) { return linkOf(path) == link; });
  });
  tell(Kernel::link(static_cast<int>(link), link == 1 ? IFF_UP : IFF_RUNNING));
  tell(Kernel::link(static_cast<int>(link), up));
}

void ModelKernel::dropSilently(std::function<bool(Route const&)> const& isGone) {
  for (auto& [key, routes] : routes_) {
    if (key.first == AF_INET) commands.deleted += std::erase_if(routes, isGone);
  }
}

void ModelKernel::answer() {
  std::vector<Message> neighbours;
  for (auto const& [gateway, state] : neighbours_) neighbours.push_back(neighbourMessage(gateway, state));
  std::vector<Message> objects;
  for (auto const& [id, path] : objects_) objects.push_back(objectMessage(id, path));
  std::vector<Message> routes;
  for (auto const& [key, all] : routes_) {
    for (Route const& route : all) routes.push_back(message(key.first, key.second, route));
  }
  source.onlyMessages(RTM_GETLINK, {link(1, up), link(2, up)});
  source.onlyMessages(RTM_GETNEIGH, std::move(neighbours));
  source.onlyMessages(RTM_GETNEXTHOP, std::move(objects));
  source.onlyMessages(RTM_GETROUTE, std::move(routes));
}

}  // namespace Apps::Kernel
