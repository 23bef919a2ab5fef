#include "apps/KernelNews.h"

#include "dornl3/platform/attrlog/Transport.h"

namespace Apps {

KernelNews::KernelNews(Vek::Link::Loop& loop, int descriptor, Work work)
    : work_{std::move(work)},
      pace_{loop, rest,
            [this] {
              work_.publish();
              waitForTime();  // it may have read the kernel, or failed to
            }},
      due_{loop.timer([this] { take(); })},
      news_{loop.watch(descriptor, [this](Vek::Link::Readiness) { take(); })} {
  news_->wishIs({.toRead = true});
  waitForTime();
}

void KernelNews::take() {
  if (work_.take()) pace_.soon();
  waitForTime();
}

void KernelNews::waitForTime() {
  auto const patience = work_.patience();
  double const seconds = patience ? std::chrono::duration<double>{*patience}.count() : Vek::Link::Timer::never;
  due_->dueIs(Vek::NboAttrLog::steadyClock()() + seconds);
}

}  // namespace Apps
