#include "dornl3/platform/vek/Activity.h"

#include "dornl3/core/Exception.h"

#include <limits>
#include <vector>

namespace Vek {

Activity::~Activity() = default;

void Activity::enqueue(Reactor& reactor) {
  auto const [place, isNew] = places_.try_emplace(&reactor);
  if (!isNew) return;
  place->second = waiting_.insert(waiting_.end(), &reactor);
  if (waiting_.size() == 1 && wake_) wake_();
}

void Activity::dequeue(Reactor const& reactor) noexcept {
  auto const place = places_.find(&reactor);
  if (place == places_.end()) return;
  waiting_.erase(place->second);
  places_.erase(place);
}

/// A delivery to one reactor; around it, in a run within a run, stands another.
class Activity::Serving {
 public:
  Serving(Activity& activity, Reactor const& reactor) noexcept
      : activity_(activity), outer_(std::exchange(activity.served_, &reactor)) {
    activity_.hasTurn_ = true;
  }
  Serving(Serving const&) = delete;
  Serving& operator=(Serving const&) = delete;
  ~Serving() {
    activity_.served_ = outer_;
    activity_.hasTurn_ = false;
  }

 private:
  Activity& activity_;
  Reactor const* outer_;
};

std::size_t Activity::run() {
  std::size_t delivered = 0;
  Ptr<Activity> const held{this};
  std::vector<Ptr<Reactor>> turns(waiting_.begin(), waiting_.end());
  for (Ptr<Reactor>& turn : turns) {
    Ptr<Reactor> const reactor = std::move(turn);
    if (!places_.contains(reactor.ptr())) continue;
    dequeue(*reactor);
    ++delivered;
    ActivityConfig config{*this};
    int const pending = reactor->vekPendingAttribute();
    try {
      Serving const serving{*this, *reactor};
      Expect const expect{Exception::any};
      reactor->handleNotification(&config);
    } catch (...) {
      pending > 0 ? reactor->handleNotificationException(static_cast<AttributeId>(pending))
                  : reactor->handleNotificationException();
    }
  }
  return delivered;
}

// What a reactor's root does with an activity; the root itself knows it by name alone.

Ptr<Activity> PtrInterface::NotifieeConst::activityPtr() const {
  return const_cast<NotifieeConst*>(this)->vekFwkActivity();
}

bool PtrInterface::NotifieeConst::vekOnAttribute(AttributeId id, U8* pending) {
  Activity* const activity = vekFwkActivity();
  if (activity == nullptr || activity->turnDel(*this)) return false;
  if (pending != nullptr && *pending < std::numeric_limits<U8>::max()) ++*pending;
  int const number = static_cast<int>(id);
  if (pendingAttribute_ == 0) {
    pendingAttribute_ = number;
  } else if (pendingAttribute_ != number && pendingAttribute_ != fullSweep) {
    pendingAttribute_ = changedSweep;
  }
  activity->enqueue(*this);
  return true;
}

void PtrInterface::NotifieeConst::redispatch(Activity* activity) const {
  if (activity != nullptr) activity->turnIs(*this);
}

}  // namespace Vek
