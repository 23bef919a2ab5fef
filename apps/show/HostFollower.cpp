#include "apps/show/HostFollower.h"

#include "apps/show/StatusFiller.h"
#include "apps/show/WallClock.h"

#include <algorithm>

namespace Apps::Show {

HostFollower::HostFollower(Kernel::MessageSource& questions, Kernel::NotificationSource& notifications,
                           Kernel::KernelFollower::Pace pace, Asker asker)
    : follower_{questions, notifications, secondsSince1970, pace},
      roots_{[this] { return follower_.figures(); }, asker} {}

void HostFollower::publish() {
  if (!follower_.isSettled()) return;  // advance() tells when they are again
  Kernel::KernelFigures const figures = follower_.figures();
  fill(roots_.roots(), figures);
  interrupted_ = figures.interrupted;
}

void HostFollower::refresh() {
  follower_.refresh();
  publish();
}

std::vector<std::string> HostFollower::notices() {
  std::vector<std::string> notices;
  if (follower_.failure() != toldFailure_) {
    toldFailure_ = follower_.failure();
    notices.push_back(toldFailure_.empty()
                          ? "The kernel can be read again: the figures are current."
                          : toldFailure_ + " It is tried again; until then the figures stay as they were.");
  }
  for (std::string_view table : interrupted_) {
    if (std::find(told_.begin(), told_.end(), table) != told_.end()) continue;
    notices.push_back(std::string{table} +
                      " kept changing while they were read: until they are read again, the figures may mix several "
                      "states.");
  }
  told_ = interrupted_;
  return notices;
}

}  // namespace Apps::Show
