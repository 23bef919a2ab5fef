#include "tests/core/LeakCheck.h"
#include "tests/frame/Listener.h"

#include <array>
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

  Calls calls;
  Vek::Ptr<Toy> toy = toyFactory("toy");
  Vek::Ptr<ToyListener> reactor = listen<ToyListener>(toy, calls, "r");
};

TEST_F(Setters, AChangeIsStoredCountedAndToldOnceAndTheSameValueAgainIsNothing) {
  reactor->nextDo({[this] { EXPECT_EQ(toy->writeCount(), 1U) << "counted before anybody hears"; }});
  // Neighbours in `values` differ.
  auto const expectChanges = [this](char const* name, auto setter, auto getter, auto const& values) {
    for (auto const& value : values) {
      auto const set = [&] { std::invoke(setter, *toy, value); };
      EXPECT_EQ(effect(set, 1), Calls{std::string("r ") + name});
      EXPECT_TRUE(std::invoke(getter, *toy) == value);
      EXPECT_EQ(effect(set, 0), Calls{});
    }
  };
  expectChanges("size", &Toy::sizeIs, &Toy::size, std::array{1ULL, 0ULL, ~0ULL, 1ULL << 32});
  expectChanges("played", &Toy::playedIs, &Toy::played,
                std::array{0.5, 5e-324, std::numeric_limits<double>::infinity(), 0.0});
  expectChanges("text", &Toy::textIs, &Toy::text, std::array<Vek::String8, 4>{"a", "", "b", "B"});
  expectChanges("place", &Toy::placeIs, &Toy::place,
                std::array<ToyPoint, 4>{{{1, 0, "a"}, {1, 0, "b"}, {1, 2, "b"}, {3, 2, "b"}}});
}

TEST_F(Setters, ANaNAlwaysChanges) {
  Calls const told{"r played"};
  for (int i = 0; i < 2; ++i) EXPECT_EQ(effect([&] { toy->playedIs(nan); }, 1), told);
  EXPECT_EQ(effect([&] { toy->playedIs(0.0); }, 1), told);
  for (int i = 0; i < 2; ++i) EXPECT_EQ(effect([&] { toy->placeIs({0, nan, ""}); }, 1), Calls{"r place"});
}

TEST_F(Setters, AZeroOfTheOtherSignAndEqualTextInOtherBytesAreThePresentValue) {
  EXPECT_EQ(effect([&] { toy->playedIs(-0.0); }, 0), Calls{});
  EXPECT_FALSE(std::signbit(toy->played()));
  toy->textIs("text");
  auto const* const block = &toy->text().data();
  EXPECT_EQ(effect([&] { toy->textIs(Vek::String8{"te"} + "xt"); }, 0), Calls{});
  EXPECT_EQ(&toy->text().data(), block);
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
  } const cases[] = {{7, 0, 7, false}, {7, 5, 12, true}, {~0ULL, 1, 0, true}};
  for (auto const& c : cases) {
    toy->sizeIs(c.start);
    calls.clear();
    auto const reads = toy->readCount();
    auto const writes = toy->writeCount();
    EXPECT_EQ(toy->sizeInc(c.delta), c.result);
    EXPECT_EQ(toy->readCount(), reads + 1);
    EXPECT_EQ(toy->writeCount(), writes);
    EXPECT_EQ(calls, c.told ? Calls{"r size"} : Calls{});
  }
  reactor->nextDo({[&] { toy->sizeIs(100); }});
  EXPECT_EQ(toy->sizeInc(1), 1U) << "its own sum, whatever its reactors do";
  EXPECT_EQ(toy->size(), 100U);
}

TEST_F(Setters, NumbersThatTheTypeDoesNotKnowAreTheFrameworks) {
  for (Vek::AttributeId const id : {0U, 5U, 128U, 136U, 154U, 257U, 263U, ~0U}) {
    EXPECT_TRUE(toy->attributeString(id) == toy->Entity::attributeString(id)) << id;
  }
  EXPECT_TRUE(toy->attributeString(262) == "place");
  EXPECT_TRUE(toy->attributeString(154) == "vekHasAttrLogInterface");
}

}  // namespace

}  // namespace Toys
