// MapKinds: the maps that the laws of collections are tried on, each with its keys, its members, and the order in which
// it promises to walk.
#pragma once

#include "dornl3/core/HashMap.h"
#include "dornl3/core/RbTreeMap.h"
#include "dornl3/core/String8.h"

#include <functional>
#include <string>
#include <utility>

/// A key whose hash tells little: a third of all keys share each of three buckets.
struct CoarseKey {
  Vek::U32 number = 0;
  [[nodiscard]] Vek::U32 hash() const noexcept { return number % 3; }
  auto operator<=>(CoarseKey const&) const noexcept = default;
};

/// The key of that number.
template <class K>
K keyNumber(Vek::U32 number) {
  if constexpr (std::is_same_v<K, Vek::String8>) {
    return Vek::String8(std::string_view("key" + std::to_string(number)));
  } else {
    return K{number};
  }
}

/// A member in the manner of a child entity: it is its own value, gives its key by value, and counts its writes.
class ChildLike : public Vek::PtrInterface {
 public:
  ChildLike(Vek::String8 name, Vek::U32 value) : name_(std::move(name)), value_(value) {}
  [[nodiscard]] Vek::U32 value() const noexcept { return value_; }
  [[nodiscard]] Vek::U32 writeCount() const noexcept { return writeCount_; }

  [[nodiscard]] Vek::String8 key() const { return name_; }
  [[nodiscard]] Vek::HashLink& vekLink() noexcept { return link_; }
  static constexpr auto vekLinkMember() noexcept { return &ChildLike::link_; }
  void vekWriteCountInc() noexcept { ++writeCount_; }

 private:
  Vek::String8 name_;
  Vek::U32 value_;
  Vek::U32 writeCount_ = 0;
  Vek::HashLink link_;
};

/// A hashed map with keys of type K.
template <class K, class M = Vek::HashElement<K, Vek::U32>>
struct Hashed {
  using Key = K;
  using Member = M;
  using Map = Vek::HashMap<M, K, Vek::U32>;
  static constexpr bool replaces = false;
  static constexpr bool staysAtTheEnd = false;  // an iterator there must not be advanced

  static K key(Member const& member) { return member.key(); }
  /// Members are walked by rising rank.
  static auto rank(K const& key) { return std::pair(Vek::bitReverse(Vek::keyHash<K>(key)), key); }
  static void verify(Map const& map) {
    map.verify();
    if (map.count() > (Vek::U64{1} << map.bits())) throw std::logic_error("more members than buckets");
  }
};

/// An ordered map with keys of type K.
template <class K>
struct Ordered {
  using Key = K;
  using Member = Vek::RbElement<K, Vek::U32>;
  using Map = Vek::RbTreeMap<Member, K, Vek::U32>;
  static constexpr bool replaces = true;
  static constexpr bool staysAtTheEnd = true;

  static K key(Member const& member) { return member.key(); }
  static K rank(K const& key) { return key; }
  static void verify(Map const& map) {
    if ((Vek::U64{1} << (map.verify() / 2)) > map.count() + 1) throw std::logic_error("too deep for its size");
  }
};

template <class Map>
void enter(Map& map, typename Map::Key const& key, Vek::U32 value = 0) {
  map.newMember(Vek::make<typename Map::Member>(key, value));
}

template <class Map>
void takeOut(Map& map, typename Map::Key const& key) {
  map.deleteMember(Vek::Ptr<typename Map::Member>(map[key]));
}

/// A member that calls back when it goes.
template <class Element>
struct Dying : Element {
  using Element::Element;
  ~Dying() override {
    if (atEnd) atEnd();
  }
  std::function<void()> atEnd;
};
