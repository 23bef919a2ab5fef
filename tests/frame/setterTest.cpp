#include "tests/core/LeakCheck.h"
#include "tests/frame/Recorder.h"

#include <cmath>
#include <limits>

namespace Toys {

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

struct Setters : LeakCheck {
  // What one call of a setter does to the write count and to the reactor.
  template <class Set>
  Calls effect(Set const& set, int writes) {
    calls.clear();
    auto const before = toy->writeCount();
    auto const reads = toy->readCount();
    set();
    EXPECT_EQ(toy->writeCount(), before + static_cast<Vek::U32>(writes));
    EXPECT_EQ(toy->readCount(), reads) << "a setter reads nothing";
    return calls;
  }

  Setters() {
    reactor->isRegisteredNotifieeIs(true);
    reactor->notifierIs(toy);
  }

  Calls calls;
  Vek::Ptr<Toy> toy = toyFactory("toy");
  Vek::Ptr<Recorder> reactor = Vek::make<Recorder>(calls, "r");
};

// What a test over all attributes needs to know of one. Neighbours in `values` differ.
struct Size {
  static constexpr Vek::AttributeId id = 258;
  static constexpr char const* name = "size";
  static constexpr Vek::U64 values[] = {1, 0, ~0ULL, 1ULL << 32};
  static void set(Toy& toy, Vek::U64 v) { toy.sizeIs(v); }
  static Vek::U64 get(Toy const& toy) { return toy.size(); }
};
struct Broken {
  static constexpr Vek::AttributeId id = 259;
  static constexpr char const* name = "broken";
  static constexpr bool values[] = {true, false};
  static void set(Toy& toy, bool v) { toy.brokenIs(v); }
  static bool get(Toy const& toy) { return toy.broken(); }
};
struct Played {
  static constexpr Vek::AttributeId id = 260;
  static constexpr char const* name = "played";
  static constexpr double values[] = {0.5, 5e-324, std::numeric_limits<double>::infinity(), 0};
  static void set(Toy& toy, double v) { toy.playedIs(v); }
  static double get(Toy const& toy) { return toy.played(); }
};
struct Text {
  static constexpr Vek::AttributeId id = 261;
  static constexpr char const* name = "text";
  static constexpr char const* values[] = {"a", "", "b", "B"};
  static void set(Toy& toy, char const* v) { toy.textIs(v); }
  static Vek::String8 get(Toy const& toy) { return toy.text(); }
};
struct Place {
  static constexpr Vek::AttributeId id = 262;
  static constexpr char const* name = "place";
  static inline ToyPoint const values[] = {{1, 0, "a"}, {1, 0, "b"}, {1, 2, "b"}, {3, 2, "b"}};
  static void set(Toy& toy, ToyPoint const& v) { toy.placeIs(v); }
  static ToyPoint get(Toy const& toy) { return toy.place(); }
};

template <class Attribute>
struct EveryAttribute : Setters {};
using Attributes = testing::Types<Size, Broken, Played, Text, Place>;
TYPED_TEST_SUITE(EveryAttribute, Attributes);

TYPED_TEST(EveryAttribute, AChangeIsStoredCountedAndToldOnceAndTheSameValueAgainIsNothing) {
  Calls const told{std::string("r ") + TypeParam::name};
  for (auto const& value : TypeParam::values) {
    EXPECT_EQ(this->effect([&] { TypeParam::set(*this->toy, value); }, 1), told);
    EXPECT_TRUE(TypeParam::get(*this->toy) == value);
    EXPECT_EQ(this->effect([&] { TypeParam::set(*this->toy, value); }, 0), Calls{});
  }
}

TYPED_TEST(EveryAttribute, AReadIsCounted) {
  auto const reads = this->toy->readCount();
  for (Vek::U32 i = 1; i < 4; ++i) {
    static_cast<void>(TypeParam::get(*this->toy));
    EXPECT_EQ(this->toy->readCount(), reads + i);
  }
  EXPECT_EQ(this->toy->writeCount(), 0U);
}

TYPED_TEST(EveryAttribute, HasItsNameByNumber) {
  EXPECT_TRUE(this->toy->attributeString(TypeParam::id) == TypeParam::name);
}

TEST_F(Setters, ANewEntityHasCountedNothingAndHasNoParent) {
  auto const fresh = toyFactory("fresh");
  EXPECT_EQ(fresh->writeCount(), 0U);
  EXPECT_EQ(fresh->readCount(), 0U);
  EXPECT_EQ(fresh->parentAttrId(), 136U);
  EXPECT_FALSE(fresh->parent());
  EXPECT_EQ(fresh->parentAttr(), nullptr);
  EXPECT_TRUE(fresh->name() == "fresh");
  EXPECT_TRUE(fresh->vekHasAttrLogInterface());
  EXPECT_EQ(fresh->references(), 1U);
}

TEST_F(Setters, ANaNAlwaysChanges) {
  Calls const told{"r played"};
  for (int i = 0; i < 2; ++i) EXPECT_EQ(effect([&] { toy->playedIs(nan); }, 1), told);
  EXPECT_EQ(effect([&] { toy->playedIs(0.0); }, 1), told);
  for (int i = 0; i < 2; ++i) EXPECT_EQ(effect([&] { toy->placeIs({0, nan, ""}); }, 1), Calls{"r place"});
}

TEST_F(Setters, ZeroesOfBothSignsAreThePresentValue) {
  EXPECT_EQ(effect([&] { toy->playedIs(-0.0); }, 0), Calls{});
  EXPECT_FALSE(std::signbit(toy->played()));
}

TEST_F(Setters, EqualTextInOtherBytesIsThePresentValue) {
  toy->textIs("text");
  auto const* const block = &toy->text().data();
  EXPECT_EQ(effect([&] { toy->textIs(Vek::String8{"te"} + "xt"); }, 0), Calls{});
  EXPECT_EQ(&toy->text().data(), block);
  toy->placeIs({1, 2, "label"});
  EXPECT_EQ(effect([&] { toy->placeIs({1, 2, Vek::String8{"la"} + "bel"}); }, 0), Calls{});
}

TEST_F(Setters, AnAttributeSetToItselfOrAnotherOfTheSameEntityIsRead) {
  toy->textIs("text");
  EXPECT_EQ(effect([&, &text = toy->text()] { toy->textIs(text); }, 0), Calls{});
  toy->placeIs({1, 2, "label"});
  toy->textIs(toy->place().label());
  EXPECT_TRUE(toy->text() == "label");
}

TEST_F(Setters, AnIncrementerCountsOneReadAndNeverAWrite) {
  struct {
    Vek::U64 start, delta, result;
    bool told;
  } const cases[] = {
      {0, 0, 0, false},        {7, 0, 7, false}, {7, 5, 12, true}, {~0ULL, 1, 0, true}, {~0ULL, ~0ULL, ~1ULL, true},
      {3, ~0ULL - 1, 1, true},
  };
  for (auto const& c : cases) {
    toy->sizeIs(c.start);
    calls.clear();
    auto const reads = toy->readCount();
    auto const writes = toy->writeCount();
    EXPECT_EQ(toy->sizeInc(c.delta), c.result);
    EXPECT_EQ(toy->readCount(), reads + 1);
    EXPECT_EQ(toy->writeCount(), writes);
    EXPECT_EQ(calls, c.told ? Calls{"r size"} : Calls{});
    EXPECT_EQ(toy->size(), c.result);
  }
}

TEST_F(Setters, AnIncrementerGivesItsOwnSumWhateverItsReactorsDo) {
  reactor->next = [&] { toy->sizeIs(100); };
  EXPECT_EQ(toy->sizeInc(1), 1U);
  EXPECT_EQ(toy->size(), 100U);
}

TEST_F(Setters, NumbersThatTheTypeDoesNotKnowAreTheFrameworks) {
  for (Vek::AttributeId const id : {0U, 5U, 128U, 136U, 154U, 257U, 263U, ~0U}) {
    EXPECT_TRUE(toy->attributeString(id) == toy->Entity::attributeString(id)) << id;
  }
  EXPECT_TRUE(toy->attributeString(154) == "vekHasAttrLogInterface");
  EXPECT_TRUE(toy->attributeString(263) == "unknown");
}

TEST_F(Setters, AParentIsStoredAndHoldsNoReference) {
  auto const parent = toyFactory("parent");
  toy->parentIs(parent);
  toy->parentAttrIdIs(262);
  EXPECT_TRUE(toy->parent() == parent);
  EXPECT_EQ(parent->references(), 1U);
  EXPECT_EQ(toy->parentAttrId(), 262U);
  EXPECT_EQ(toy->parentAttr(), Toy::_fwkType()->attribute(262));
  EXPECT_TRUE(toy->fullName() == "parent.place");
  EXPECT_TRUE(toy->uriPath() == "/parent/place");
  toy->parentIs(nullptr);
  EXPECT_EQ(toy->parentAttrId(), 262U) << "the attribute stays when the parent goes";
  EXPECT_TRUE(toy->fullName() == "toy");
  EXPECT_EQ(toy->writeCount(), 0U);
}

TEST_F(Setters, ValuesAreEqualAttributeByAttribute) {
  ToyPoint const point{1, 2, "a"};
  EXPECT_TRUE((point == ToyPoint{1, 2, Vek::String8{"xa"}.substr(1, 1)}));
  for (ToyPoint const& different : {ToyPoint{2, 2, "a"}, ToyPoint{1, 3, "a"}, ToyPoint{1, 2, "b"}}) {
    EXPECT_FALSE(point == different);
    EXPECT_TRUE(point != different);
  }
  ToyPoint const unequal{1, nan, "a"};
  ToyPoint const copy = unequal;
  EXPECT_FALSE(unequal == unequal);  // NOLINT(misc-redundant-expression)
  EXPECT_TRUE(copy != unequal);
  EXPECT_TRUE((ToyPoint{1, 0.0, "a"} == ToyPoint{1, -0.0, "a"}));
}

TEST_F(Setters, ATypesRecordIsOneAndTheSame) {
  EXPECT_EQ(Toy::_fwkType(), toy->fwkType());
  EXPECT_EQ(Toy::_fwkType(), Vek::VekType::find("Toys::Toy"));
  EXPECT_EQ(ToyPoint{}.fwkType(), ToyPoint::_fwkType());
}

}  // namespace

}  // namespace Toys
