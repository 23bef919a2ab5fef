// Values without their classes, where no typed operation does the same.
#include "dornl3/platform/vek/Builtin.h"
#include "dornl3/platform/vek/GenericIf.h"
#include "tests/core/LeakCheck.h"
#include "tests/frame/Toy.h"

namespace {

using namespace Toys;
using Vek::GenericIf;

class ValueGeneric : public LeakCheck {};

template <class T>
Vek::Ptr<GenericIf> plain(T const& value) {
  return Vek::Builtin<T>::_fwkType()->genericIf(static_cast<void const*>(&value), false);
}

TEST_F(ValueGeneric, TakesAnotherValueWhateverItsConstnessAndItsCopyIsAsConst) {
  for (bool const isConst : {false, true}) {
    auto const point = ToyPoint::GenericIf_::GenericIf_Is(ToyPoint(), isConst);
    point->valIs(ToyPoint(9, 0, ""));
    EXPECT_EQ(point->value().x(), 9U);
    EXPECT_EQ(point->clone()->isConst(), isConst);
    EXPECT_EQ(point->clone()->strRep(), point->strRep());
    auto const equals = [&point](Vek::Ptr<GenericIf> const& other) {
      return point->attributeOp({0, GenericIf::OpEquals}, other, nullptr)->strRep();
    };
    EXPECT_EQ(equals(point->clone()), "True");
    EXPECT_EQ(equals(ToyPoint::GenericIf_::GenericIf_Is(ToyPoint(), false)), "False");
  }
}

TEST_F(ValueGeneric, IsRegisteredFromTheStartAndAgainWhenSwitchedOnAgain) {
  auto const point = ToyPoint::GenericIf_::GenericIf_Is(ToyPoint(), false);
  for (int i = 0; i < 2; ++i) {
    EXPECT_TRUE(point->isRegisteredNotifiee());
    point->hasNotificationActiveIs(false);
    EXPECT_FALSE(point->isRegisteredNotifiee());
    EXPECT_EQ(point->vek_bitSet().word(), 0x04080000U);
    point->hasNotificationActiveIs(true);
  }
}

TEST_F(ValueGeneric, IsMadeFromAnEmptyListAndNotFromOneThatBreaksALimit) {
  auto const list = Vek::make<GenericIf::List_>();
  EXPECT_EQ(ToyPoint::_fwkType()->genericIf(list.ptr(), false)->strRep(), valueToStrep(ToyPoint()));
  list->enqueue(plain(Vek::U32{101}));
  list->enqueue(plain(1.0));
  list->enqueue(plain(Vek::String8("")));
  EXPECT_EQ(list->strRep(), "[101, 1.0, '']");
  EXPECT_THROW(static_cast<void>(ToyPoint::_fwkType()->genericIf(list.ptr(), false)), Vek::RangeException);
}

TEST_F(ValueGeneric, ReadsNoTextWithMoreBehindIt) {
  Vek::String8 const its = valueToStrep(ToyPoint(3, 0.5, "a"));
  EXPECT_EQ(ToyPoint::_fwkType()->genericIf(its, false)->strRep(), its);
  EXPECT_EQ(Vek::Name::_fwkType()->genericIf(Vek::String8("'n'"), false)->strRep(), "'n'");
  EXPECT_THROW(static_cast<void>(ToyPoint::_fwkType()->genericIf(its + "x", false)), Vek::RangeException);
}

}  // namespace
