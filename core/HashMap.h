// HashMap: an unordered collection of counted members, each with a key of its own. It is intrusive: a member carries its
// key, its value and its link, or is an entity that is its own value.
// Owner: the map holds a reference on each member. Thread: one.
// Re-entrancy: members may come and go while iterators stand: an iterator holds its member, and goes on with the member
// behind it in the order of the walk, whatever has happened meanwhile. The map outlives its iterators.
// Order: that of the bit-reversed hashes, see HashMapGeneric.
#pragma once

#include "core/HashMapGeneric.h"

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

/// The operations on members of type M with keys of type K. A member offers vekKey() and vekLink().
template <class M, class K>
class HashMapVTable final : public HashMapVTableGeneric {
 public:
  U32 hash(PtrInterface const* member) const override { return bitReverse(keyHash<K>(typed(member).vekKey())); }

  bool keyEquals(void const* key, PtrInterface const* member) const override {
    return *static_cast<K const*>(key) == typed(member).vekKey();
  }

  bool keyLessThan(void const* key, PtrInterface const* member, PtrInterface const* other) const override {
    if (other != nullptr) return typed(other).vekKey() < typed(member).vekKey();
    return key == nullptr || *static_cast<K const*>(key) < typed(member).vekKey();
  }

  void setNext(PtrInterface* member, PtrInterface* next) const override {
    auto& m = static_cast<M&>(*member);
    m.vekLink().ptrAssign(next);
    if constexpr (requires { m.vekWriteCountInc(); }) m.vekWriteCountInc();
  }

 private:
  static M const& typed(PtrInterface const* member) noexcept { return static_cast<M const&>(*member); }
};

/// A member that is a key and a value: the value may be replaced in place, the key never changes.
template <class K, class V>
class HashElement : public PtrInterface {
 public:
  HashElement(K key, V value) : key_(std::move(key)), value_(std::move(value)) {}

  [[nodiscard]] K const& key() const noexcept { return key_; }
  [[nodiscard]] V const& value() const noexcept { return value_; }
  void valueIs(V value) { value_ = std::move(value); }

  [[nodiscard]] K const& vekKey() const noexcept { return key_; }
  [[nodiscard]] HashLink& vekLink() noexcept { return link_; }
  static constexpr auto vekLinkMember() noexcept { return &HashElement::link_; }

 private:
  K const key_;
  V value_;
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
    for (PtrInterface* at = head(keyHash<K>(key)); at != nullptr; at = static_cast<M*>(at)->vekLink().ptr()) {
      if (static_cast<M*>(at)->vekKey() == key) return static_cast<M*>(at);
    }
    return nullptr;
  }

  /// Enters a member whose key is not present.
  void newMember(Ptr<M> const& member) {
    K const& key = member->vekKey();
    newMemberG(member, &key);
  }

  /// The operations on this map's members; one object in the whole process, never freed.
  static HashMapVTableGeneric const& vekVTable() {
    static auto const* const vekVTable_ = new HashMapVTable<M, K>;
    return *vekVTable_;
  }

 private:
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
    current_ = typed(map_->findNextG(nullptr, &bucket_));
    if (current_) {
      version_ = map_->version();
    } else {
      bucket_ = none;
    }
  }
  /// Opens at a key: at its member, or else at the first behind its place.
  IteratorConst(HashMap const* map, K const& key) : map_(map) {
    if (map_ == nullptr) return;
    current_ = typed(map_->startAtHash(&key, bitReverse(keyHash<K>(key)), &bucket_));
    if (bucket_ < static_cast<int>(U32{1} << map_->bits())) version_ = map_->version();
  }

  explicit operator bool() const noexcept { return static_cast<bool>(current_); }
  [[nodiscard]] M const* ptr() const noexcept { return current_.ptr(); }
  M const& operator*() const noexcept { return *current_; }
  M const* operator->() const noexcept { return current_.ptr(); }

  /// Goes on to the member behind the current one, which there is, in the map or no longer.
  void advance() {
    if (version_ == map_->version()) {
      PtrInterface* const next = current_->vekLink().ptr();
      current_.ptrAssign(typed(next != nullptr ? next : map_->findNextBucket(&bucket_)));
    } else {
      current_.ptrAssign(typed(map_->findNextG(current_.ptr(), &bucket_)));
      version_ = map_->version();
    }
  }
  IteratorConst& operator++() {
    advance();
    return *this;
  }

  /// The bucket in which the member stood when the position was last fixed; -1 for none.
  [[nodiscard]] int bucket() const noexcept { return bucket_; }

 protected:
  static constexpr int none = -1;
  static M* typed(PtrInterface* member) noexcept { return static_cast<M*>(member); }

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
