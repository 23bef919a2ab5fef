#include "apps/show/RequestResponder.h"

#include "apps/show/StatusFiller.h"
#include "tests/core/LeakCheck.h"

#include <gtest/gtest.h>

namespace Apps::Show {
namespace {

using namespace Hardware::DornL3Unicast;

class Responder : public LeakCheck {
 protected:
  Responder() {
    responder_->notifierIs(roots_.request);
    responder_->isRegisteredNotifieeIs(true);
  }

  // What whoever owns the entities does, in a turn of his own.
  void serve() {
    if (!responder_->isAsked()) return;
    Kernel::KernelFigures figures;
    figures.vrfs = 3;
    fill(roots_, figures);
    responder_->answer(roots_, 1234.5);
  }

  Roots roots_;
  int calls_ = 0;
  Vek::Ptr<RequestResponder> responder_ = Vek::make<RequestResponder>([this] { ++calls_; });
};

// Notes whether Status is filled at the moment of the answer.
struct Requester : Status::Notifiee {
  void onStatusResponseId() override {
    ++answers;
    isFilled = notifier()->numVrfs() != 0 && notifier()->statusUpdatedTime() == 1234.5;
  }
  int answers = 0;
  bool isFilled = false;
};

TEST_F(Responder, AnswersAllThatHaveAskedAtOnceAndLast) {
  auto const requester = Vek::make<Requester>();
  requester->notifierIs(roots_.status);
  requester->isRegisteredNotifieeIs(true);
  for (Vek::U64 const id : {41U, 43U, 42U}) roots_.request->statusRequestIdIs(id);
  EXPECT_EQ(calls_, 1);
  EXPECT_EQ(requester->answers, 0) << "not inside the setter";
  serve();
  EXPECT_EQ(roots_.status->statusResponseId(), 43U);
  EXPECT_EQ(requester->answers, 1);
  EXPECT_TRUE(requester->isFilled);
  roots_.request->statusRequestIdInc(0);
  EXPECT_FALSE(responder_->isAsked()) << "a request that does not move asks for nothing";
}

TEST_F(Responder, NeverGoesBackAndLetsNobodyUseUpTheIds) {
  struct {
    Vek::U64 asked;
    Vek::U64 answered;
    char const* why;
  } const cases[] = {
      {7, 7, "the first"},
      {3, 7, "a lower one is answered as well"},
      {~Vek::U64{0}, 7, "one that leaps is put back"},
      {7 + RequestResponder::farthestLeap, 7 + RequestResponder::farthestLeap, "as far as it may"},
  };
  for (auto const& one : cases) {
    roots_.request->statusRequestIdIs(one.asked);
    EXPECT_TRUE(responder_->isAsked()) << one.why;
    serve();
    EXPECT_EQ(roots_.status->statusResponseId(), one.answered) << one.why;
  }
}

}  // namespace
}  // namespace Apps::Show
