#include "apps/show/RequestResponder.h"

#include "apps/show/StatusFiller.h"

#include <algorithm>
#include <utility>

namespace Apps::Show {

void RequestResponder::onStatusRequestId() {
  Vek::U64 const id = notifier()->statusRequestId();
  if (id > highest_ && id - highest_ > farthestLeap) return notifier()->statusRequestIdIs(highest_);
  highest_ = std::max(highest_, id);
  if (!std::exchange(isAsked_, true) && whenAsked_) whenAsked_();
}

void RequestResponder::answer(Roots const& roots, double time) {
  isAsked_ = false;
  highest_ = std::max(highest_, roots.status->statusResponseId());
  Show::answer(roots, {highest_, time});
}

}  // namespace Apps::Show
