#include "apps/WatchLocal.h"

#include "apps/CommandLoop.h"
#include "apps/KernelNews.h"
#include "apps/attributes/Watch.h"
#include "apps/kernel/NetlinkSocket.h"
#include "apps/kernel/NotificationSocket.h"
#include "apps/show/HostFollower.h"
#include "apps/show/StatusFiller.h"
#include "dornl3/platform/vek/Dir.h"

namespace Apps {

Written watchLocal(WatchOptions const& options, std::function<void(std::string const&)> const& notify) {
  Kernel::NotificationSocket notifications;
  Kernel::NetlinkSocket kernel;
  Show::HostFollower host{kernel, notifications};
  Attributes::Filled const filled{Show::filledPaths(Show::Reading::following)};
  Attributes::Watch watch{Vek::Dir::root(), options.paths, options.look(filled)};
  auto const giveNotice = [&] {
    for (std::string const& notice : host.notices()) notify(notice);
  };
  giveNotice();

  CommandLoop loop{CommandLoop::Output::isRead};
  ChangePrinter printer{options, loop.stopDescriptor()};
  KernelNews const news{loop.loop(),
                        notifications.descriptor(),
                        {.take = [&] { return host.advance(); },
                         .patience = [&] { return host.patience(); },
                         .publish =
                             [&] {
                               host.publish();
                               giveNotice();
                               printer.printChanges(watch.changes());
                               if (printer.isDone()) loop.stop();
                             }}};
  printer.print(watch.start());  // with the loop there: signals are listened to from here on
  if (printer.isDone()) return printer.written();
  for (std::string const& note : watch.notes()) notify(note);
  loop.run();
  return printer.written();
}

}  // namespace Apps
