// Readers of link and address messages. Each answers nothing if the message is malformed.
#pragma once

#include "apps/kernel/NextHop.h"

#include <cstdint>
#include <optional>

namespace Apps::Kernel {

enum class LinkKind : std::uint8_t {
  other,
  vrf,
  vxlan,
  stacked,  // carries the packets of the link below it: VLAN, MAC VLAN
  tunnel    // any other link that puts packets into packets
};

struct Link {
  std::uint32_t index = 0;
  std::uint32_t flags = 0;   // IFF_*
  std::uint32_t master = 0;  // index of the bridge, VRF or bond that it belongs to; 0: none
  std::uint32_t below = 0;   // index of the link that it stands on; 0: none, or in another network namespace
  LinkKind kind = LinkKind::other;
};

struct LinkAddress {
  std::uint32_t link = 0;
  bool reachesBeyondLink = false;  // its scope is wider than the link
  std::uint8_t prefixLength = 0;
  Address address = {};  // with `local` and the prefix, what tells it from others of its link
  Address local = {};

  [[nodiscard]] bool isSame(LinkAddress const& other) const noexcept {
    return link == other.link && prefixLength == other.prefixLength && address == other.address && local == other.local;
  }
};

/// Nothing also of a message that tells another family's view of a link, such as a bridge's of its ports.
[[nodiscard]] std::optional<Link> readLink(Bytes body);
[[nodiscard]] std::optional<LinkAddress> readLinkAddress(Bytes body);

}  // namespace Apps::Kernel
