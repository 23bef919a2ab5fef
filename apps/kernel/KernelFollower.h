// KernelFollower: the forwarding state of the kernel, read once and kept current from its notifications. What the
// kernel does not tell (it drops IPv4 routes silently when their link goes down) and what was lost is read afresh.
// Owner: who publishes the state. Thread: one. It waits for nothing but the answers to its own questions.
#pragma once

#include "apps/kernel/NotificationSource.h"
#include "apps/kernel/RouteTable.h"
#include "apps/kernel/Surroundings.h"

#include <linux/netlink.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace Apps::Kernel {

class KernelFollower {
 public:
  using Clock = std::function<double()>;  // seconds since 1970, for the times of changes

  /// How readings are spaced out, and how much may lie about.
  struct Pace {
    std::chrono::milliseconds settling{100};  // from what made one needed: it may still be going on
    int restFactor = 4;                       // rest after one, in times of what it took
    std::size_t fewEntries = 4096;            // keptEntries() of one kind that are not worth tidying
    int failuresInARow = 3;                   // readings that fail before advance() throws; 0: it never does for these
  };

  /// Reads the kernel. Uses both sources; the one of notifications was opened before, so that nothing falls between.
  /// Throws KernelError.
  KernelFollower(MessageSource& questions, NotificationSource& notifications, Clock clock, Pace pace);

  /// Takes the notifications that have come, up to some thousand, and reads afresh if that is due. True if the figures
  /// may have changed and are settled. A reading that fails is tried again. Throws KernelError after several.
  bool advance();
  /// Takes them, and reads afresh now: the figures are settled then, and no older than this call. Throws KernelError;
  /// the reading is tried again then, by advance().
  void refresh();
  /// Why the last reading failed; empty if it did not.
  [[nodiscard]] std::string const& failure() const noexcept { return failure_; }

  /// How long advance() can wait if no notification comes; nothing if for ever.
  [[nodiscard]] std::optional<std::chrono::milliseconds> patience() const;

  /// Whether figures() are those of a state that the kernel was in. Not while a fresh reading is due: what was told of
  /// a change is then known, and what was not told is not. Where the kernel does not come to rest, several readings in
  /// a row that are outdated before anybody asked for their figures, or one whose tables kept changing, must do.
  [[nodiscard]] bool isSettled() const noexcept;
  [[nodiscard]] KernelFigures figures();

  /// How many sets, paths and source prefixes of routes it keeps, in use or not.
  [[nodiscard]] std::size_t keptEntries() const noexcept { return routes_.keptEntries(); }

 private:
  using Steady = std::chrono::steady_clock;

  void needReading();
  bool takeNews();
  void readAgain();
  void read();
  void readRoutes(Surroundings::Interrupted& interrupted);
  bool take(nlmsghdr const& header, Bytes body);
  void takeRoute(nlmsghdr const& header, Bytes body);
  bool takeForwarding(Bytes body);
  void note(Route const& route, RouteChange change);
  void noteTime(Family family, std::uint8_t prefixLength);

  NotificationSource& notifications_;
  Clock clock_;
  Pace pace_;
  MessageSource& questions_;
  Dumper dumper_{questions_};
  Surroundings surroundings_;
  RouteFigures routeFigures_{surroundings_.nextHops(), surroundings_.objects()};
  RouteTable routes_{surroundings_.nextHops(), surroundings_.objects(), routeFigures_, pace_.fewEntries};
  Route route_;                  // room that each message uses again
  std::uint64_t processed_ = 0;  // route messages
  std::uint64_t failed_ = 0;
  ChangeTimes times_;
  Surroundings::Interrupted interrupted_;
  int failures_ = 0;  // of readings, one after the other
  std::string failure_;
  int unasked_ = 0;  // readings since the figures were asked for
  bool wasRead_ = false;
  bool hasMore_ = false;                   // notifications that were left for the next time
  std::optional<Steady::time_point> due_;  // of a reading that is needed
  Steady::time_point rested_;              // not before that
};

}  // namespace Apps::Kernel
