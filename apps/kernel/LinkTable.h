// LinkTable: the links of this host, as far as forwarding asks for them.
#pragma once

#include "apps/kernel/LinkMessage.h"

#include <unordered_map>

namespace Apps::Kernel {

class LinkTable {
 public:
  void add(Link const& link);
  void add(LinkAddress const& address);
  void clear() noexcept;           // links and addresses
  void clearAddresses() noexcept;  // addresses alone

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
    bool hasAddress = false;
  };

  [[nodiscard]] Entry const* find(std::uint32_t index) const noexcept;
  [[nodiscard]] bool routes(Entry const& entry) const noexcept;
  [[nodiscard]] bool isUp(Entry const& entry) const noexcept;

  std::unordered_map<std::uint32_t, Entry> links_;
};

}  // namespace Apps::Kernel
