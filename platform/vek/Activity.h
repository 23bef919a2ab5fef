// Activity: where put-off events wait until their owner's loop comes round, so that a burst is told once.
// Owner: whoever runs it, and the generics that put their events off in it; it holds none of them: a generic that goes
// waits no longer. Thread: the entities'.
#pragma once

#include "core/Ptr.h"

#include <functional>
#include <vector>

namespace Vek {

class GenericIf;
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
  /// `wake` is called when the first generic begins to wait, so that a loop knows that there is something to run.
  explicit Activity(std::function<void()> wake = {}) : wake_(std::move(wake)) {}
  ~Activity() override;

  /// Lets a generic wait for the next run. One that waits already waits once.
  void enqueue(GenericIf& generic);
  /// Lets a generic wait no longer.
  void dequeue(GenericIf const& generic) noexcept;

  /// Delivers to those that wait now; who begins to wait meanwhile is for the next run. An exception out of a delivery
  /// goes to that generic's onNotificationException; what that throws ends the run, and the rest waits on.
  /// Returns how many were delivered to.
  std::size_t run();

  [[nodiscard]] std::size_t waiting() const noexcept { return waiting_.size(); }

 private:
  std::function<void()> wake_;
  std::vector<GenericIf*> waiting_;
};

}  // namespace Vek
