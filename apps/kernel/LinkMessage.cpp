#include "apps/kernel/LinkMessage.h"

#include "apps/kernel/Attributes.h"

#include <linux/if_addr.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace Apps::Kernel {

namespace {

// The kinds by which the kernel calls its links, as in 'ip link add type KIND'.
constexpr std::array<std::string_view, 21> tunnelKinds{
    "amt",  "bareudp", "erspan", "geneve", "gre", "gretap", "gtp", "ip6erspan", "ip6gre",    "ip6gretap", "ip6tnl",
    "ipip", "l2tpeth", "ovpn",   "pfcp",   "sit", "tun",    "vti", "vti6",      "wireguard", "xfrm"};
constexpr std::array<std::string_view, 4> stackedKinds{"ipvlan", "macsec", "macvlan", "vlan"};

template <class Names>
bool holds(Names const& names, std::string_view name) noexcept {
  return std::find(names.begin(), names.end(), name) != names.end();
}

LinkKind kindOf(std::string_view name) noexcept {
  if (name == "vrf") return LinkKind::vrf;
  if (name == "vxlan") return LinkKind::vxlan;
  if (holds(stackedKinds, name)) return LinkKind::stacked;
  if (holds(tunnelKinds, name)) return LinkKind::tunnel;
  return LinkKind::other;
}

}  // namespace

std::optional<Link> readLink(Bytes body) {
  ifinfomsg header{};
  if (!readFront(body, header) || header.ifi_family != AF_UNSPEC) return std::nullopt;
  Link link;
  link.index = static_cast<std::uint32_t>(header.ifi_index);
  link.flags = header.ifi_flags;
  bool belowIsElsewhere = false;
  bool const whole = walkAttributes(afterHeader<ifinfomsg>(body), [&](Attribute const& a) {
    switch (a.type) {
    case IFLA_MASTER: return a.read(link.master);
    case IFLA_LINK: return a.read(link.below);
    case IFLA_LINK_NETNSID: belowIsElsewhere = true; return true;
    case IFLA_LINKINFO:
      return walkAttributes(a.payload, [&link](Attribute const& info) {
        if (info.type == IFLA_INFO_KIND) link.kind = kindOf(info.text());
        return true;
      });
    default: return true;
    }
  });
  if (!whole) return std::nullopt;
  if (belowIsElsewhere) link.below = 0;
  return link;
}

std::optional<LinkAddress> readLinkAddress(Bytes body) {
  ifaddrmsg header{};
  if (!readFront(body, header)) return std::nullopt;
  LinkAddress result{header.ifa_index, header.ifa_scope < RT_SCOPE_LINK, header.ifa_prefixlen};
  bool const whole = walkAttributes(afterHeader<ifaddrmsg>(body), [&](Attribute const& a) {
    if (a.type == IFA_ADDRESS) return result.address.set(header.ifa_family, a.payload);
    return a.type != IFA_LOCAL || result.local.set(header.ifa_family, a.payload);
  });
  if (!whole) return std::nullopt;
  return result;
}

}  // namespace Apps::Kernel
