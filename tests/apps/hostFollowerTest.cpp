// What the entities of a host that is followed tell while readings of it go wrong.
#include "apps/show/HostFollower.h"

#include "dornl3/platform/vek/Dir.h"
#include "tests/apps/ModelKernel.h"

#include <gtest/gtest.h>

namespace Apps::Show {
namespace {

using Kernel::Answer;
using testing::Test;

class Following : public Test {
 protected:
  // Takes what came, and publishes as the loop may at any time.
  void follow() {
    static_cast<void>(follower_->advance());
    follower_->publish();
  }
  void begin(Kernel::KernelFollower::Pace pace = atOnce) {
    follower_.emplace(kernel_.source, kernel_.notifications, pace);
  }
  void readAfresh() {
    int const before = kernel_.source.requests(RTM_GETROUTE);
    while (kernel_.source.requests(RTM_GETROUTE) == before) static_cast<void>(follower_->advance());
  }
  void readRoutesAs(Answer const& answer) {
    kernel_.notifications.lose();
    kernel_.source.onlyAnswer(RTM_GETROUTE, answer);
  }
  template <class X>
  static Vek::Ptr<X> root(char const* name) {
    return Vek::ptrCast<X>(Vek::Dir::root().entity(name));
  }
  static bool isComplete() {
    return root<Hardware::DornL3Unicast::RestartCompletionStatus>("restartCompletionStatus")->restartComplete();
  }
  static Hardware::DornL3Unicast::RouteStats stats() {
    return root<Hardware::DornL3Unicast::Status>("status")->ipv4RouteStats();
  }
  static Vek::U64 routes() { return stats().routes(); }

  static constexpr Kernel::KernelFollower::Pace atOnce{std::chrono::milliseconds{0}, 0};
  Kernel::ModelKernel kernel_;
  std::optional<HostFollower> follower_;
};

TEST_F(Following, PublishesNothingOfAReadingThatFailed) {
  kernel_.add4(1, {{0}});
  begin();
  EXPECT_EQ(routes(), 1U);
  kernel_.add4(2, {{0}});
  readRoutesAs({.messages = {Kernel::prefix(AF_INET, 9)}, .error = EBUSY});
  follow();
  EXPECT_EQ(routes(), 1U);
  kernel_.add4(3, {{0}});  // sets the answers right
  follow();
  EXPECT_EQ(routes(), 3U);
}

TEST_F(Following, PublishesNoStateThatNeverWas) {
  kernel_.neighbour(0, NUD_REACHABLE);
  kernel_.add4(1, {{0}});
  begin({.settling = std::chrono::milliseconds{20}, .restFactor = 0});
  kernel_.deleteNeighbour(0);  // as the kernel tells of a link that goes down
  kernel_.flap(1);
  EXPECT_FALSE(follower_->advance());
  follower_->publish();
  EXPECT_EQ(stats(), Hardware::DornL3Unicast::RouteStats(1, 1, 0, 0, 0, 0)) << "as it was before";
  readAfresh();
  follower_->publish();
  EXPECT_EQ(stats(), Hardware::DornL3Unicast::RouteStats()) << "as it is now";
}

TEST_F(Following, PublishesNowAndThenWhatDoesNotComeToRest) {
  begin({.settling = std::chrono::milliseconds{1}, .restFactor = 0});
  for (Vek::U64 reading = 1; reading <= 3; ++reading) {
    kernel_.add4(static_cast<unsigned>(reading), {{3}});
    kernel_.flap(1);
    readAfresh();
    kernel_.flap(1);  // before anybody looks
    static_cast<void>(follower_->advance());
    follower_->publish();
    EXPECT_EQ(routes(), reading < 3 ? 0 : 3);
  }
}

TEST_F(Following, KeepsWhatTheFirstWholeReadingToldOfARestart) {
  Answer const mixed{.interrupted = true};
  kernel_.neighbour(0, NUD_FAILED);
  kernel_.source.onlyAnswer(RTM_GETROUTE, mixed);
  begin();
  EXPECT_FALSE(isComplete());
  EXPECT_EQ(follower_->notices(),
            std::vector<std::string>{"The kernel's routes kept changing while they were read: until they are read "
                                     "again, the figures may mix several states."});
  EXPECT_TRUE(follower_->notices().empty()) << "told once";

  readRoutesAs({});
  follow();
  EXPECT_TRUE(isComplete());
  EXPECT_TRUE(follower_->notices().empty());
  kernel_.neighbour(1, NUD_FAILED);
  readRoutesAs(mixed);
  follow();
  EXPECT_TRUE(isComplete());
  auto const status = root<Hardware::DornL3Unicast::Status>("status");
  EXPECT_EQ(status->restartHelperStats().failedInitArpEntry(), 1U);
  EXPECT_EQ(follower_->notices().size(), 1U) << "told anew";
}

}  // namespace
}  // namespace Apps::Show
