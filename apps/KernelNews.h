// KernelNews: follows the kernel on a loop: takes what it tells when it tells it, or when patience ends, and publishes
// what has come of that.
// Owner: the command; loop and descriptor outlive it. Thread: the loop's.
#pragma once

#include "apps/Pace.h"

#include <chrono>
#include <optional>

namespace Apps {

class KernelNews {
 public:
  struct Work {
    std::function<bool()> take;  // takes what has come; true if there is something to publish
    std::function<std::optional<std::chrono::milliseconds>()>
        patience;  // when to take if nothing comes; nothing: never
    std::function<void()> publish;
  };

  /// From the first of what has come to its publication, in seconds: a burst is told as one, and what belongs together
  /// is told together.
  static constexpr double rest = 0.05;

  /// `descriptor` becomes readable when there is something to take.
  KernelNews(Vek::Link::Loop& loop, int descriptor, Work work);

  /// Has it published, with what has come by then.
  void publishSoon() { pace_.soon(); }

 private:
  void take();
  void waitForTime();

  Work const work_;
  Pace pace_;
  std::unique_ptr<Vek::Link::Timer> const due_;
  std::unique_ptr<Vek::Link::Watch> const news_;
};

}  // namespace Apps
