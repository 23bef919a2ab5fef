// Activity: where put-off events wait until their owner's loop comes round, so that a burst is told once.
// Owner: whoever runs it, and the reactors that put their events off in it; it holds none of them: a reactor that goes
// leaves first. Thread: the entities'. Re-entrancy: what a delivery calls may do anything, and run the activity too.
#pragma once

#include "dornl3/core/NotifieeConst.h"

#include <functional>
#include <list>
#include <unordered_map>
#include <utility>

namespace Vek {

class Activity;

/// What a run hands to those it delivers to.
class ActivityConfig {
 public:
  explicit ActivityConfig(Activity& activity) noexcept : activity_(&activity) {}
  [[nodiscard]] Activity& activity() const noexcept { return *activity_; }

 private:
  Activity* activity_;
};

class Activity : public PtrInterface {
 public:
  using Reactor = PtrInterface::NotifieeConst;

  /// `wake` is called when the first reactor begins to wait, so that a loop knows that there is something to run.
  explicit Activity(std::function<void()> wake = {}) : wake_(std::move(wake)) {}
  ~Activity() override;

  /// Lets a reactor wait for the next run. One that waits already waits once.
  void enqueue(Reactor& reactor);
  /// Lets a reactor wait no longer.
  void dequeue(Reactor const& reactor) noexcept;

  /// Delivers to those that wait now; who begins to wait meanwhile is for the next run. An exception out of a delivery
  /// goes to that reactor's handleNotificationException; what that throws ends the run, and the rest waits on.
  /// Returns how many were delivered to.
  std::size_t run();

  // One event of the reactor that a run delivers to is told at once; what that event causes waits.
  /// Grants it, to the reactor that is delivered to and to no other.
  void turnIs(Reactor const& reactor) noexcept { hasTurn_ = hasTurn_ || served_ == &reactor; }
  /// Whether it was granted to this reactor; it is used up.
  [[nodiscard]] bool turnDel(Reactor const& reactor) noexcept {
    return served_ == &reactor && std::exchange(hasTurn_, false);
  }

  [[nodiscard]] std::size_t waiting() const noexcept { return waiting_.size(); }

 private:
  class Serving;

  std::function<void()> wake_;
  std::list<Reactor*> waiting_;  // in the order of their coming
  std::unordered_map<Reactor const*, std::list<Reactor*>::iterator> places_;
  Reactor const* served_ = nullptr;  // whom the innermost run delivers to; compared only
  bool hasTurn_ = false;
};

}  // namespace Vek
