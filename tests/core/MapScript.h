// MapScript: random histories of a map: members that come, go and come again while iterators stand. MapRunner runs one
// on a map and on a plain std::map side by side, and compares the two after each step.
#pragma once

#include "tests/core/MapKinds.h"
#include "tests/core/Property.h"

#include <array>
#include <map>
#include <optional>
#include <ostream>
#include <vector>

enum class MapOp {
  enter,       // a new member with that key; one that has the key leaves
  enterMany,   // new members with that key and those behind it, as far as they are absent
  enterAgain,  // the member with that key that was held when it left
  takeOut,
  hold,   // keeps the member with that key, whatever becomes of it
  letGo,  // keeps none with that key any longer
  open,
  openAt,
  copy,  // the iterator becomes a copy of its neighbour
  advance,
  walk,  // all members, each taken out at its turn or not; further steps happen in between
};

struct MapStep {
  static constexpr Vek::U32 keys = 40;  // enough to make a table grow
  static constexpr Vek::U32 iterators = 4;

  MapOp op = MapOp::enter;
  Vek::U32 key = 0;
  Vek::U32 iterator = 0;  // or how many steps happen at each member of a walk
};

inline std::ostream& operator<<(std::ostream& os, MapStep const& step) {
  static constexpr std::array names{"enter", "enterMany", "enterAgain", "takeOut", "hold", "letGo",
                                    "open",  "openAt",    "copy",       "advance", "walk"};
  return os << names[static_cast<std::size_t>(step.op)] << " k" << step.key << " i" << step.iterator;
}

template <>
struct rc::Arbitrary<MapStep> {
  static Gen<MapStep> arbitrary() {
    return gen::build<MapStep>(gen::set(&MapStep::op, gen::weightedElement<MapOp>({{6, MapOp::enter},
                                                                                   {1, MapOp::enterMany},
                                                                                   {3, MapOp::enterAgain},
                                                                                   {6, MapOp::takeOut},
                                                                                   {2, MapOp::hold},
                                                                                   {1, MapOp::letGo},
                                                                                   {1, MapOp::open},
                                                                                   {1, MapOp::openAt},
                                                                                   {1, MapOp::copy},
                                                                                   {12, MapOp::advance},
                                                                                   {2, MapOp::walk}})),
                               gen::set(&MapStep::key, gen::inRange<Vek::U32>(0, MapStep::keys)),
                               gen::set(&MapStep::iterator, gen::inRange<Vek::U32>(0, MapStep::iterators)));
  }
};

template <class Kind>
class MapRunner {
 public:
  void run(std::vector<MapStep> const& script) {
    for (at_ = script.begin(), end_ = script.end(); at_ != end_;) step(*at_++, true);
  }

 private:
  using Map = typename Kind::Map;
  using Member = typename Kind::Member;
  using Key = typename Kind::Key;
  using Rank = decltype(Kind::rank(std::declval<Key>()));
  using Iterator = typename Map::Iterator;

  struct Standing {
    Rank rank;
    Vek::Ptr<Member> member;  // the model's own reference: a reused address would pass for the old member
  };
  struct Place {
    Iterator real;
    std::optional<Standing> model;
  };
  void step(MapStep const& step, bool mayWalk) {
    Key const key = keyNumber<Key>(step.key);
    Place& place = places_[step.iterator];
    switch (step.op) {
    case MapOp::enter:
      if (!Kind::replaces) takeOut(key);
      enter(Vek::make<Member>(key, ++lastSerial_));
      break;
    case MapOp::enterMany:
      for (Vek::U32 n = step.key; n < MapStep::keys; ++n) {
        Key const each = keyNumber<Key>(n);
        if (map_[each] == nullptr) enter(Vek::make<Member>(each, ++lastSerial_));
      }
      break;
    case MapOp::enterAgain:
      if (auto const old = held_.find(Kind::rank(key)); old != held_.end() && map_[key] == nullptr) enter(old->second);
      break;
    case MapOp::takeOut: takeOut(key); break;
    case MapOp::hold:
      if (Member* const member = map_[key]) held_.insert_or_assign(Kind::rank(key), member);
      break;
    case MapOp::letGo: held_.erase(Kind::rank(key)); break;
    case MapOp::open: place = {Iterator(&map_), standing(model_.begin())}; break;
    case MapOp::openAt: place = {Iterator(&map_, key), standing(model_.lower_bound(Kind::rank(key)))}; break;
    case MapOp::copy: place = places_[(step.iterator + 1) % MapStep::iterators]; break;
    case MapOp::advance:
      if (place.model) {
        advance(place);
      } else if constexpr (Kind::staysAtTheEnd) {
        ++place.real;
      }
      break;
    case MapOp::walk:
      if (mayWalk) walk(step.key % 2 != 0, step.iterator);
      break;
    }
    compare();
  }

