#include "apps/show/HostFollower.h"

#include "apps/show/StatusFiller.h"
#include "apps/show/WallClock.h"

namespace Apps::Show {

HostFollower::HostFollower(Kernel::MessageSource& questions, Kernel::NotificationSource& notifications,
                           Kernel::KernelFollower::Pace pace)
    : follower_{questions, notifications, secondsSince1970, pace} {}

void HostFollower::publish() { fill(roots_.roots(), follower_.figures()); }

}  // namespace Apps::Show
