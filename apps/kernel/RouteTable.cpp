#include "apps/kernel/RouteTable.h"

#include <linux/netlink.h>

#include <algorithm>
#include <iterator>
#include <unordered_set>

namespace Apps::Kernel {

namespace {

bool holds(auto const& range) { return range.first != range.second; }
bool holdsOne(auto const& range) { return holds(range) && std::next(range.first) == range.second; }

}  // namespace

std::size_t RouteTable::KeyHash::operator()(Key const& key) const noexcept {
  return std::hash<std::string_view>{}({reinterpret_cast<char const*>(&key), sizeof key});
}

RouteTable::Key RouteTable::keyOf(Route const& route, std::uint32_t source) {
  return {.prefix = route.prefix,
          .table = route.table,
          .priority = route.priority,
          .source = source,
          .family = route.family,
          .prefixLength = route.prefixLength,
          .typeOfService = route.typeOfService};
}

std::uint32_t RouteTable::sourceOf(Route const& route) {
  if (route.sourceLength == 0) return anySource;
  auto const [source, isNew] = sources_.try_emplace({route.source, route.sourceLength}, nextSource_);
  if (isNew) ++nextSource_;
  return source->second;
}

std::uint32_t RouteTable::knownSourceOf(Route const& route) const {
  if (route.sourceLength == 0) return anySource;
  auto const source = sources_.find({route.source, route.sourceLength});
  return source == sources_.end() ? noSource : source->second;
}

RouteChange RouteTable::add(Key const& key, RouteUse const& use) {
  entries_.emplace(key, Entry{use});
  figures_.add(use);
  ++done_.added;
  return RouteChange::changed;
}

RouteChange RouteTable::overwrite(Entry& entry, RouteUse const& use) {
  entry.isRead = true;
  if (entry.use == use) return RouteChange::none;
  figures_.remove(entry.use);
  figures_.add(use);
  entry.use = use;
  ++done_.overwritten;
  return RouteChange::changed;
}

void RouteTable::countOut(RouteUse const& use) {
  figures_.remove(use);
  ++done_.deleted;
}

void RouteTable::drop(Entries::iterator entry) {
  countOut(entry->second.use);
  entries_.erase(entry);
}

void RouteTable::dropAllBut(Entries::iterator kept, Range range) {
  while (range.first != range.second) {
    auto const entry = range.first++;
    if (entry != kept) drop(entry);
  }
}

RouteTable::Entries::iterator RouteTable::find(Range range, RouteUse const& use, bool& unclear) {
  unclear = false;
  for (auto entry = range.first; entry != range.second; ++entry) {
    if (entry->second.use.goesLike(use)) return entry;
  }
  if (use.family == Family::mpls && holds(range)) return range.first;  // a label has one route
  auto meant = entries_.end();
  if (use.family != Family::ipv6) return meant;
  // An IPv6 route that has several paths is told whole when it gets one more, and by the path alone when it loses one.
  for (auto entry = range.first; entry != range.second; ++entry) {
    RouteUse const& other = entry->second.use;
    bool const isByObject = use.nextHopId != 0 || other.nextHopId != 0;  // that goes alone
    if (isByObject || !nextHops_.overlap(other.set, use.set)) continue;
    unclear = meant != entries_.end();
    meant = entry;
  }
  return unclear ? entries_.end() : meant;
}

RouteChange RouteTable::put(Route const& route, std::uint16_t flags) {
  Key const key = keyOf(route, sourceOf(route));
  RouteUse const use = reader_.useOf(route);
  Range const range = entries_.equal_range(key);
  // Which of several routes gave way is not told.
  if ((flags & NLM_F_REPLACE) != 0 && holds(range) && !holdsOne(range)) return RouteChange::unclear;
  bool unclear = false;
  auto const known = find(range, use, unclear);
  if (unclear) return RouteChange::unclear;
  if ((flags & NLM_F_EXCL) != 0) {
    // The kernel had none of that key: what else is here has gone, as is still to be told.
    dropAllBut(known, range);
    return known == entries_.end() ? add(key, use) : overwrite(known->second, use);
  }
  bool const takesPlace = (flags & NLM_F_REPLACE) != 0 || (flags & NLM_F_CREATE) == 0;
  if (known != entries_.end()) {
    // One more IPv4 route that goes the same way differs in what is not kept; or it is this one, told late.
    bool const mayBeTwin = route.family == Family::ipv4 && !takesPlace;
    return mayBeTwin ? RouteChange::unclear : overwrite(known->second, use);
  }
  if (!takesPlace || !holds(range)) return add(key, use);
  return holdsOne(range) ? overwrite(range.first->second, use) : RouteChange::unclear;
}

RouteChange RouteTable::remove(Route const& route) {
  RouteUse const use = reader_.useOf(route);
  bool unclear = false;
  auto const entry = find(entries_.equal_range(keyOf(route, knownSourceOf(route))), use, unclear);
  if (unclear) return RouteChange::unclear;
  if (entry == entries_.end()) return RouteChange::none;
  RouteUse left = entry->second.use;
  left.set = nextHops_.without(left.set, use.set);
  if (left.set == NextHopTable::noSet || use.family != Family::ipv6 || left.goesLike(entry->second.use)) {
    drop(entry);
    return RouteChange::changed;
  }
  left.downSet = nextHops_.without(left.downSet, use.set);
  return overwrite(entry->second, left);
}

bool RouteTable::holdsKeyOf(Route const& route) const { return entries_.contains(keyOf(route, knownSourceOf(route))); }

void RouteTable::beginReading() {
  for (auto& [key, entry] : entries_) entry.isRead = false;
}

RouteChange RouteTable::read(Route const& route) {
  Key const key = keyOf(route, sourceOf(route));
  RouteUse const use = reader_.useOf(route);
  auto const range = entries_.equal_range(key);
  Entry* other = nullptr;
  for (auto entry = range.first; entry != range.second; ++entry) {
    if (entry->second.isRead) continue;
    if (entry->second.use.goesLike(use)) return overwrite(entry->second, use);
    other = &entry->second;
  }
  return other == nullptr ? add(key, use) : overwrite(*other, use);
}

void RouteTable::clear() noexcept {
  entries_.clear();
  sources_.clear();
  figures_.clear();
  done_ = {};
}

void RouteTable::tidy() {
  Sizes const now = sizes();
  if (now.sets < due_.sets && now.paths < due_.paths && now.sources < due_.sources) return;
  tidyNextHops();
  tidySources();
  Sizes const left = sizes();
  due_ = {std::max(few_, 2 * left.sets), std::max(few_, 2 * left.paths), std::max(few_, 2 * left.sources)};
}

RouteTable::Sizes RouteTable::sizes() const noexcept {
  return {nextHops_.setCount(), nextHops_.pathCount(), sources_.size()};
}

void RouteTable::tidySources() {
  std::unordered_set<std::uint32_t> used;
  for (auto const& [key, entry] : entries_) {
    if (key.source != anySource) used.insert(key.source);
  }
  std::erase_if(sources_, [&used](auto const& source) { return !used.contains(source.second); });
}

void RouteTable::tidyNextHops() {
  NextHopTable fresh;
  std::vector<std::uint32_t> numbers(nextHops_.setCount(), NextHopTable::noSet);
  auto const moved = [&](std::uint32_t set) {
    if (set == NextHopTable::noSet) return set;
    if (numbers[set] == NextHopTable::noSet) numbers[set] = fresh.setLike(nextHops_, set);
    return numbers[set];
  };
  objects_.moveTo(fresh);
  figures_.clear();
  for (auto& [key, entry] : entries_) {
    entry.use.set = moved(entry.use.set);
    entry.use.downSet = moved(entry.use.downSet);
    figures_.add(entry.use);
  }
  nextHops_ = std::move(fresh);
}

}  // namespace Apps::Kernel
