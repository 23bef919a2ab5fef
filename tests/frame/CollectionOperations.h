// CollectionOperations: what tests over all collections of a box need to know of each: its operations, four keys, and
// two values that differ. The first value is what a read of an absent key gives.
#pragma once

#include "tests/frame/Toy.h"

#include <string>

namespace Toys {

template <class E, class K, class V>
struct Operations {
  using Element = E;
  using Iterator = typename E::Map::Iterator;
  using Key = K;
  using Value = V;
  using Del = V (ToyBox::*)(K);
  using DelAt = V (ToyBox::*)(Iterator&);
};

struct Counts : Operations<ToyBox::VekCounts, Vek::U32, Vek::U32> {
  static constexpr char const* name = "counts";
  static constexpr Vek::AttributeId id = 258;
  static constexpr Vek::U32 keys[] = {7, 0, ~0U, 8};
  static constexpr Vek::U32 values[] = {0, 5};
  static std::string text(Vek::U32 key) { return std::to_string(key); }
  static constexpr auto get = &ToyBox::counts;
  static constexpr auto set = &ToyBox::countsIs;
  static constexpr auto make = &ToyBox::newCounts;
  static constexpr Del del = &ToyBox::countsDel;
  static constexpr DelAt delAt = &ToyBox::countsDel;
  static constexpr auto delAll = &ToyBox::countsDelAll;
  static constexpr auto notify = &ToyBox::countsNotify;
  static constexpr auto count = &ToyBox::countsCount;
  static constexpr auto iterator = &ToyBox::countsIterator;
  static constexpr auto iteratorConst = &ToyBox::countsIteratorConst;
};

struct Faps : Operations<ToyBox::VekFaps, Hardware::Dorn::FapId, Vek::U64> {
  static constexpr char const* name = "faps";
  static constexpr Vek::AttributeId id = 259;
  static inline Hardware::Dorn::FapId const keys[] = {7, 0, Hardware::Dorn::FapId::null, 8};
  static constexpr Vek::U64 values[] = {0, 1ULL << 40};
  static std::string text(Hardware::Dorn::FapId key) { return std::to_string(key.value()); }
  static constexpr auto get = &ToyBox::faps;
  static constexpr auto set = &ToyBox::fapsIs;
  static constexpr auto make = &ToyBox::newFaps;
  static constexpr Del del = &ToyBox::fapsDel;
  static constexpr DelAt delAt = &ToyBox::fapsDel;
  static constexpr auto delAll = &ToyBox::fapsDelAll;
  static constexpr auto notify = &ToyBox::fapsNotify;
  static constexpr auto count = &ToyBox::fapsCount;
  static constexpr auto iterator = &ToyBox::fapsIterator;
  static constexpr auto iteratorConst = &ToyBox::fapsIteratorConst;
};

struct Wanted : Operations<ToyBox::VekWanted, Vek::U32, bool> {
  static constexpr char const* name = "wanted";
  static constexpr Vek::AttributeId id = 260;
  static constexpr Vek::U32 keys[] = {7, 0, ~0U, 23};  // 7 and 23 share a bucket
  static constexpr bool values[] = {false, true};
  static std::string text(Vek::U32 key) { return std::to_string(key); }
  static constexpr auto get = &ToyBox::wanted;
  static constexpr auto set = &ToyBox::wantedIs;
  static constexpr auto make = &ToyBox::newWanted;
  static constexpr Del del = &ToyBox::wantedDel;
  static constexpr DelAt delAt = &ToyBox::wantedDel;
  static constexpr auto delAll = &ToyBox::wantedDelAll;
  static constexpr auto notify = &ToyBox::wantedNotify;
  static constexpr auto count = &ToyBox::wantedCount;
  static constexpr auto iterator = &ToyBox::wantedIterator;
  static constexpr auto iteratorConst = &ToyBox::wantedIteratorConst;
};

struct Notes : Operations<ToyBox::VekNotes, Vek::String8, ToyPoint> {
  static constexpr char const* name = "notes";
  static constexpr Vek::AttributeId id = 261;
  static inline Vek::String8 const keys[] = {"b", "", "a longer key", "B"};
  static inline ToyPoint const values[] = {{}, {1, 2, "here"}};
  static std::string text(Vek::String8 const& key) { return std::string(key.view()); }
  static constexpr auto get = &ToyBox::notes;
  static constexpr auto set = &ToyBox::notesIs;
  static constexpr auto make = &ToyBox::newNotes;
  static constexpr Del del = &ToyBox::notesDel;
  static constexpr DelAt delAt = &ToyBox::notesDel;
  static constexpr auto delAll = &ToyBox::notesDelAll;
  static constexpr auto notify = &ToyBox::notesNotify;
  static constexpr auto count = &ToyBox::notesCount;
  static constexpr auto iterator = &ToyBox::notesIterator;
  static constexpr auto iteratorConst = &ToyBox::notesIteratorConst;
};

struct Vlans : Operations<ToyBox::VekVlans, Bridging::VlanIdOrNone, Kiln::Fapmask> {
  static constexpr char const* name = "vlans";
  static constexpr Vek::AttributeId id = 263;
  static inline Bridging::VlanIdOrNone const keys[] = {
      Bridging::VlanIdOrNone(7), {}, Bridging::VlanIdOrNone(4094), Bridging::VlanIdOrNone(8)};
  static inline Kiln::Fapmask const values[] = {{}, Kiln::Fapmask({0, 0, 0, 1})};
  static std::string text(Bridging::VlanIdOrNone key) { return std::to_string(key.value()); }
  static constexpr auto get = &ToyBox::vlans;
  static constexpr auto set = &ToyBox::vlansIs;
  static constexpr auto make = &ToyBox::newVlans;
  static constexpr Del del = &ToyBox::vlansDel;
  static constexpr DelAt delAt = &ToyBox::vlansDel;
  static constexpr auto delAll = &ToyBox::vlansDelAll;
  static constexpr auto notify = &ToyBox::vlansNotify;
  static constexpr auto count = &ToyBox::vlansCount;
  static constexpr auto iterator = &ToyBox::vlansIterator;
  static constexpr auto iteratorConst = &ToyBox::vlansIteratorConst;
};

}  // namespace Toys
