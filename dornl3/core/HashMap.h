// HashMap: an unordered collection of counted members, each with a key of its own. It is intrusive: a member carries
// its key, its value and its link, or is an entity that is its own value. Owner: the map holds a reference on each
// member. Thread: one. Re-entrancy: members may come and go while iterators stand: an iterator holds its member, and
// goes on with the member behind it in the order of the walk, whatever has happened meanwhile. The map outlives its
// iterators. Order: that of the bit-reversed hashes, see HashMapGeneric.
#pragma once

#include "dornl3/core/HashMapGeneric.h"

#include <string_view>
#include <type_traits>

namespace Vek {

/// The hash of a key: the key itself for numbers, for others their own.
template <class K>
[[nodiscard]] U32 keyHash(K const& key) noexcept {
  if constexpr (std::is_integral_v<K>) {
    return key;
  } else {
    return key.hash();
  }
}

/// Whether working out the hash of a key takes its time, so that an element keeps it.
template <class K>
inline constexpr bool hashIsDear = std::is_convertible_v<K, std::string_view>;

/// Whether a member keeps the hash of its key.
template <class M>
concept KeepsHash = requires(M const& member) {
  member.vekHash();
};

/// The hash of a member's key.
template <class K, class M>
[[nodiscard]] U32 memberHash(M const& member) noexcept {
  if constexpr (KeepsHash<M>) {
    return member.vekHash();
  } else {
    return keyHash<K>(member.key());
  }
}

/// The operations on members of type M with keys of type K. A member offers key() and vekLink(), and vekHash() where
/// it keeps the hash of its key.
template <class M, class K>
class HashMapVTable final : public HashMapVTableGeneric {
 public:
  HashMapVTable() noexcept : HashMapVTableGeneric(countsWrites()) {}

  U32 hash(PtrInterface const* member) const override { return bitReverse(memberHash<K>(typed(member))); }

  bool keyEquals(void const* key, PtrInterface const* member) const override {
    return *static_cast<K const*>(key) == typed(member).key();
  }

  bool keyLessThan(void const* key, PtrInterface const* member, PtrInterface const* other) const override {
    if (other != nullptr) return typed(other).key() < typed(member).key();
    return key == nullptr || *static_cast<K const*>(key) < typed(member).key();
  }

  void setNext(PtrInterface* member, PtrInterface* next) const override {
    auto& m = static_cast<M&>(*member);
    m.vekLink().ptrAssign(next);
    if constexpr (countsWrites()) m.vekWriteCountInc();
  }

 private:
  static constexpr bool countsWrites() noexcept {
    return requires(M & member) { member.vekWriteCountInc(); };
  }
  static M const& typed(PtrInterface const* member) noexcept { return static_cast<M const&>(*member); }
};

/// A member that is a key and a value: the value may be replaced in place, the key never changes.
template <class K, class V>
class HashElement : public PtrInterface {
 public:
  HashElement(K key, V value) : key_(std::move(key)), value_(std::move(value)) {
    if constexpr (hashIsDear<K>) hash_ = keyHash(key_);
  }

  [[nodiscard]] K const& key() const noexcept { return key_; }
  [[nodiscard]] V const& value() const noexcept { return value_; }
  void valueIs(V value) { value_ = std::move(value); }

  [[nodiscard]] U32 vekHash() const noexcept requires hashIsDear<K> { return hash_; }
  [[nodiscard]] HashLink& vekLink() noexcept { return link_; }
  static constexpr auto vekLinkMember() noexcept { return &HashElement::link_; }

 private:
  struct Nothing {};

  K const key_;
  V value_;
  [[no_unique_address]] std::conditional_t<hashIsDear<K>, U32, Nothing> hash_;
  HashLink link_;
};

template <class M, class K, class V>
class HashMap : public HashMapGeneric {
 public:
  using Member = M;
  using Key = K;
  using Value = V;
  class IteratorConst;
  class Iterator;

  static constexpr U32 initialBits = 4;

  HashMap() : HashMapGeneric(initialBits, vekVTable(), linkOffset()) {}
  ~HashMap() { emptyAllBuckets(); }

  /// The member with that key, or null.
  [[nodiscard]] M* operator[](K const& key) const noexcept {
    U32 const hash = keyHash<K>(key);
    M* at = typed(head(hash));
    while (at != nullptr && !isAt(*at, key, hash)) at = typed(at->vekLink().ptr());
    return at;
  }

