#include "apps/kernel/NextHopTable.h"

#include <linux/lwtunnel.h>

#include <algorithm>

namespace Apps::Kernel {

namespace {

std::string_view text(Bytes bytes) noexcept { return {reinterpret_cast<char const*>(bytes.data()), bytes.size()}; }

}  // namespace

std::uint32_t NextHopTable::encapsulationOf(Path const& path) {
  if (path.encapsulationType == 0) return 0;
  std::string_view const bytes = text(path.encapsulation);
  HashValue const hash = hashOf(bytes) ^ path.encapsulationType;
  std::uint32_t const known = encapsulationIndex_.find(hash, [&](std::uint32_t number) {
    Encapsulation const& e = encapsulations_[number - 1];
    return e.type == path.encapsulationType && e.bytes == bytes;
  });
  if (known != HashIndex::none) return known;
  encapsulations_.push_back({path.encapsulationType, std::string{bytes}});
  auto const number = static_cast<std::uint32_t>(encapsulations_.size());
  encapsulationIndex_.add(hash, number);
  return number;
}

std::uint32_t NextHopTable::pathOf(Path const& path) {
  Member const member{adjacencies_.numberOf(path.adjacency), encapsulationOf(path)};
  HashValue const hash = hashOf(text(std::as_bytes(std::span{&member, 1})));
  std::uint32_t const known = pathIndex_.find(hash, [&](std::uint32_t number) {
    return paths_[number].adjacency == member.adjacency && paths_[number].encapsulation == member.encapsulation;
  });
  if (known != HashIndex::none) return known;
  auto const number = static_cast<std::uint32_t>(paths_.size());
  paths_.push_back(member);
  pathIndex_.add(hash, number);
  return number;
}

std::uint32_t NextHopTable::setOf(std::vector<std::uint32_t>& paths) {
  if (paths.empty()) return noSet;
  std::sort(paths.begin(), paths.end());
  paths.erase(std::unique(paths.begin(), paths.end()), paths.end());
  HashValue const hash = hashOf(text(std::as_bytes(std::span{paths})));
  std::uint32_t const known = setIndex_.find(hash, [&](std::uint32_t number) {
    auto const members = set(number);
    return std::equal(members.begin(), members.end(), paths.begin(), paths.end());
  });
  if (known != HashIndex::none) return known;
  auto const number = static_cast<std::uint32_t>(sets_.size());
  sets_.push_back({static_cast<std::uint32_t>(pathsOfSets_.size()), static_cast<std::uint32_t>(paths.size())});
  pathsOfSets_.insert(pathsOfSets_.end(), paths.begin(), paths.end());
  setIndex_.add(hash, number);
  return number;
}

std::uint32_t NextHopTable::without(std::uint32_t set, std::uint32_t others) {
  if (set == noSet || others == noSet) return set;
  auto const from = this->set(set);
  auto const taken = this->set(others);
  std::vector<std::uint32_t> left;
  std::set_difference(from.begin(), from.end(), taken.begin(), taken.end(), std::back_inserter(left));
  return setOf(left);
}

bool NextHopTable::overlap(std::uint32_t a, std::uint32_t b) const {
  if (a == noSet || b == noSet) return false;
  auto const those = set(b);
  auto const isOfBoth = [&those](std::uint32_t path) { return std::binary_search(those.begin(), those.end(), path); };
  auto const these = set(a);
  return std::any_of(these.begin(), these.end(), isOfBoth);
}

std::uint32_t NextHopTable::pathLike(NextHopTable const& other, std::uint32_t path) {
  Member const& member = other.path(path);
  Path same{.adjacency = other.adjacencies()[member.adjacency], .encapsulation = {}};
  if (member.encapsulation != 0) {
    Encapsulation const& e = other.encapsulations_[member.encapsulation - 1];
    same.encapsulationType = e.type;
    same.encapsulation = std::as_bytes(std::span{e.bytes});
  }
  return pathOf(same);
}

std::uint32_t NextHopTable::setLike(NextHopTable const& other, std::uint32_t set) {
  if (set == noSet) return noSet;
  std::vector<std::uint32_t> paths;
  for (std::uint32_t path : other.set(set)) paths.push_back(pathLike(other, path));
  return setOf(paths);
}

std::span<std::uint32_t const> NextHopTable::set(std::uint32_t number) const {
  Run const& run = sets_[number];
  return std::span{pathsOfSets_}.subspan(run.first, run.count);
}

bool NextHopTable::isTunnelled(Member const& path) const noexcept {
  return path.encapsulation != 0 && encapsulations_[path.encapsulation - 1].type != Path::labels;
}

bool NextHopTable::pushesLabels(Member const& path) const noexcept {
  if (path.encapsulation == 0) return false;
  Encapsulation const& e = encapsulations_[path.encapsulation - 1];
  return e.type == LWTUNNEL_ENCAP_MPLS || (e.type == Path::labels && e.bytes.size() > labelSize);
}

}  // namespace Apps::Kernel
