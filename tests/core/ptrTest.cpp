#include "dornl3/core/Ptr.h"

#include "dornl3/core/Exception.h"
#include "dornl3/core/PtrTrack.h"
#include "dornl3/core/ValidPtr.h"
#include "tests/core/Counted.h"
#include "tests/core/LeakCheck.h"

#include <vector>

using namespace Vek;

namespace {

// Both ways of counting keep the same promises.
struct Pointers : LeakCheck, testing::WithParamInterface<bool> {
  Pointers() { Vek::VFPtrInterface::enableThreadSafePointers = GetParam(); }
  ~Pointers() override { Vek::VFPtrInterface::enableThreadSafePointers = false; }
  int destroyed = 0;
};
INSTANTIATE_TEST_SUITE_P(Plain, Pointers, testing::Values(false));
INSTANTIATE_TEST_SUITE_P(Atomic, Pointers, testing::Values(true));

TEST_P(Pointers, TheStateBitsOfAnActiveMarkedObjectDoNotKeepIt) {
  auto object = make<Counted>(destroyed);
  object->hasNotificationActiveIs(true);
  object->vekMarkedForDeletionIs(true);
  EXPECT_EQ(object->references(), 1U);
  EXPECT_TRUE(object->hasNotificationActive());
  EXPECT_TRUE(object->vekMarkedForDeletion());
  object->referencesInc();
  EXPECT_EQ(object->referencesDec(), 1U) << "what is left, without bits 29 and 31";
  object->hasNotificationActiveIs(false);
  EXPECT_FALSE(object->hasNotificationActive());
  EXPECT_TRUE(object->vekMarkedForDeletion());
  object->hasNotificationActiveIs(true);
  object = nullptr;
  EXPECT_EQ(destroyed, 1);
}

TEST_P(Pointers, TheHeldBitKeepsAnObjectWithoutReferences) {
  struct BuiltHeld : Counted {
    explicit BuiltHeld(int& destroyed) : Counted(destroyed) {
      for (int i = 0; i < 3; ++i) Ptr<BuiltHeld> const temporary{this};
      EXPECT_EQ(references(), 0U);
      referencesInc();
      EXPECT_EQ(referencesDec(), heldBit) << "bit 30 counts in the test for zero";
    }
  };
  auto object = make<BuiltHeld>(destroyed);
  EXPECT_EQ(destroyed, 0);
  EXPECT_EQ(object->references(), 1U);
  object = nullptr;
  EXPECT_EQ(destroyed, 1);
}

TEST_P(Pointers, AnObjectBuiltInsideAnothersConstructorIsHeldForItself) {
  struct Inner : Counted {
    explicit Inner(int& destroyed) : Counted(destroyed) { Ptr<Inner> const temporary{this}; }
  };
  // Becomes an argument of the outer object when that has its block and is not yet begun.
  struct Part {
    operator Ptr<Counted>() const {
      static_cast<void>(make<Inner>(destroyed));
      return new Counted(destroyed);
    }
    int& destroyed;
  };
  struct Outer : Counted {
    Outer(int& destroyed, Ptr<Counted> given) : Counted(destroyed), part(given), inner(make<Inner>(destroyed)) {
      Ptr<Outer> const temporary{this};
      inner = make<Inner>(destroyed);
    }
    Ptr<Counted> part;
    Ptr<Inner> inner;
  };
  auto object = make<Outer>(destroyed, Part{destroyed});
  EXPECT_EQ(destroyed, 2) << "the inner objects that nobody holds";
  EXPECT_EQ(object->inner->references(), 1U);
  EXPECT_EQ(object->part->references(), 1U);
  object = nullptr;
  EXPECT_EQ(destroyed, 5);
}

TEST_P(Pointers, AConstructorThatThrowsLeavesNothing) {
  struct Fails : Counted {
    explicit Fails(int& destroyed) : Counted(destroyed) {
      Ptr<Fails> const temporary{this};
      throw 1;
    }
  };
  EXPECT_THROW(static_cast<void>(make<Fails>(destroyed)), int);
  EXPECT_EQ(destroyed, 1);
  auto const after = make<Counted>(destroyed);
  EXPECT_EQ(after->references(), 1U) << "the birth of the failed object is over";
}

TEST_P(Pointers, PtrTakesAndGivesOneReference) {
  auto const a = make<Counted>(destroyed);
  auto const b = make<Counted>(destroyed);
  Ptr<Counted> p{a.ptr()};
  EXPECT_EQ(a->references(), 2U);
  p.ptrAssign(a.ptr());
  EXPECT_EQ(a->references(), 2U);
  p = p.ptr();
  p = b;
  EXPECT_EQ(a->references(), 1U);
  EXPECT_EQ(b->references(), 2U);
  Ptr<PtrInterface const> const base = p;
  EXPECT_EQ(b->references(), 3U);
  EXPECT_TRUE(base == b);
  Ptr<PtrInterface const> const movedBase = std::move(p);
  EXPECT_EQ(b->references(), 3U);
  EXPECT_FALSE(p);  // NOLINT(bugprone-use-after-move): a moved-from pointer is null
  p = nullptr;
  Ptr<Counted> q = a;
  auto& itself = q;
  q = std::move(itself);
  EXPECT_EQ(a->references(), 2U);
  Counted* const raw = q.detach();
  EXPECT_EQ(a->references(), 2U);
  raw->referencesDec();
}

TEST_P(Pointers, AssigningLetsTheOldObjectsEndSeeTheNewState) {
  Ptr<Counted> holder;
  auto const next = make<Counted>(destroyed);
  Counted const* seen = nullptr;
  holder = make<Counted>(destroyed);
  holder->lastWords = [&](Counted&) { seen = holder.ptr(); };
  holder = next;
  EXPECT_EQ(seen, next.ptr());
}

TEST_P(Pointers, AnObjectThatIsKeptDuringItsLastWordsLivesOn) {
  Ptr<Counted> keeper;
  int spoken = 0;
  auto object = make<Counted>(destroyed);
  object->lastWords = [&](Counted& self) {
    for (int i = 0; i < 3; ++i) Ptr<Counted> const temporary{&self};
    if (++spoken < 3) keeper = &self;
  };
  object = nullptr;
  for (int life = 1; life < 3; ++life) {
    ASSERT_EQ(destroyed, 0);
    EXPECT_EQ(spoken, life);
    EXPECT_EQ(keeper->references(), 1U);
    keeper.ptrAssign(nullptr);
  }
  EXPECT_EQ(spoken, 3);
  EXPECT_EQ(destroyed, 1);
}

TEST_P(Pointers, LastWordsThatThrowDoNotKeepTheObject) {
  auto object = make<Counted>(destroyed);
  object->lastWords = [](Counted&) { throw 1; };
  object = nullptr;
  EXPECT_EQ(destroyed, 1);
}

TEST_P(Pointers, ADestructorMayHandOutReferencesThatComeBack) {
  struct Tells : Counted {
    using Counted::Counted;
    ~Tells() override { Ptr<Tells> const temporary{this}; }
  };
  auto object = make<Tells>(destroyed);
  object = nullptr;
  EXPECT_EQ(destroyed, 1);
}

TEST_P(Pointers, AuditsPassOnLevelsThatAreNotNegative) {
  auto const object = make<Counted>(destroyed);
  EXPECT_EQ(object->auditErrors(0), 7U);
  EXPECT_EQ(object->auditErrors(5), 12U);
  EXPECT_EQ(object->auditErrors(0x7fffffff), 0x80000006U);
  EXPECT_EQ(object->auditErrors(0x80000000), 0U);
  EXPECT_EQ(object->auditErrors(~0U), 0U);
  EXPECT_EQ(make<PlainReactor>()->auditErrors(0), 0U);
}

TEST_P(Pointers, AValidPtrIsAPtrThatIsNeverNull) {
  ValidPtr<Counted> valid{make<Counted>(destroyed)};
  Ptr<Counted> const& plain = valid;
  Ptr<PtrInterface> base = valid;
  Ptr<PtrInterface const> const made{valid};
  ValidPtr<PtrInterface const> const validBase = valid;
  ValidPtr<Counted> const copy = valid;
  EXPECT_EQ(valid->references(), 5U);
  base = nullptr;
  base = valid;
  valid = copy;
  EXPECT_EQ(valid->references(), 5U);
  EXPECT_TRUE(valid && valid == plain && plain == valid && valid == base && validBase == valid);
  EXPECT_TRUE(valid == plain.ptr() && !(valid == nullptr));
  EXPECT_EQ(std::hash<ValidPtr<Counted>>{}(valid), std::hash<Ptr<Counted>>{}(plain));
  EXPECT_FALSE(Vek::ptrCast<PlainReactor>(valid));
  try {
    valid = Ptr<Counted>{};
    ADD_FAILURE() << "a null pointer passed";
  } catch (Vek::RangeException const& e) {
    EXPECT_TRUE(e.message() == "null ValidPtr");
  }
  EXPECT_THROW(valid.ptrAssign(nullptr), Vek::RangeException);
  EXPECT_TRUE(valid == copy);
  EXPECT_EQ(valid->references(), 5U);
}

TEST_P(Pointers, TrackingNamesWhoIsAlive) {
  Vek::ptrifTrackOn_ = true;
  auto object = make<Counted>(destroyed);
  auto lasting = make<Counted>(destroyed);
  EXPECT_EQ(Vek::PtrTrack::alive(), (std::vector<std::string>{"Counted", "Counted"}));
  lasting->referencesLeak();
  EXPECT_EQ(lasting->references(), 2U);
  EXPECT_EQ(Vek::PtrTrack::alive(), std::vector<std::string>{"Counted"});
  object = nullptr;
  EXPECT_TRUE(Vek::PtrTrack::alive().empty());
  Vek::ptrifTrackOn_ = false;
  lasting->referencesDec();
}

}  // namespace
