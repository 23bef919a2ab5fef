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
// Layout: the head of bucket b lies at the index whose low bits are those of the hash, that is, of b reversed: a look-up
// needs no reversal, and a walk steps through the array by an increment whose carry runs to the right.
#pragma once

#include "core/BitReverse.h"
#include "core/Ptr.h"

#include <bit>
#include <memory>

namespace Vek {

/// The link of a chain: each member holds the next.
using HashLink = Ptr<PtrInterface>;

/// What a table asks about its members.
class [[gnu::visibility("default")]] HashMapVTableGeneric {
 public:
  HashMapVTableGeneric() noexcept = default;
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

 protected:
  ~HashMapVTableGeneric() = default;
};

class [[gnu::visibility("default")]] HashMapGeneric {
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
  void newMemberG(Ptr<PtrInterface> const& member, void const* key);

  /// Takes out a member that is in the table.
  void deleteMember(Ptr<PtrInterface> const& member);

  /// The member behind `member`, which may have left the table, or the first for null; null at the end. `bucket` becomes
  /// the one where it stands.
  [[nodiscard]] PtrInterface* findNextG(PtrInterface const* member, int* bucket) const;

  /// Moves `bucket` on to the next one that is not empty, and gives its first member; null at the end.
  [[nodiscard]] PtrInterface* findNextBucket(int* bucket) const noexcept {
    int const size = static_cast<int>(mask() + 1);
    if (++*bucket >= size) return nullptr;
    for (U32 index = indexOf(*bucket);; index = nextIndex(index)) {
      if (PtrInterface* const found = buckets_[index].ptr()) {
        // A walk asks for the members of the next buckets soon.
        __builtin_prefetch(buckets_[nextIndex(index)].ptr());
        return found;
      }
      if (++*bucket == size) return nullptr;
    }
  }

  /// The first member at or behind the place of a key, or null. `bucket` becomes the one where it stands, or a number
  /// not below 1 << bits().
  [[nodiscard]] PtrInterface* startAtHash(void const* key, U32 reversedHash, int* bucket) const;

  /// Asserts order, places and counts; for tests.
  void verify() const;

 protected:
  /// An empty table of 1 << initialBits buckets.
  HashMapGeneric(U32 initialBits, HashMapVTableGeneric const& vtable, std::size_t linkOffset);

  /// The head of the chain of keys with that hash (not reversed).
  [[nodiscard]] PtrInterface* head(U32 hash) const noexcept { return buckets_[hash & mask()].ptr(); }

 private:
  [[nodiscard]] U32 mask() const noexcept { return (U32{1} << bits_) - 1; }
  [[nodiscard]] U32 indexOf(int bucket) const noexcept {
    return static_cast<U32>(U64{bitReverse(static_cast<U32>(bucket))} >> (32 - bits_));
  }
  // The index of the bucket behind the one at `index`; of the first, behind the last.
  [[nodiscard]] U32 nextIndex(U32 index) const noexcept {
    if (bits_ == 0) return 0;
    auto const ones = static_cast<U32>(std::countl_one(index << (32 - bits_)));
    U32 const carry = ones < bits_ ? U32{1} << (bits_ - 1 - ones) : 0;
    return carry == 0 ? 0 : (index & (carry - 1)) | carry;
  }
  [[nodiscard]] HashLink const& link(PtrInterface const& member) const noexcept {
    return *reinterpret_cast<HashLink const*>(reinterpret_cast<unsigned char const*>(&member) + linkOffset_);
  }
  [[nodiscard]] PtrInterface* behind(HashLink const& head, PtrInterface const& member, U32 reversedHash) const;
  void grow();

  U32 version_ = 0;
  U32 count_ = 0;
  HashMapVTableGeneric const* vtable_;
  U8 bits_;
  unsigned short linkOffset_;
  std::unique_ptr<HashLink[]> buckets_;
};

}  // namespace Vek
