// HashMapGeneric: the half of a hashed collection that does not depend on what it holds: growth, insertion, removal,
// and finding a place again.
// Owner: the table holds a reference on each member, through the bucket array and the members' links. A member is in at
// most one table at a time. Thread: one. Re-entrancy: it calls nobody but the key operations; a member that dies may do
// as it likes.
//
// Order: buckets by rising number, in each its chain. The bucket of a key is the top `bits` bits of its bit-reversed
// hash, a chain is sorted by reversed hash and then by key: so the order of a walk depends on the keys alone, whatever
// the size and history of the table, and doubling the table splits each bucket into two neighbours.
//
// Layout: the head of bucket b lies at the index that is b reversed, that is, the low bits of the hash: a look-up needs
// no reversal, and a walk steps through the array by an increment whose carry runs to the right.
#pragma once

#include "dornl3/core/BitReverse.h"
#include "dornl3/core/MemberCall.h"
#include "dornl3/core/Ptr.h"

#include <bit>
#include <memory>

namespace Vek {

/// The link of a chain: each member holds the next.
using HashLink = Ptr<PtrInterface>;

/// What a table asks about its members.
class HashMapVTableGeneric {
 public:
  /// `linksCount`: setNext does more than to set the link.
  explicit HashMapVTableGeneric(bool linksCount) noexcept : linksCount_(linksCount) {}
  HashMapVTableGeneric(HashMapVTableGeneric const&) = delete;
  HashMapVTableGeneric& operator=(HashMapVTableGeneric const&) = delete;

  /// The reversed hash of the member's key.
  virtual U32 hash(PtrInterface const* member) const = 0;
  virtual bool keyEquals(void const* key, PtrInterface const* member) const = 0;
  /// With `other`: whether other's key is less than member's. Without, and without a key: true. Else whether the key is
  /// less than member's.
  virtual bool keyLessThan(void const* key, PtrInterface const* member, PtrInterface const* other) const = 0;
  /// Makes `next` the one behind `member`.
  virtual void setNext(PtrInterface* member, PtrInterface* next) const = 0;

  /// Whether a table that has set a link itself tells setNext all the same.
  [[nodiscard]] bool linksCount() const noexcept { return linksCount_; }

 protected:
  ~HashMapVTableGeneric() = default;

 private:
  bool linksCount_;
};

class HashMapGeneric {
 public:
  HashMapGeneric(HashMapGeneric const&) = delete;
  HashMapGeneric& operator=(HashMapGeneric const&) = delete;
  ~HashMapGeneric();

  /// Changes with each insertion and removal.
  [[nodiscard]] U32 version() const noexcept { return version_; }
  [[nodiscard]] U32 count() const noexcept { return count_; }
  /// The table has 1 << bits() buckets.
  [[nodiscard]] U32 bits() const noexcept { return bits_; }

  /// The number of the bucket in which a key of that reversed hash lies.
  [[nodiscard]] int bucketOf(U32 reversedHash) const noexcept {
    return static_cast<int>(U64{reversedHash} >> (32 - bits_));
  }

  /// Releases every member, one by one, and tells nobody.
  void emptyAllBuckets() noexcept;

  /// Enters a member whose key, at `key`, is not present. The table may grow; a table that cannot is left as it is.
  void newMemberG(Ptr<PtrInterface> const& member, void const* key) { enter<HashMapVTableGeneric>(member, key); }

  /// Takes out a member that is in the table.
  void deleteMember(Ptr<PtrInterface> const& member) { takeOut<HashMapVTableGeneric>(member); }

  /// The member behind `member`, which may have left the table, or the first for null; null at the end. `bucket`
  /// becomes the one where it stands.
  [[nodiscard]] PtrInterface* findNextG(PtrInterface const* member, int* bucket) const;

  /// Moves `bucket` on to the next one that is not empty, and gives its first member; null at the end.
  [[nodiscard]] PtrInterface* findNextBucket(int* bucket) const noexcept;

  /// The first member at or behind the place of a key, or null. `bucket` becomes the one where it stands, or a number
  /// not below 1 << bits().
  [[nodiscard]] PtrInterface* startAtHash(void const* key, U32 reversedHash, int* bucket) const;

  /// Calls at each member from the place of a key on, or from the first for null, until `call` says no. Members may
  /// come and go meanwhile.
  void walkG(void const* key, U32 reversedHash, MemberCall const& call) const;

  /// Asserts order, places and counts; for tests.
  void verify() const;

 protected:
  /// An empty table of 1 << initialBits buckets.
  HashMapGeneric(U32 initialBits, HashMapVTableGeneric const& vtable, std::size_t linkOffset);

  /// The head of the chain of keys with that hash (not reversed).
  [[nodiscard]] PtrInterface* head(U32 hash) const noexcept { return buckets_[hash & mask_].ptr(); }

  /// findNextBucket, for the bucket of keys with that hash (not reversed).
  [[nodiscard]] PtrInterface* findNextBucket(U32 hash, int* bucket) const noexcept {
    return mask_ < farWalk ? nextHead(hash & mask_, bucket) : nextHeadFar(hash & mask_, bucket);
  }

