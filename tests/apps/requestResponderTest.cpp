#include "apps/show/RequestResponder.h"

#include "apps/kernel/KernelError.h"
#include "tests/core/LeakCheck.h"

#include <gtest/gtest.h>

namespace Apps::Show {
namespace {

using namespace Hardware::DornL3Unicast;

Kernel::KernelFigures someFigures() {
  Kernel::KernelFigures figures;
  figures.vrfs = 3;
  figures.vxlanTunnels = 2;
  figures.routesVxlan = true;
  figures.ipv4 = {10, 9, 8, 7, 6, 5};
  figures.ipv6 = {20, 19, 18, 17, 16, 15};
  figures.mpls = {30, 29, 28, 27, 26, 25};
  figures.ipSets = {1, 2};
  figures.mplsSets = {3, 4};
  figures.tunnelSets = {5, 6};
  figures.routeMessages = 100;
  figures.routesTaken = 60;
  figures.routesFailed = 1;
  figures.failedNeighbours = 11;
  figures.routesTrapped = 12;
  figures.failedNextHops = 13;
  figures.nestedGroups = 14;
  figures.missingNextHops = 15;
  return figures;
}

class Responder : public LeakCheck {
 protected:
  Responder() {
    responder_->notifierIs(roots_.request);
    responder_->isRegisteredNotifieeIs(true);
  }

  Roots roots_;
  std::function<Kernel::KernelFigures()> kernel_ = someFigures;
  Vek::Ptr<RequestResponder> responder_ = Vek::make<RequestResponder>(
      roots_, [this] { return kernel_(); }, [] { return 1234.5; });
};

TEST_F(Responder, FillsTheEntities) {
  roots_.request->statusRequestIdInc(1);
  Status const& status = *roots_.status;
  EXPECT_EQ(status.numVrfs(), 3U);
  EXPECT_EQ(status.numVxlanTunnels(), 2U);
  EXPECT_EQ(status.ipv4RouteStats(), (RouteStats{10, 9, 8, 7, 6, 5}));
  EXPECT_EQ(status.ipv6RouteStats(), (RouteStats{20, 19, 18, 17, 16, 15}));
  EXPECT_EQ(status.mplsRouteStats(), (RouteStats{30, 29, 28, 27, 26, 25}));
  EXPECT_EQ(status.ipFecs(), (FecCountStats{1, 2, 3}));
  EXPECT_EQ(status.mplsFecs(), (FecCountStats{3, 4, 7}));
  EXPECT_EQ(status.tunnelFecs(), (FecCountStats{5, 6, 11}));
  EXPECT_EQ(status.lemCmdsStats(), (LemCmdsStats{100, 1, 60, 0, 0}));
  EXPECT_EQ(status.restartHelperStats(), (RestartHelperStats{11, 12, 13, 14, 15}));
  EXPECT_TRUE(roots_.vxlanRouting->vxlanRoutingEnabled());
  EXPECT_TRUE(roots_.restartCompletion->restartComplete());
}

// Notes what stands in Status at the moment of the answer.
struct Requester : Status::Notifiee {
  void onStatusResponseId() override {
    ++answers;
    seen = notifier()->statusResponseId();
    isFilled = notifier()->numVrfs() != 0 && notifier()->statusUpdatedTime() == 1234.5;
  }
  int answers = 0;
  Vek::U64 seen = 0;
  bool isFilled = false;
};

TEST_F(Responder, AnswersLastSoThatTheRequesterFindsTheFigures) {
  auto const requester = Vek::make<Requester>();
  requester->notifierIs(roots_.status);
  requester->isRegisteredNotifieeIs(true);
  roots_.request->statusRequestIdIs(41);
  EXPECT_EQ(requester->seen, 41U);
  EXPECT_TRUE(requester->isFilled);
  roots_.request->statusRequestIdInc(0);
  EXPECT_EQ(requester->answers, 1) << "a request that does not move asks for nothing";
  roots_.request->statusRequestIdInc(1);
  EXPECT_EQ(requester->seen, 42U);
}

TEST_F(Responder, KeepsTheFailureAndGivesNoAnswer) {
  kernel_ = []() -> Kernel::KernelFigures { throw Kernel::KernelError{"no kernel"}; };
  roots_.request->statusRequestIdInc(1);
  EXPECT_EQ(roots_.status->statusResponseId(), 0U);
  EXPECT_FALSE(roots_.restartCompletion->restartComplete());
  ASSERT_TRUE(responder_->failure());
  EXPECT_THROW(std::rethrow_exception(responder_->failure()), Kernel::KernelError);

  kernel_ = someFigures;
  roots_.request->statusRequestIdInc(1);
  EXPECT_FALSE(responder_->failure());
  EXPECT_EQ(roots_.status->statusResponseId(), 2U);
}

TEST_F(Responder, TellsThatADumpWhichNeverSettledIsNoWholeOne) {
  kernel_ = [] {
    Kernel::KernelFigures figures = someFigures();
    figures.interrupted = {"The kernel's routes"};
    return figures;
  };
  roots_.request->statusRequestIdInc(1);
  EXPECT_EQ(roots_.status->statusResponseId(), 1U) << "an answer all the same";
  EXPECT_FALSE(roots_.restartCompletion->restartComplete());
  EXPECT_EQ(responder_->interrupted().size(), 1U);
}

}  // namespace
}  // namespace Apps::Show