  void enter(Vek::Ptr<Member> const& member) {
    map_.newMember(member);
    model_.insert_or_assign(Kind::rank(Kind::key(*member)), member);
  }

  void takeOut(Key const& key) {
    Vek::Ptr<Member> const member = map_[key];
    if (!member) return;
    map_.deleteMember(member);
    model_.erase(Kind::rank(key));
  }

  template <class Position>
  std::optional<Standing> standing(Position position) const {
    if (position == model_.end()) return std::nullopt;
    return Standing{position->first, position->second};
  }

  // The one law of all iterators: on to the next greater rank, whatever has happened.
  void advance(Place& place) {
    ++place.real;
    place.model = standing(model_.upper_bound(place.model->rank));
  }

  void walk(bool delAll, Vek::U32 stepsBetween) {
    Place& place = walking_.emplace_back(Place{Iterator(&map_), standing(model_.begin())});
    for (; place.model; advance(place)) {
      compare();
      if (delAll) takeOut(Kind::key(*place.real));
      for (Vek::U32 i = 0; i < stepsBetween && at_ != end_; ++i) step(*at_++, false);
    }
    walking_.clear();
  }

  void compare() const {
    Kind::verify(map_);
    RC_ASSERT(map_.count() == model_.size());
    std::map<Member const*, Vek::U32> references;
    auto expected = model_.begin();
    for (typename Map::IteratorConst it(&map_); it; ++it, ++expected) {
      RC_ASSERT(expected != model_.end());
      RC_ASSERT(&*it == expected->second.ptr());
    }
    RC_ASSERT(expected == model_.end());
    for (Vek::U32 n = 0; n < MapStep::keys; ++n) {
      auto const member = model_.find(Kind::rank(keyNumber<Key>(n)));
      RC_ASSERT(map_[keyNumber<Key>(n)] == (member == model_.end() ? nullptr : member->second.ptr()));
    }
    for (auto const& [rank, member] : model_) references[member.ptr()] += 2;  // the map's and the model's
    for (auto const& [rank, member] : held_) references[member.ptr()] += 1;
    auto const compareTo = [&](Place const& place) {
      RC_ASSERT(place.real.operator bool() == place.model.has_value());
      if (!place.model) return;
      RC_ASSERT(place.real.ptr() == place.model->member.ptr());
      references[place.real.ptr()] += 2;
    };
    for (Place const& place : places_) compareTo(place);
    for (Place const& place : walking_) compareTo(place);
    for (auto const& [member, count] : references) RC_ASSERT(member->references() == count);
  }

  Map map_;
  std::map<Rank, Vek::Ptr<Member>> model_;
  std::map<Rank, Vek::Ptr<Member>> held_;
  std::array<Place, MapStep::iterators> places_;
  std::vector<Place> walking_;
  Vek::U32 lastSerial_ = 0;  // members' values
  std::vector<MapStep>::const_iterator at_;
  std::vector<MapStep>::const_iterator end_;
};

/// Tries the law `cases` times.
template <class Kind>
void expectMapKeepsItsWord(int cases) {
  expectLaw(cases, [] {
    auto const script = *rc::gen::scale(3.0, rc::gen::arbitrary<std::vector<MapStep>>());
    MapRunner<Kind>{}.run(script);
  });
}

/// A member dies with its iterator's step and takes out the one that this step goes to. The four keys stand next to
/// each other in the walk.
template <class Map>
void expectAMemberThatDiesUnderAnIteratorToTakeOutTheNextOne(std::array<Vek::U32, 4> const& keys) {
  Map map;
  for (Vek::U32 const key : keys) enter(map, key);
  typename Map::Iterator it(&map, keys[0]);
  it->atEnd = [&] { takeOut(map, keys[1]); };
  takeOut(map, keys[0]);
  ++it;
  ASSERT_EQ(it->key(), keys[1]) << "it was the next one when the step was taken";
  EXPECT_EQ(map[keys[1]], nullptr);
  ++it;
  ASSERT_TRUE(it);
  EXPECT_EQ(it->key(), keys[2]);
}
