#include "apps/WatchLocal.h"

#include "apps/FollowLoop.h"
#include "apps/attributes/Watch.h"
#include "apps/kernel/NetlinkSocket.h"
#include "apps/kernel/NotificationSocket.h"
#include "apps/show/HostFollower.h"
#include "apps/show/StatusFiller.h"
#include "apps/show/WallClock.h"
#include "dornl3/platform/vek/Dir.h"

#include <algorithm>

namespace Apps {

namespace {

// Prints changes as long as they are wanted.
class Printer {
 public:
  explicit Printer(WatchOptions const& options)
      : form_{options.json ? Attributes::Form::json : Attributes::Form::text},
        stamp_{options.stamped ? Attributes::Stamp::time : Attributes::Stamp::none},
        left_{options.changes} {}

  void stopDescriptorIs(int stop) noexcept { stop_ = stop; }

  void print(std::vector<Attributes::Change> const& changes) {
    written_ = writeToStandardOutput(linesOf(changes, Show::secondsSince1970(), form_, stamp_), stop_);
  }

  void printChanges(std::vector<Attributes::Change> changes) {
    if (left_) {
      changes.resize(std::min<std::uint64_t>(changes.size(), *left_));
      *left_ -= changes.size();
    }
    if (!changes.empty()) print(changes);
  }

  [[nodiscard]] bool isDone() const noexcept { return written_.how != Written::whole || left_ == 0U; }
  [[nodiscard]] Written written() const noexcept { return written_; }

 private:
  Attributes::Form form_;
  Attributes::Stamp stamp_;
  std::optional<std::uint64_t> left_;
  std::optional<int> stop_;
  Written written_;
};

Attributes::Look lookOf(WatchOptions const& options, Attributes::Filled const& filled) {
  return {options.recursive ? Attributes::Depth::all : Attributes::Depth::one,
          options.whole ? Attributes::Records::whole : Attributes::Records::byField,
          options.all ? &Attributes::Filled::everything() : &filled};
}

}  // namespace

Written watchLocal(WatchOptions const& options, std::function<void(std::string const&)> const& notify) {
  Kernel::NotificationSocket notifications;
  Kernel::NetlinkSocket kernel;
  Show::HostFollower host{kernel, notifications};
  Attributes::Filled const filled{Show::filledPaths(Show::Reading::following)};
  Attributes::Watch watch{Vek::Dir::root(), options.paths, lookOf(options, filled)};
  auto const giveNotice = [&] {
    for (std::string const& notice : host.notices()) notify(notice);
  };
  giveNotice();

  Printer printer{options};
  FollowLoop loop{notifications.descriptor(),
                  {.take = [&] { return host.advance(); },
                   .patience = [&] { return host.patience(); },
                   .publish =
                       [&] {
                         host.publish();
                         giveNotice();
                         printer.printChanges(watch.changes());
                         if (printer.isDone()) loop.stop();
                       }}};
  printer.stopDescriptorIs(loop.stopDescriptor());
  printer.print(watch.start());  // with the loop there: signals are listened to from here on
  if (printer.isDone()) return printer.written();
  for (std::string const& note : watch.notes()) notify(note);
  loop.run();
  return printer.written();
}

}  // namespace Apps
