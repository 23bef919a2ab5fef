#include "platform/vek/Activity.h"

#include "platform/vek/GenericIf.h"

#include <algorithm>

namespace Vek {

Activity::~Activity() = default;

void Activity::enqueue(GenericIf& generic) {
  if (std::find(waiting_.begin(), waiting_.end(), &generic) != waiting_.end()) return;
  waiting_.push_back(&generic);
  if (waiting_.size() == 1 && wake_) wake_();
}

void Activity::dequeue(GenericIf const& generic) noexcept {
  waiting_.erase(std::remove(waiting_.begin(), waiting_.end(), &generic), waiting_.end());
}

std::size_t Activity::run() {
  std::size_t delivered = 0;
  Ptr<Activity> const held{this};
  std::vector<Ptr<GenericIf>> turns(waiting_.begin(), waiting_.end());
  for (Ptr<GenericIf>& turn : turns) {
    Ptr<GenericIf> const generic = std::move(turn);
    if (std::find(waiting_.begin(), waiting_.end(), generic.ptr()) == waiting_.end()) continue;
    dequeue(*generic);
    ++delivered;
    ActivityConfig config{*this};
    try {
      Expect const expect{Exception::any};
      generic->handleNotification(&config);
    } catch (...) {
      generic->onNotificationException();
    }
  }
  return delivered;
}

}  // namespace Vek