  /// Enters a member whose key is not present.
  void newMember(Ptr<M> const& member) {
    K const& key = member->key();
    enter<Operations>(member, &key);
  }

  /// Takes out a member that is in the map.
  void deleteMember(Ptr<M> const& member) { takeOut<Operations>(member); }

  /// Calls at each member from the place of a key on, or from the first for null, until `call` says no: a walk that
  /// needs little code of its own for each map. Members may come and go meanwhile.
  void walk(K const* from, MemberCall const& call) const {
    walkG(from, from == nullptr ? 0 : bitReverse(keyHash<K>(*from)), call);
  }

  /// The operations on this map's members; one object in the whole process, never freed.
  static HashMapVTableGeneric const& vekVTable() {
    static auto const* const vekVTable_ = new Operations;
    return *vekVTable_;
  }

 private:
  using Operations = HashMapVTable<M, K>;

  // The first member of the next bucket that is not empty, behind the bucket of a member.
  PtrInterface* findNextBucketBehind(M const& member, int* bucket) const noexcept {
    if constexpr (hashIsDear<K> && !KeepsHash<M>) {
      return findNextBucket(bucket);
    } else {
      return findNextBucket(memberHash<K>(member), bucket);
    }
  }
  static M* typed(PtrInterface* member) noexcept { return static_cast<M*>(member); }
  static bool isAt(M const& member, K const& key, U32 hash) noexcept {
    if constexpr (KeepsHash<M>) {
      if (member.vekHash() != hash) return false;
    }
    return member.key() == key;
  }
  // A pointer to a data member is the member's offset in the ABI of all our platforms.
  static std::size_t linkOffset() noexcept {
    return static_cast<std::size_t>(std::bit_cast<std::ptrdiff_t>(M::vekLinkMember()));
  }
};

template <class M, class K, class V>
class HashMap<M, K, V>::IteratorConst {
 public:
  IteratorConst() noexcept = default;
  /// Opens at the first member. A null map gives an empty position.
  explicit IteratorConst(HashMap const* map) : map_(map) {
    if (map_ == nullptr) return;
    int bucket = none;
    current_ = typed(map_->findNextG(nullptr, &bucket));
    if (!current_) return;
    bucket_ = bucket;
    version_ = map_->version();
  }
  /// Opens at a key: at its member, or else at the first behind its place.
  IteratorConst(HashMap const* map, K const& key) : map_(map) {
    if (map_ == nullptr) return;
    int bucket = none;
    current_ = typed(map_->startAtHash(&key, bitReverse(keyHash<K>(key)), &bucket));
    bucket_ = bucket;
    if (current_) version_ = map_->version();
  }

  explicit operator bool() const noexcept { return static_cast<bool>(current_); }
  [[nodiscard]] M const* ptr() const noexcept { return current_.ptr(); }
  M const& operator*() const noexcept { return *current_; }
  M const* operator->() const noexcept { return current_.ptr(); }

  /// Goes on to the member behind the current one, which there is, in the map or no longer.
  void advance() {
    int bucket = bucket_;  // a copy has an address, so that the iterator need not: it stays in registers
    PtrInterface* next = nullptr;
    if (version_ == map_->version()) {
      next = current_->vekLink().ptr();
      if (next == nullptr) next = map_->findNextBucketBehind(*current_, &bucket);
    } else {
      next = map_->findNextG(current_.ptr(), &bucket);
      version_ = map_->version();
    }
    bucket_ = bucket;
    current_ = Ptr<M>(typed(next));  // the last word: a member that dies here may change the map
  }
  IteratorConst& operator++() {
    advance();
    return *this;
  }

  /// The bucket in which the member stood when the position was last fixed; -1 for none.
  [[nodiscard]] int bucket() const noexcept { return bucket_; }

 protected:
  static constexpr int none = -1;
  U32 version_ = 0;
  int bucket_ = none;
  HashMap const* map_ = nullptr;
  Ptr<M> current_;
};

/// The same, for those who may change the members.
template <class M, class K, class V>
class HashMap<M, K, V>::Iterator : public IteratorConst {
 public:
  using IteratorConst::IteratorConst;

  [[nodiscard]] M* ptr() const noexcept { return this->current_.ptr(); }
  M& operator*() const noexcept { return *this->current_; }
  M* operator->() const noexcept { return this->current_.ptr(); }
};

}  // namespace Vek
