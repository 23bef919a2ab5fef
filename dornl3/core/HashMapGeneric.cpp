#include "dornl3/core/HashMapGeneric.h"

#include "dornl3/core/Assertion.h"

namespace Vek {

namespace {

constexpr U32 maskOf(U32 bits) noexcept { return (U32{1} << bits) - 1; }

}  // namespace

HashMapGeneric::HashMapGeneric(U32 initialBits, HashMapVTableGeneric const& vtable, std::size_t linkOffset)
    : vtable_(&vtable),
      bits_(static_cast<U8>(initialBits)),
      linkOffset_(static_cast<unsigned short>(linkOffset)),
      mask_(maskOf(initialBits)),
      buckets_(std::make_unique<HashLink[]>(std::size_t{1} << initialBits)) {}

HashMapGeneric::~HashMapGeneric() = default;

// Each member leaves by itself: a chain of any length needs no recursion, and a dying member finds the table in order.
void HashMapGeneric::emptyAllBuckets() noexcept {
  for (U32 index = 0; index <= mask_; ++index) {
    while (buckets_[index]) {
      HashLink const member = std::move(buckets_[index]);
      buckets_[index] = std::move(link(*member));
      vtable_->setNext(member.ptr(), nullptr);
      --count_;
      ++version_;
    }
  }
}

// Each bucket's chain is dealt out to two, in its order: nothing is sorted anew. Which of the two is no branch, since
// nobody could guess it.
void HashMapGeneric::grow() {
  U32 const oldSize = mask_ + 1;
  U32 const nextBit = U32{0x80000000} >> bits_;
  auto larger = std::make_unique<HashLink[]>(std::size_t{2} * oldSize);
  for (U32 index = 0; index < oldSize; ++index) {
    __builtin_prefetch(buckets_[(index + 16) & mask_].ptr());
    if (mask_ >= farWalk) prefetchBehind(buckets_[(index + 8) & mask_].ptr());
    HashLink* ends[2] = {&larger[index], &larger[index + oldSize]};
    HashLink rest = std::move(buckets_[index]);
    while (rest) {
      PtrInterface& member = *rest;
      bool const moves = (vtable_->hash(&member) & nextBit) != 0;
      HashLink behind = std::move(link(member));
      *ends[moves] = std::move(rest);
      ends[moves] = &link(member);
      rest = std::move(behind);
    }
    bool const cut = vtable_->linksCount() && larger[index] && larger[index + oldSize];
    if (cut) vtable_->setNext(&memberOf(*ends[0]), nullptr);
  }
  buckets_ = std::move(larger);
  ++bits_;
  mask_ = maskOf(bits_);
}

void HashMapGeneric::absent() { assertionFailed("the member is in this table", "HashMapGeneric", __LINE__); }

PtrInterface* HashMapGeneric::findNextBucket(int* bucket) const noexcept {
  if (*bucket >= static_cast<int>(mask_)) {
    *bucket = static_cast<int>(mask_ + 1);
    return nullptr;
  }
  if (*bucket >= 0) return findNextBucket(indexOf(*bucket), bucket);
  *bucket = 0;
  PtrInterface* const first = buckets_[0].ptr();
  return first != nullptr ? first : findNextBucket(0, bucket);
}

// Without a member it asks for anything that may be read: whether a bucket is empty is a branch nobody could guess.
void HashMapGeneric::prefetchBehind(PtrInterface const* member) const noexcept {
  auto const* const object = member != nullptr ? reinterpret_cast<unsigned char const*>(member)
                                               : reinterpret_cast<unsigned char const*>(buckets_.get());
  __builtin_prefetch(reinterpret_cast<HashLink const*>(object + linkOffset_)->ptr());
}

// The heads lie far apart, each in another page, and the members anywhere: the walk asks in good time for the head, for
// its member, and for the one behind that.
PtrInterface* HashMapGeneric::nextHeadFar(U32 index, int* bucket) const noexcept {
  U32 at = static_cast<U32>(*bucket);
  PtrInterface* found = nullptr;
  while (found == nullptr && at != mask_) {
    index = indexBehind(index, at++, 0);
    __builtin_prefetch(&buckets_[indexBehind(index, at, 5)]);
    __builtin_prefetch(buckets_[indexBehind(index, at, 4)].ptr());
    prefetchBehind(buckets_[indexBehind(index, at, 3)].ptr());
    found = buckets_[index].ptr();
  }
  *bucket = static_cast<int>(found == nullptr ? at + 1 : at);
  return found;
}

PtrInterface* HashMapGeneric::findNextG(PtrInterface const* member, int* bucket) const {
  if (member == nullptr) {
    int first = -1;
    PtrInterface* const found = findNextBucket(&first);
    if (bucket != nullptr) *bucket = first;
    return found;
  }
  U32 const reversedHash = vtable_->hash(member);
  *bucket = bucketOf(reversedHash);
  for (PtrInterface* at = headOf(reversedHash).ptr(); at != nullptr; at = next(*at)) {
    if (isBehind(*vtable_, at, reversedHash, nullptr, member)) return at;
  }
  return findNextBucket(bucket);
}

PtrInterface* HashMapGeneric::startAtHash(void const* key, U32 reversedHash, int* bucket) const {
  *bucket = bucketOf(reversedHash);
  for (PtrInterface* at = headOf(reversedHash).ptr(); at != nullptr; at = next(*at)) {
    if (isBehind(*vtable_, at, reversedHash, key, nullptr) || vtable_->keyEquals(key, at)) return at;
  }
  return findNextBucket(bucket);
}

void HashMapGeneric::verify() const {
  U32 found = 0;
  for (U32 index = 0; index <= mask_; ++index) {
    PtrInterface* before = nullptr;
    for (PtrInterface* at = buckets_[index].ptr(); at != nullptr; before = at, at = next(*at), ++found) {
      U32 const hash = vtable_->hash(at);
      bool const inPlace = indexOf(bucketOf(hash)) == index;
      bool const inOrder = before == nullptr || isBehind(*vtable_, at, vtable_->hash(before), nullptr, before);
      if (!inPlace || !inOrder) assertionFailed("a member is in its place", "HashMapGeneric", __LINE__);
    }
  }
  if (found != count_) assertionFailed("found == count", "HashMapGeneric", __LINE__);
}

void HashMapGeneric::walkG(void const* key, U32 reversedHash, MemberCall const& call) const {
  int bucket = -1;
  Ptr<PtrInterface> at = key == nullptr ? findNextG(nullptr, &bucket) : startAtHash(key, reversedHash, &bucket);
  U32 version = version_;
  while (at && call(*at)) {
    bool const unchanged = std::exchange(version, version_) == version_;
    PtrInterface* behind = unchanged ? next(*at) : findNextG(at.ptr(), &bucket);
    if (unchanged && behind == nullptr) behind = findNextBucket(&bucket);
    at = behind;
  }
}

}  // namespace Vek
