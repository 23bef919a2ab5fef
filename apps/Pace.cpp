#include "apps/Pace.h"

#include "dornl3/platform/attrlog/Transport.h"

#include <algorithm>
#include <utility>

namespace Apps {

namespace {

double now() {
  static Vek::NboAttrLog::Clock const clock = Vek::NboAttrLog::steadyClock();
  return clock();
}

}  // namespace

Pace::Pace(Vek::Link::Loop& loop, double rest, std::function<void()> work)
    : rest_{rest}, work_{std::move(work)}, timer_{loop.timer([this] { run(); })} {}

void Pace::soon() {
  if (std::exchange(isDue_, true)) return;
  timer_->dueIs(std::max(rested_, now() + rest_));
}

void Pace::run() {
  isDue_ = false;
  double const start = now();
  work_();
  double const end = now();
  rested_ = end + (end - start);
}

}  // namespace Apps
