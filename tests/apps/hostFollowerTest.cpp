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
  void begin() { follower_.emplace(kernel_.source, kernel_.notifications, atOnce); }
  void readRoutesAs(Answer const& answer) {
    kernel_.notifications.lose();
    kernel_.source.onlyAnswer(RTM_GETROUTE, answer);
  }
  template <class X>
  static Vek::Ptr<X> root(char const* name) {
    return Vek::ptrCast<X>(Vek::Dir::root().entry(name));
  }
  static bool isComplete() {
    return root<Hardware::DornL3Unicast::RestartCompletionStatus>("restartCompletionStatus")->restartComplete();
  }
  static Vek::U64 routes() { return root<Hardware::DornL3Unicast::Status>("status")->ipv4RouteStats().routes(); }

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
