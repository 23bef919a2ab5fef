#include "apps/kernel/RouteMessage.h"

#include "apps/kernel/Attributes.h"

#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <algorithm>

namespace Apps::Kernel {

namespace {

// A header that newer kernels share with IPv6 gateways of IPv4 routes and with MPLS: the address follows its family.
constexpr std::size_t viaHeaderSize = sizeof(__kernel_sa_family_t);

Family familyOf(std::uint8_t family) noexcept {
  switch (family) {
  case AF_INET: return Family::ipv4;
  case AF_INET6: return Family::ipv6;
  case AF_MPLS: return Family::mpls;
  default: return Family::other;
  }
}

bool readVia(Bytes payload, Address& gateway) noexcept {
  __kernel_sa_family_t family = 0;
  if (!readFront(payload, family) || family > 0xff) return false;
  return gateway.set(static_cast<std::uint8_t>(family), payload.subspan(viaHeaderSize));
}

// An attribute of a path, which stands in the route itself or in one of its next hops.
bool readPathAttribute(Attribute const& a, std::uint8_t routeFamily, Path& path) noexcept {
  switch (a.type) {
  case RTA_OIF: return a.read(path.adjacency.link);
  case RTA_GATEWAY: return path.adjacency.gateway.set(routeFamily, a.payload);
  case RTA_VIA: return readVia(a.payload, path.adjacency.gateway);
  case RTA_ENCAP_TYPE: return a.read(path.encapsulationType);
  case RTA_ENCAP: path.encapsulation = a.payload; return true;
  case RTA_NEWDST:
    path.encapsulationType = Path::labels;
    path.encapsulation = a.payload;
    return true;
  default: return true;
  }
}

bool readPaths(Bytes region, std::uint8_t routeFamily, std::vector<Path>& paths) {
  while (!region.empty()) {
    rtnexthop header{};
    if (!readFront(region, header)) return false;
    if (header.rtnh_len < sizeof header || header.rtnh_len > region.size()) return false;
    Path& path = paths.emplace_back();
    path.adjacency.link = static_cast<std::uint32_t>(header.rtnh_ifindex);
    path.flags = header.rtnh_flags;
    Bytes const attributes = afterHeader<rtnexthop>(region.first(header.rtnh_len));
    bool const whole =
        walkAttributes(attributes, [&](Attribute const& a) { return readPathAttribute(a, routeFamily, path); });
    if (!whole) return false;
    std::size_t const step = RTNH_ALIGN(header.rtnh_len);
    region = step < region.size() ? region.subspan(step) : Bytes{};
  }
  return true;
}

// The bytes that an address of the family has; of MPLS, a label of a stack.
std::size_t addressSize(Family family) noexcept { return family == Family::ipv6 ? 16 : 4; }

bool readPrefix(Bytes payload, Family family, PrefixBytes& into) noexcept {
  if (payload.size() != addressSize(family)) return false;
  std::copy(payload.begin(), payload.end(), into.begin());
  return true;
}

// An attribute that tells which route it is.
bool readIdentity(Attribute const& a, Route& route) noexcept {
  switch (a.type) {
  case RTA_DST: return readPrefix(a.payload, route.family, route.prefix);
  case RTA_SRC: return readPrefix(a.payload, route.family, route.source);
  case RTA_TABLE: return a.read(route.table);
  case RTA_PRIORITY: return a.read(route.priority);
  default: return true;
  }
}

}  // namespace

bool Route::forwardsOrDiscards() const noexcept {
  if ((flags & RTM_F_CLONED) != 0) return false;
  switch (type) {
  case RTN_UNICAST:
  case RTN_BLACKHOLE:
  case RTN_UNREACHABLE:
  case RTN_PROHIBIT:
  case RTN_THROW: return true;
  default: return false;
  }
}

bool readRoute(Bytes body, Route& route) {
  route.family = Family::other;
  rtmsg header{};
  if (!readFront(body, header)) return false;
  route.family = familyOf(header.rtm_family);
  route.type = header.rtm_type;
  route.prefixLength = header.rtm_dst_len;
  route.flags = header.rtm_flags;
  route.nextHopId = 0;
  route.paths.clear();
  route.typeOfService = header.rtm_tos;
  route.sourceLength = header.rtm_src_len;
  route.prefix = route.source = {};
  route.table = header.rtm_table;
  route.priority = 0;
  if (route.family == Family::other) return true;
  unsigned const bits = addressBits(route.family);
  if (bits != 0 && route.prefixLength > bits) return false;

  Path own;  // of a route with one path: its attributes stand in the route itself
  own.flags = static_cast<std::uint8_t>(header.rtm_flags);
  bool const whole = walkAttributes(afterHeader<rtmsg>(body), [&](Attribute const& a) {
    if (a.type == RTA_NH_ID) return a.read(route.nextHopId);
    if (!readIdentity(a, route)) return false;
    return a.type == RTA_MULTIPATH ? readPaths(a.payload, header.rtm_family, route.paths)
                                   : readPathAttribute(a, header.rtm_family, own);
  });
  if (!whole) return false;
  if (route.type != RTN_UNICAST) {
    route.paths.clear();  // it discards: what link it names means nothing
  } else if (route.paths.empty() && !(own.adjacency == Adjacency{})) {
    route.paths.push_back(own);
  }
  return true;
}

}  // namespace Apps::Kernel
