#include "tests/apps/ModelKernel.h"

#include <algorithm>
#include <array>
#include <string>

namespace Apps::Kernel {

namespace {

using Route = ModelKernel::Route;

std::uint32_t linkOf(unsigned path) { return path < 6 ? 1 + path / 3 : path - 5; }
bool hasGateway(unsigned path) { return path < 6; }
std::string gatewayOf(std::uint8_t family, unsigned path) {
  return (family == AF_INET ? "10.0.0." : "fd00::") + std::to_string(1 + path % 3);
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

Message ModelKernel::message(std::uint8_t family, unsigned key, Route const& route) const {
  rtmsg header{};
  header.rtm_family = family;
  header.rtm_dst_len = key == 0 ? 0 : 24;
  header.rtm_type = RTN_UNICAST;
  header.rtm_table = RT_TABLE_MAIN;
  Message message{RTM_NEWROUTE, header};
  if (key != 0)
    message.put(RTA_DST,
                ip(((family == AF_INET ? "30.0." : "fd01:") + std::to_string(key) + (family == AF_INET ? ".0" : "::"))
                       .c_str()));
  if (route.object != 0) return message.put(RTA_NH_ID, route.object);
  if (route.paths.size() == 1) {
    unsigned const path = *route.paths.begin();
    message.put(RTA_OIF, linkOf(path));
    return hasGateway(path) ? message.put(RTA_GATEWAY, ip(gatewayOf(family, path).c_str())) : message;
  }
  std::vector<Buffer> hops;
  for (unsigned path : route.paths) {
    hops.push_back(hop(static_cast<int>(linkOf(path)), gatewayOf(family, path).c_str()));
  }
  return message.put(RTA_MULTIPATH, joined(hops));
}

void ModelKernel::tell(Message const& route, std::uint16_t flags) {
  notifications.tell(route, flags);
  ++commands.processed;
  answer();
}

void ModelKernel::insert4(unsigned key, Route const& route, Place place, std::uint16_t flags) {
  auto& routes = ipv4_[key];
  if (routes.empty() != (place == Place::alone)) return;
  routes.insert(place == Place::first ? routes.begin() : routes.end(), route);
  ++commands.added;
  tell(message(AF_INET, key, route), flags);
}

void ModelKernel::add4(unsigned key, Route const& route) {
  insert4(key, route, Place::alone, NLM_F_CREATE | NLM_F_EXCL);
}
void ModelKernel::append4(unsigned key, Route const& route) {
  insert4(key, route, Place::last, NLM_F_CREATE | NLM_F_APPEND);
}
void ModelKernel::prepend4(unsigned key, Route const& route) { insert4(key, route, Place::first, NLM_F_CREATE); }

void ModelKernel::replace4(unsigned key, Route const& route) {
  auto& routes = ipv4_[key];
  if (routes.empty() || holds(routes, route)) return;
  routes.front() = route;
  ++commands.overwritten;
  tell(message(AF_INET, key, route), NLM_F_REPLACE);
}

void ModelKernel::erase(std::uint8_t family, unsigned key, std::size_t which) {
  auto& routes = (family == AF_INET ? ipv4_ : ipv6_)[key];
  if (which >= routes.size()) return;
  Route const gone = routes[which];
  routes.erase(routes.begin() + static_cast<std::ptrdiff_t>(which));
  ++commands.deleted;
  tell(message(family, key, gone).as(RTM_DELROUTE));
}

void ModelKernel::delete4(unsigned key, std::size_t which) { erase(AF_INET, key, which); }
void ModelKernel::deleteAll6(unsigned key, std::size_t which) { erase(AF_INET6, key, which); }

void ModelKernel::add6(unsigned key, unsigned path) {
  auto& routes = ipv6_[key];
  Route const alone{{path}};
  auto const joined = withGateways(routes);
  if (!hasGateway(path) || joined == routes.end()) {
    if (holds(routes, alone)) return;
    std::uint16_t const flags = routes.empty() ? NLM_F_CREATE | NLM_F_EXCL : NLM_F_CREATE;
    routes.push_back(alone);
    ++commands.added;
    return tell(message(AF_INET6, key, alone), flags);
  }
  if (!joined->paths.insert(path).second) return;
  ++commands.overwritten;
  tell(message(AF_INET6, key, *joined), NLM_F_CREATE | NLM_F_APPEND);
}

void ModelKernel::replace6(unsigned key, Paths const& paths) {
  auto& routes = ipv6_[key];
  auto const replaced = withGateways(routes);
  if (replaced == routes.end() || holds(routes, Route{paths})) return;
  replaced->paths = paths;
  ++commands.overwritten;
  tell(message(AF_INET6, key, *replaced), NLM_F_REPLACE);
}

void ModelKernel::delete6(unsigned key, unsigned path) {
  auto& routes = ipv6_[key];
  auto const holder =
      std::find_if(routes.begin(), routes.end(), [path](Route const& route) { return route.paths.contains(path); });
  if (holder == routes.end()) return;
  holder->paths.erase(path);
  ++(holder->paths.empty() ? commands.deleted : commands.overwritten);
  if (holder->paths.empty()) routes.erase(holder);
  tell(message(AF_INET6, key, Route{{path}}).as(RTM_DELROUTE));
}

void ModelKernel::object(std::uint32_t id, unsigned path) {
  objects_[id] = path;
  notifications.tell(nextHop(id, linkOf(path), gatewayOf(AF_INET, path).c_str()));
  answer();
}

void ModelKernel::deleteObject(std::uint32_t id) {
  if (objects_.erase(id) == 0) return;
  dropSilently([](Route const& route, std::uint32_t object) { return route.object == object; }, id);
  notifications.tell(nextHop(id, 1, "10.0.0.1").as(RTM_DELNEXTHOP));
}

void ModelKernel::neighbour(unsigned gateway, std::uint16_t state) {
  neighbours_[gateway] = state;
  notifications.tell(Kernel::neighbour(1, gatewayOf(AF_INET, gateway).c_str(), state));
  answer();
}

void ModelKernel::deleteNeighbour(unsigned gateway) {
  if (neighbours_.erase(gateway) == 0) return;
  notifications.tell(Kernel::neighbour(1, gatewayOf(AF_INET, gateway).c_str(), NUD_FAILED).as(RTM_DELNEIGH));
  answer();
}

void ModelKernel::flap(std::uint32_t link) {
  auto const goesBy = [](Route const& route, std::uint32_t downLink) {
    return std::any_of(route.paths.begin(), route.paths.end(),
                       [downLink](unsigned p) { return linkOf(p) == downLink; });
  };
  notifications.tell(Kernel::link(static_cast<int>(link), 0));
  notifications.tell(Kernel::link(static_cast<int>(link), IFF_UP));
  dropSilently(goesBy, link);
}

void ModelKernel::dropSilently(bool (*isGone)(Route const&, std::uint32_t), std::uint32_t what) {
  for (auto& [key, routes] : ipv4_) {
    commands.deleted += std::erase_if(routes, [&](Route const& route) { return isGone(route, what); });
  }
  answer();
}

void ModelKernel::answer() {
  source.onlyMessages(RTM_GETLINK, {link(1, IFF_UP), link(2, IFF_UP)});
  std::vector<Message> neighbours;
  for (auto const& [gateway, state] : neighbours_) {
    neighbours.push_back(Kernel::neighbour(1, gatewayOf(AF_INET, gateway).c_str(), state));
  }
  source.onlyMessages(RTM_GETNEIGH, std::move(neighbours));
  std::vector<Message> objects;
  for (auto const& [id, path] : objects_)
    objects.push_back(nextHop(id, linkOf(path), gatewayOf(AF_INET, path).c_str()));
  source.onlyMessages(RTM_GETNEXTHOP, std::move(objects));
  std::vector<Message> routes;
  for (auto const& [family, table] : {std::pair{AF_INET, &ipv4_}, std::pair{AF_INET6, &ipv6_}}) {
    for (auto const& [key, all] : *table) {
      for (Route const& route : all) routes.push_back(message(static_cast<std::uint8_t>(family), key, route));
    }
  }
  source.onlyMessages(RTM_GETROUTE, std::move(routes));
}

}  // namespace Apps::Kernel
