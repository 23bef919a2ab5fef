// RouteTable: the routes that the kernel has, one compact entry each, kept in step with its notifications. A
// notification does not carry the next hops of the route whose place it takes, so the table must know them.
// Owner: KernelFollower.
#pragma once

#include "apps/kernel/RouteFigures.h"

#include <map>
#include <memory_resource>
#include <type_traits>
#include <unordered_map>

namespace Apps::Kernel {

/// What a message about a route came to.
enum class RouteChange {
  none,
  changed,
  unclear  // the message fits several entries: only a fresh reading tells
};

class RouteTable {
 public:
  /// Uses them, owns none of them. `figures` counts the entries. With fewer than `few` sets, paths or source prefixes
  /// tidying is not worth its while.
  RouteTable(NextHopTable& nextHops, NextHopObjects& objects, RouteFigures& figures, std::size_t few) noexcept
      : nextHops_{nextHops}, objects_{objects}, figures_{figures}, few_{few} {}

  /// A route is new, or has changed. `flags` are those of the message's header (NLM_F_*).
  RouteChange put(Route const& route, std::uint16_t flags);
  /// A route has gone, or lost those of its paths that the message carries.
  RouteChange remove(Route const& route);

  /// Whether some route has the key of this one.
  [[nodiscard]] bool holdsKeyOf(Route const& route) const;

  // A fresh reading: begin, each route that the kernel has, end.
  void beginReading();
  RouteChange read(Route const& route);
  /// Drops what was not read; calls `dropped` with each.
  template <class Dropped>
  void endReading(Dropped const& dropped) {
    std::erase_if(entries_, [&](auto const& entry) {
      if (entry.second.isRead) return false;
      countOut(entry.second.use);
      dropped(entry.second.use);
      return true;
    });
  }
  void clear() noexcept;

  /// Drops next hops and source prefixes that no route and no object uses any more, once there are twice as many as
  /// were left the last time.
  void tidy();

  [[nodiscard]] std::size_t keptEntries() const noexcept {
    Sizes const now = sizes();
    return now.sets + now.paths + now.sources;
  }

  /// What was done to the entries since the table was clear.
  struct Done {
    std::uint64_t added = 0;
    std::uint64_t deleted = 0;
    std::uint64_t overwritten = 0;
  };
  [[nodiscard]] Done const& done() const noexcept { return done_; }

 private:
  struct Key {
    PrefixBytes prefix;
    std::uint32_t table;
    std::uint32_t priority;
    std::uint32_t source;  // number of the source prefix
    Family family;
    std::uint8_t prefixLength;
    std::uint8_t typeOfService;
    std::uint8_t padding = 0;  // named, so that the bytes of a key are its value

    friend bool operator==(Key const&, Key const&) = default;
  };
  static_assert(std::has_unique_object_representations_v<Key>);
  struct KeyHash {
    std::size_t operator()(Key const& key) const noexcept;
  };
  struct Entry {
    RouteUse use;
    bool isRead = true;
  };
  // Several routes may share a key: IPv4 ones that were appended, IPv6 ones that leave by links without gateway.
  using Entries = std::pmr::unordered_multimap<Key, Entry, KeyHash>;
  using Range = std::pair<Entries::iterator, Entries::iterator>;

  struct Sizes {
    std::size_t sets;
    std::size_t paths;
    std::size_t sources;
  };

  static constexpr std::uint32_t anySource = 0;
  static constexpr std::uint32_t noSource = 0xffffffff;  // of no route here

  [[nodiscard]] static Key keyOf(Route const& route, std::uint32_t source);
  [[nodiscard]] std::uint32_t sourceOf(Route const& route);  // enters it
  [[nodiscard]] std::uint32_t knownSourceOf(Route const& route) const;
  RouteChange add(Key const& key, RouteUse const& use);
  RouteChange overwrite(Entry& entry, RouteUse const& use);
  void countOut(RouteUse const& use);
  void drop(Entries::iterator entry);
  void dropAllBut(Entries::iterator kept, Range range);
  /// The entry that a message means by its paths; the end where none does or, with `unclear`, several do.
  [[nodiscard]] Entries::iterator find(Range range, RouteUse const& use, bool& unclear);

  [[nodiscard]] Sizes sizes() const noexcept;
  void tidyNextHops();
  void tidySources();

  NextHopTable& nextHops_;
  NextHopObjects& objects_;
  RouteFigures& figures_;
  std::size_t few_;
  RouteReader reader_{nextHops_};
  Done done_;
  std::pmr::unsynchronized_pool_resource pool_;
  Entries entries_{&pool_};
  std::map<std::pair<PrefixBytes, std::uint8_t>, std::uint32_t> sources_;  // numbers of source prefixes, which are rare
  std::uint32_t nextSource_ = anySource + 1;
  Sizes due_{few_, few_, few_};  // for the next tidying
};

}  // namespace Apps::Kernel
