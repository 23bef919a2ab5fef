// LinkTable: the links of this host, as far as forwarding asks for them.
#pragma once

#include "apps/kernel/LinkMessage.h"

#include <unordered_map>
#include <unordered_set>

namespace Apps::Kernel {

class LinkTable {
 public:
  void add(Link const& link);            // takes the place of what was told of it; its addresses stay
  bool add(LinkAddress const& address);  // true if it is new; of a link that is not known it is not kept
  void remove(std::uint32_t index);
  bool remove(LinkAddress const& address);  // true if it was there
  void clear() noexcept;                    // links and addresses
  void clearAddresses() noexcept;           // addresses alone

  /// The link with an index; null if it is not known. Holds until the next change.
  [[nodiscard]] Link const* link(std::uint32_t index) const noexcept;
  [[nodiscard]] std::uint32_t count(LinkKind kind) const noexcept;
  [[nodiscard]] std::uint32_t tunnelCount() const noexcept;  // links of which isTunnel() is true
  /// Whether gateways on the link have link-layer addresses to be resolved. True of an unknown link.
  [[nodiscard]] bool needsNeighbours(std::uint32_t index) const noexcept;
  /// Whether what leaves by the link is put into another packet.
  [[nodiscard]] bool isTunnel(std::uint32_t index) const noexcept;
  /// Whether some VXLAN link takes part in routing: it is up, and it, its bridge, or a VLAN on top of them is up and is
  /// a member of a VRF or has an address that reaches beyond the link.
  [[nodiscard]] bool routesVxlan() const;

 private:
  struct Entry {
    Link link;
    std::uint32_t addresses = 0;  // those that reach beyond the link
  };

  struct Hash {
    std::size_t operator()(LinkAddress const& address) const noexcept;
  };
  struct Same {
    bool operator()(LinkAddress const& a, LinkAddress const& b) const noexcept { return a.isSame(b); }
  };

  [[nodiscard]] Entry const* find(std::uint32_t index) const noexcept;
  [[nodiscard]] bool routes(Entry const& entry) const noexcept;
  [[nodiscard]] bool isUp(Entry const& entry) const noexcept;

  std::unordered_map<std::uint32_t, Entry> links_;
  std::unordered_set<LinkAddress, Hash, Same> addresses_;  // those that reach beyond their link are counted there
};

}  // namespace Apps::Kernel