  // newMemberG and deleteMember, for those who know the class of the table's operations, which then are no virtual
  // calls.
  template <class Operations>
  void enter(Ptr<PtrInterface> const& member, void const* key);
  template <class Operations>
  void takeOut(Ptr<PtrInterface> const& member);

 private:
  // Tables from this mask on do not fit the caches, and a walk fetches far ahead what it will come to.
  static constexpr U32 farWalk = (U32{1} << 16) - 1;

  [[nodiscard]] U32 indexOf(int bucket) const noexcept {
    return static_cast<U32>(U64{bitReverse(static_cast<U32>(bucket))} >> (32 - bits_));
  }
  [[nodiscard]] HashLink& headOf(U32 reversedHash) const noexcept { return buckets_[bitReverse(reversedHash) & mask_]; }
  // The index of bucket `bucket + (1 << log2)`, from the index of `bucket`. Adding in the bucket's number flips its
  // bits from there up to the first that is clear; in the index the same bits stand in reverse order. Behind the last
  // bucket it comes to one near the first.
  [[nodiscard]] U32 indexBehind(U32 index, U32 bucket, U32 log2) const noexcept {
    U32 const wheel = mask_ >> log2;
    return index ^ wheel ^ (wheel >> 1 >> __builtin_ctz((bucket >> log2) + 1));
  }
  [[nodiscard]] PtrInterface* nextHead(U32 index, int* bucket) const noexcept {
    U32 at = static_cast<U32>(*bucket);
    PtrInterface* found = nullptr;
    while (found == nullptr && at != mask_) {
      index = indexBehind(index, at++, 0);
      __builtin_prefetch(buckets_[indexBehind(index, at, 2)].ptr());
      found = buckets_[index].ptr();
    }
    *bucket = static_cast<int>(found == nullptr ? at + 1 : at);
    return found;
  }
  [[nodiscard]] PtrInterface* nextHeadFar(U32 index, int* bucket) const noexcept;
  void prefetchBehind(PtrInterface const* member) const noexcept;

  [[nodiscard]] HashLink& link(PtrInterface& member) const noexcept {
    return *reinterpret_cast<HashLink*>(reinterpret_cast<unsigned char*>(&member) + linkOffset_);
  }
  [[nodiscard]] PtrInterface& memberOf(HashLink& link) const noexcept {
    return *reinterpret_cast<PtrInterface*>(reinterpret_cast<unsigned char*>(&link) - linkOffset_);
  }
  [[nodiscard]] PtrInterface* next(PtrInterface& member) const noexcept { return link(member).ptr(); }
  // Whether `member` stands behind the place of a key, or of other's key.
  template <class Operations>
  [[nodiscard]] static bool isBehind(Operations const& operations, PtrInterface const* member, U32 reversedHash,
                                     void const* key, PtrInterface const* other) {
    U32 const hash = operations.hash(member);
    return hash > reversedHash || (hash == reversedHash && operations.keyLessThan(key, member, other));
  }
  [[nodiscard]] bool isFull() const noexcept { return count_ > mask_ && bits_ < mostBits; }
  void grow();
  [[noreturn]] static void absent();

  static constexpr U8 mostBits = 30;

  U32 version_ = 0;
  U32 count_ = 0;
  HashMapVTableGeneric const* vtable_;
  U8 bits_;
  unsigned short linkOffset_;
  U32 mask_;  // (1 << bits_) - 1
  std::unique_ptr<HashLink[]> buckets_;
};

// Links are moved, not copied, so that the member behind is not touched, and then set to what they are, which counts.
template <class Operations>
void HashMapGeneric::enter(Ptr<PtrInterface> const& member, void const* key) {
  auto const& operations = static_cast<Operations const&>(*vtable_);
  if (isFull()) grow();
  U32 const reversedHash = operations.hash(member.ptr());
  HashLink* place = &headOf(reversedHash);
  PtrInterface* before = nullptr;
  while (PtrInterface* const at = place->ptr()) {
    if (isBehind(operations, at, reversedHash, key, nullptr)) break;
    before = at;
    place = &link(*at);
  }
  link(*member) = std::move(*place);
  *place = member;
  operations.setNext(member.ptr(), next(*member));
  if (before != nullptr) operations.setNext(before, member.ptr());
  ++count_;
  ++version_;
}

template <class Operations>
void HashMapGeneric::takeOut(Ptr<PtrInterface> const& member) {
  auto const& operations = static_cast<Operations const&>(*vtable_);
  HashLink* place = &headOf(operations.hash(member.ptr()));
  PtrInterface* before = nullptr;
  while (*place != member) {
    before = place->ptr();
    if (before == nullptr) absent();
    place = &link(*before);
  }
  HashLink const held = std::move(*place);
  *place = std::move(link(*held));
  operations.setNext(held.ptr(), nullptr);
  if (before != nullptr) operations.setNext(before, place->ptr());
  --count_;
  ++version_;
}

}  // namespace Vek
