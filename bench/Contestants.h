// Contestants: our collections and those that they are measured against, behind one interface. Each makes its members
// itself, on our counted heap, so that what differs is the collections; the standard's also as everybody has them.
#pragma once

#define BOOST_DISABLE_ASSERTS  // in release builds its users have none
#include "dornl3/core/CountedHeap.h"
#include "dornl3/core/HashMap.h"
#include "dornl3/core/RbTreeMap.h"
#include "dornl3/core/String8.h"

#include <boost/intrusive/set.hpp>
#include <boost/intrusive/unordered_set.hpp>

#include <map>
#include <memory>
#include <unordered_map>

namespace contest {

using Vek::String8;
using Vek::U32;
using Vek::U64;

constexpr U32 valueOfAll = 1;  // what every member holds

template <class T>
struct CountedAllocator {
  using value_type = T;
  CountedAllocator() noexcept = default;
  template <class U>
  CountedAllocator(CountedAllocator<U> const&) noexcept {}
  T* allocate(std::size_t n) { return static_cast<T*>(Vek::CountedHeap::allocate(n * sizeof(T))); }
  void deallocate(T* block, std::size_t n) noexcept { Vek::CountedHeap::release(block, n * sizeof(T)); }
  bool operator==(CountedAllocator const&) const noexcept = default;
};

/// That of our own tables. Where the keys are texts, the standard's table keeps the hash in each node.
template <class K>
struct Hash {
  std::size_t operator()(K const& key) const noexcept(std::is_integral_v<K>) { return Vek::keyHash(key); }
};

// --- ours

template <class Map, class K>
struct Ours {
  static constexpr char const* name = "ours";
  void insert(K const& key) {
    // A hashed map must be asked first; an ordered one looks for the place itself.
    if constexpr (std::is_base_of_v<Vek::HashMapGeneric, Map>) {
      if (map[key] != nullptr) return;
    }
    map.newMember(Vek::make<typename Map::Member>(key, valueOfAll));
  }
  U32 find(K const& key) const {
    auto const* const member = map[key];
    return member == nullptr ? 0 : member->value();
  }
  U64 sum() const {
    U64 total = 0;
    for (typename Map::IteratorConst it(&map); it; ++it) total += it->value();
    return total;
  }
  void erase(K const& key) {
    Vek::Ptr<typename Map::Member> const member = map[key];
    map.deleteMember(member);
  }
  Map map;
};

template <class K>
using OursHashed = Ours<Vek::HashMap<Vek::HashElement<K, U32>, K, U32>, K>;
template <class K>
using OursOrdered = Ours<Vek::RbTreeMap<Vek::RbElement<K, U32>, K, U32>, K>;

// --- the standard's

template <class Map, class K>
struct Std {
  static constexpr char const* name =
      std::is_same_v<typename Map::allocator_type, std::allocator<typename Map::value_type>> ? "std" : "std, our heap";
  void insert(K const& key) { map.emplace(key, valueOfAll); }
  U32 find(K const& key) const {
    auto const place = map.find(key);
    return place == map.end() ? 0 : place->second;
  }
  U64 sum() const {
    U64 total = 0;
    for (auto const& [key, value] : map) total += value;
    return total;
  }
  void erase(K const& key) { map.erase(key); }
  Map map;
};

template <class K, template <class> class Allocator>
using StdHashed = Std<std::unordered_map<K, U32, Hash<K>, std::equal_to<K>, Allocator<std::pair<K const, U32>>>, K>;
template <class K, template <class> class Allocator>
using StdOrdered = Std<std::map<K, U32, std::less<K>, Allocator<std::pair<K const, U32>>>, K>;

// --- boost's

template <class K, class Hook>
struct BoostMember : Hook {
  explicit BoostMember(K const& k) : key(k) {}
  static void* operator new(std::size_t size) { return Vek::CountedHeap::allocate(size); }
  static void operator delete(void* block, std::size_t size) { Vek::CountedHeap::release(block, size); }
  K const key;
  U32 value = valueOfAll;
};

template <class Member, class K>
struct KeyOf {
  using type = K;
  K const& operator()(Member const& member) const noexcept { return member.key; }
};

template <class Set, class K>
struct Boost {
  using Member = typename Set::value_type;

  explicit Boost(auto const&... arguments) : set(arguments...) {}
  Boost(Boost const&) = delete;
  Boost& operator=(Boost const&) = delete;
  ~Boost() { set.clear_and_dispose(std::default_delete<Member>{}); }

  U32 find(K const& key) const {
    auto const place = set.find(key);
    return place == set.end() ? 0 : place->value;
  }
  U64 sum() const {
    U64 total = 0;
    for (Member const& member : set) total += member.value;
    return total;
  }
  void erase(K const& key) { set.erase_and_dispose(key, std::default_delete<Member>{}); }

  Set set;
};

namespace bi = boost::intrusive;

template <class K>
using SetMember = BoostMember<K, bi::set_base_hook<>>;
template <class K>
using BoostSet = bi::set<SetMember<K>, bi::key_of_value<KeyOf<SetMember<K>, K>>>;

template <class K>
struct BoostOrdered : Boost<BoostSet<K>, K> {
  static constexpr char const* name = "boost";
  void insert(K const& key) {
    typename BoostSet<K>::insert_commit_data place;
    if (this->set.insert_check(key, place).second) this->set.insert_commit(*new SetMember<K>(key), place);
  }
};

// Texts keep their hash in the hook, numbers are their own.
template <class K>
using HashedMember = BoostMember<K, bi::unordered_set_base_hook<bi::store_hash<!std::is_integral_v<K>>>>;
template <class K, bool PowersOfTwo>
using BoostUnorderedSet = bi::unordered_set<HashedMember<K>, bi::key_of_value<KeyOf<HashedMember<K>, K>>,
                                            bi::hash<Hash<K>>, bi::power_2_buckets<PowersOfTwo>>;

// The table leaves its buckets to the user: here they grow as ours do.
template <class K, bool PowersOfTwo>
struct BoostBuckets {
  using Set = BoostUnorderedSet<K, PowersOfTwo>;
  static std::size_t size(std::size_t wanted) {
    return PowersOfTwo ? wanted : Set::suggested_upper_bucket_count(wanted);
  }
  std::size_t count = size(16);
  std::unique_ptr<typename Set::bucket_type[]> buckets = std::make_unique<typename Set::bucket_type[]>(count);
  typename Set::bucket_traits traits() const { return {buckets.get(), count}; }
};

template <class K, bool PowersOfTwo>
struct BoostHashed : private BoostBuckets<K, PowersOfTwo>, Boost<BoostUnorderedSet<K, PowersOfTwo>, K> {
  using Buckets = BoostBuckets<K, PowersOfTwo>;
  using Set = typename Buckets::Set;
  static constexpr char const* name = PowersOfTwo ? "boost, 2^n" : "boost";

  BoostHashed() : Boost<Set, K>(Buckets::traits()) {}
  void insert(K const& key) {
    typename Set::insert_commit_data place;
    if (!this->set.insert_check(key, place).second) return;
    this->set.insert_commit(*new HashedMember<K>(key), place);
    if (this->set.size() > this->count) grow();
  }

 private:
  void grow() {
    std::size_t const larger = Buckets::size(2 * this->count);
    auto fresh = std::make_unique<typename Set::bucket_type[]>(larger);
    this->set.rehash({fresh.get(), larger});
    this->buckets = std::move(fresh);
    this->count = larger;
  }
};

}  // namespace contest
