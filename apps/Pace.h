// Pace: work that is done once for all that has asked for it meanwhile, and takes at most half of the time.
// Owner: whoever has the work; the loop outlives it. Thread: the loop's. Re-entrancy: the work may ask for itself
// again; it must not destroy the pace.
#pragma once

#include "dornl3/platform/link/Loop.h"

namespace Apps {

class Pace {
 public:
  /// `rest`: seconds from the first that asks to the work, so that a burst is one.
  Pace(Vek::Link::Loop& loop, double rest, std::function<void()> work);

  /// Has the loop do the work, and not yet.
  void soon();

 private:
  void run();

  double const rest_;
  std::function<void()> const work_;
  std::unique_ptr<Vek::Link::Timer> const timer_;
  double rested_ = 0;  // not before that
  bool isDue_ = false;
};

}  // namespace Apps
