#include "apps/kernel/LinkTable.h"

#include "apps/kernel/AdjacencyTable.h"

#include <net/if.h>

#include <algorithm>
#include <unordered_set>

namespace Apps::Kernel {

void LinkTable::add(Link const& link) { links_[link.index].link = link; }

bool LinkTable::add(LinkAddress const& address) {
  auto const found = links_.find(address.link);
  if (found == links_.end()) return false;
  bool const isNew = !remove(address);
  addresses_.insert(address);
  if (address.reachesBeyondLink) ++found->second.addresses;
  return isNew;
}

void LinkTable::remove(std::uint32_t index) {
  links_.erase(index);
  std::erase_if(addresses_, [index](LinkAddress const& address) { return address.link == index; });
}

bool LinkTable::remove(LinkAddress const& address) {
  auto const known = addresses_.find(address);
  if (known == addresses_.end()) return false;
  if (known->reachesBeyondLink) --links_[address.link].addresses;
  addresses_.erase(known);
  return true;
}

void LinkTable::clear() noexcept {
  links_.clear();
  addresses_.clear();
}

void LinkTable::clearAddresses() noexcept {
  for (auto& [index, entry] : links_) entry.addresses = 0;
  addresses_.clear();
}

std::size_t LinkTable::Hash::operator()(LinkAddress const& address) const noexcept {
  return hashOf(Adjacency{address.link, address.address}) ^ address.prefixLength;
}

Link const* LinkTable::link(std::uint32_t index) const noexcept {
  Entry const* const entry = find(index);
  return entry == nullptr ? nullptr : &entry->link;
}

std::uint32_t LinkTable::count(LinkKind kind) const noexcept {
  auto const isOfKind = [kind](auto const& member) { return member.second.link.kind == kind; };
  return static_cast<std::uint32_t>(std::count_if(links_.begin(), links_.end(), isOfKind));
}

std::uint32_t LinkTable::tunnelCount() const noexcept { return count(LinkKind::tunnel) + count(LinkKind::vxlan); }

bool LinkTable::needsNeighbours(std::uint32_t index) const noexcept {
  Entry const* entry = find(index);
  return entry == nullptr || (entry->link.flags & (IFF_NOARP | IFF_LOOPBACK)) == 0;
}

bool LinkTable::isTunnel(std::uint32_t index) const noexcept {
  Entry const* entry = find(index);
  return entry != nullptr && (entry->link.kind == LinkKind::tunnel || entry->link.kind == LinkKind::vxlan);
}

bool LinkTable::routesVxlan() const {
  // What carries VXLAN packets: the links themselves and, step by step, the links above them.
  std::unordered_set<std::uint32_t> carriers;
  for (auto const& [index, entry] : links_) {
    if (entry.link.kind != LinkKind::vxlan || !isUp(entry)) continue;
    carriers.insert(index);
    Entry const* master = find(entry.link.master);
    if (master != nullptr) carriers.insert(master->link.index);
  }
  for (std::size_t before = 0; before != carriers.size();) {
    before = carriers.size();
    for (auto const& [index, entry] : links_) {
      if (entry.link.kind == LinkKind::stacked && carriers.contains(entry.link.below)) carriers.insert(index);
    }
  }
  return std::any_of(carriers.begin(), carriers.end(), [this](std::uint32_t index) { return routes(*find(index)); });
}

LinkTable::Entry const* LinkTable::find(std::uint32_t index) const noexcept {
  auto const found = links_.find(index);
  return found == links_.end() ? nullptr : &found->second;
}

bool LinkTable::routes(Entry const& entry) const noexcept {
  if (!isUp(entry)) return false;
  Entry const* master = find(entry.link.master);
  return entry.addresses != 0 || (master != nullptr && master->link.kind == LinkKind::vrf);
}

bool LinkTable::isUp(Entry const& entry) const noexcept { return (entry.link.flags & IFF_UP) != 0; }

}  // namespace Apps::Kernel
