// Values without their classes.
#include "platform/vek/Builtin.h"
#include "platform/vek/GenericIf.h"
#include "tests/core/LeakCheck.h"
#include "tests/frame/Toy.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace {

using namespace Toys;
using Vek::GenericIf;

class ValueGeneric : public LeakCheck {};

Vek::Ptr<GenericIf> number(Vek::U32 value) { return Vek::Builtin<Vek::U32>::_fwkType()->genericIf(&value, false); }
Vek::Ptr<GenericIf> seconds(double value) { return Vek::Builtin<double>::_fwkType()->genericIf(&value, false); }
Vek::Ptr<GenericIf> text(Vek::String8 const& value) {
  return Vek::Builtin<Vek::String8>::_fwkType()->genericIf(static_cast<void const*>(&value), false);
}

Vek::Ptr<GenericIf> listOf(std::initializer_list<Vek::Ptr<GenericIf>> arguments) {
  auto const list = Vek::make<GenericIf::List_>();
  for (auto const& argument : arguments) list->enqueue(argument);
  return list;
}

TEST_F(ValueGeneric, ReadsAttributesAsCopiesAsConstAsItself) {
  for (bool const isConst : {false, true}) {
    auto const point = ToyPoint::GenericIf_::GenericIf_Is(ToyPoint(3, 0.5, "a"), isConst);
    auto const x = point->attributeOp({2, GenericIf::OpGet}, nullptr, nullptr);
    EXPECT_EQ(x->strRep(), "3");
    EXPECT_EQ(x->isConst(), isConst);
    EXPECT_EQ(point->attributeOp({4, GenericIf::OpGet}, nullptr, nullptr)->strRep(), "'a'");
    EXPECT_EQ(point->clone()->isConst(), isConst);
    EXPECT_EQ(point->clone()->strRep(), valueToStrep(ToyPoint(3, 0.5, "a")));
  }
}

TEST_F(ValueGeneric, FindsAttributesByTheirExactNames) {
  auto const point = ToyPoint::GenericIf_::GenericIf_Is(ToyPoint(), false);
  EXPECT_EQ(point->attributeId("label"), 4U);
  EXPECT_EQ(point->attributeId("Label"), GenericIf::noAttribute);
  EXPECT_EQ(point->attributeId("lab"), GenericIf::noAttribute);
}

TEST_F(ValueGeneric, ComparesWholeValues) {
  auto const point = ToyPoint::GenericIf_::GenericIf_Is(ToyPoint(3, 0.5, "a"), false);
  auto const equal = [&](Vek::Ptr<GenericIf> const& other) {
    return point->attributeOp({0, GenericIf::OpEquals}, other, nullptr)->strRep();
  };
  EXPECT_EQ(equal(point->clone()), "True");
  EXPECT_EQ(equal(ToyPoint::GenericIf_::GenericIf_Is(ToyPoint(4, 0.5, "a"), true)), "False");
}

TEST_F(ValueGeneric, TakesAnotherValueWhateverItsConstness) {
  auto const point = ToyPoint::GenericIf_::GenericIf_Is(ToyPoint(), true);
  point->valIs(ToyPoint(9, 0, ""));
  EXPECT_EQ(point->value().x(), 9U);
}

TEST_F(ValueGeneric, IsMadeFromAListOfAllArgumentsOrNone) {
  Vek::VekType const* const type = ToyPoint::_fwkType();
  auto const made = type->genericIf(listOf({number(3), seconds(0.5), text("a")}).ptr(), true);
  EXPECT_EQ(made->strRep(), valueToStrep(ToyPoint(3, 0.5, "a")));
  EXPECT_FALSE(made->isConst());
  EXPECT_EQ(type->genericIf(listOf({}).ptr(), false)->strRep(), valueToStrep(ToyPoint()));
}

TEST_F(ValueGeneric, ReadsItsOwnText) {
  Vek::String8 const its = valueToStrep(ToyPoint(3, 0.5, "a"));
  EXPECT_EQ(ToyPoint::_fwkType()->genericIf(its, false)->strRep(), its);
  EXPECT_EQ(Vek::Name::_fwkType()->genericIf(Vek::String8("'n'"), false)->strRep(), "'n'");
  EXPECT_THROW(static_cast<void>(ToyPoint::_fwkType()->genericIf(its + "x", false)), Vek::RangeException);
}

struct Refusal {
  char const* what;
  std::function<void()> act;
  std::string kind;
  std::string subject;
};

std::string kindOf(Vek::GenericException const& e) {
  if (dynamic_cast<Vek::TypeException const*>(&e) != nullptr) return "type";
  if (dynamic_cast<Vek::ConstException const*>(&e) != nullptr) return "const";
  if (dynamic_cast<Vek::BadIndexAttrException const*>(&e) != nullptr) return "index";
  if (dynamic_cast<Vek::UnknownArgException const*>(&e) != nullptr) return "argument";
  auto const* const op = dynamic_cast<Vek::OpNotSupportedException const*>(&e);
  return op == nullptr ? "?" : "op " + std::to_string(op->code());
}

TEST_F(ValueGeneric, RefusesWhatDoesNotFitByName) {
  auto const point = ToyPoint::GenericIf_::GenericIf_Is(ToyPoint(), false);
  auto const fixed = ToyPoint::GenericIf_::GenericIf_Is(ToyPoint(), true);
  auto const op = [](auto const& generic, Vek::AttributeId id, int code, Vek::Ptr<GenericIf const> const& key = {}) {
    return [=] { generic->attributeOp({id, code}, key, nullptr); };
  };
  auto const make = [](Vek::Ptr<GenericIf> const& list) {
    return [=] { static_cast<void>(ToyPoint::_fwkType()->genericIf(list.ptr(), false)); };
  };
  for (Refusal const& r : {
           Refusal{"const first", op(fixed, 77, 128), "const", "attempting to modify a const instance"},
           Refusal{"no setter", op(point, 2, 128), "op 128", "x"},
           Refusal{"a key", op(point, 2, 0, number(1)), "index", "x"},
           Refusal{"a key before the code", op(point, 2, 1, number(1)), "index", "x"},
           Refusal{"equals what", op(point, 0, 100), "type", "vekOpArg"},
           Refusal{"equals another type", op(point, 0, 100, number(1)), "type", "U32"},
           Refusal{"no list", make(number(1)), "type", "Vek::GenericIf::List_"},
           Refusal{"null", make({}), "type", "Vek::GenericIf::List_"},
           Refusal{"too short", make(listOf({number(1)})), "type", "y"},
           Refusal{"a null argument", make(listOf({nullptr})), "type", "x"},
           Refusal{"another type", make(listOf({seconds(1)})), "type", "Seconds"},
           Refusal{"too long", make(listOf({number(1), seconds(1), text(""), number(1)})), "argument", "ToyPoint"},
       }) {
    SCOPED_TRACE(r.what);
    try {
      r.act();
      ADD_FAILURE() << "accepted";
    } catch (Vek::GenericException const& e) {
      EXPECT_EQ(kindOf(e), r.kind);
      EXPECT_EQ(std::string(e.subject()), r.subject);
    }
  }
  EXPECT_THROW(make(listOf({number(101), seconds(1), text("")}))(), Vek::RangeException);
}

}  // namespace
