#include "apps/show/RequestResponder.h"

#include "apps/show/StatusFiller.h"

#include <utility>

namespace Apps::Show {

RequestResponder::RequestResponder(Roots const& roots, Read read, Clock clock)
    : roots_{roots}, read_{std::move(read)}, clock_{std::move(clock)} {
  roots_.request = nullptr;  // the notifier is the framework's to hold
}

void RequestResponder::onStatusRequestId() {
  failure_ = nullptr;
  interrupted_.clear();
  Kernel::KernelFigures figures = read_();
  fill(roots_, figures);
  interrupted_ = std::move(figures.interrupted);
  answer(roots_, {notifier()->statusRequestId(), clock_()});
}

void RequestResponder::onNotificationException(Vek::AttributeId) { failure_ = std::current_exception(); }

}  // namespace Apps::Show
