#include "core/HashMapGeneric.h"

#include "core/Assertion.h"

namespace Vek {

namespace {

constexpr U32 mostBits = 30;

}  // namespace

HashMapGeneric::HashMapGeneric(U32 initialBits, HashMapVTableGeneric const& vtable, std::size_t linkOffset)
    : vtable_(&vtable),
      bits_(static_cast<U8>(initialBits)),
      linkOffset_(static_cast<unsigned short>(linkOffset)),
      buckets_(std::make_unique<HashLink[]>(std::size_t{1} << initialBits)) {}

HashMapGeneric::~HashMapGeneric() = default;

void HashMapGeneric::emptyAllBuckets() noexcept {
  for (U32 index = 0; index <= mask(); ++index) {
    HashLink member = std::move(buckets_[index]);
    while (member) {
      HashLink next = link(*member);
      vtable_->setNext(member.ptr(), nullptr);  // unlinked one by one: a chain of any length needs no recursion
      --count_;
      member = std::move(next);
    }
  }
  ++version_;
}

void HashMapGeneric::newMemberG(Ptr<PtrInterface> const& member, void const* key) {
  if (count_ > mask() && bits_ < mostBits) grow();
  U32 const reversedHash = vtable_->hash(member.ptr());
  HashLink& head = buckets_[indexOf(bucketOf(reversedHash))];
  PtrInterface* before = nullptr;
  for (PtrInterface* at = head.ptr(); at != nullptr; at = link(*at).ptr()) {
    U32 const hash = vtable_->hash(at);
    if (hash > reversedHash || (hash == reversedHash && vtable_->keyLessThan(key, at, nullptr))) break;
    before = at;
  }
  if (before == nullptr) {
    vtable_->setNext(member.ptr(), head.ptr());
    head = member;
  } else {
    vtable_->setNext(member.ptr(), link(*before).ptr());
    vtable_->setNext(before, member.ptr());
  }
  ++count_;
  ++version_;
}

// Each chain begins with the members whose next bit of the reversed hash is 0: it is cut in two, nothing is sorted anew.
void HashMapGeneric::grow() {
  U32 const oldSize = mask() + 1;
  auto larger = std::make_unique<HashLink[]>(std::size_t{2} * oldSize);
  for (U32 index = 0; index < oldSize; ++index) {
    PtrInterface* lastStaying = nullptr;
    PtrInterface* at = buckets_[index].ptr();
    while (at != nullptr && (bitReverse(vtable_->hash(at)) & oldSize) == 0) {
      lastStaying = at;
      at = link(*at).ptr();
    }
    if (lastStaying == nullptr) {
      larger[index + oldSize] = std::move(buckets_[index]);
    } else {
      larger[index + oldSize] = at;
      larger[index] = std::move(buckets_[index]);
      if (at != nullptr) vtable_->setNext(lastStaying, nullptr);
    }
  }
  buckets_ = std::move(larger);
  ++bits_;
}

void HashMapGeneric::deleteMember(Ptr<PtrInterface> const& member) {
  Ptr<PtrInterface> const held = member;
  HashLink& head = buckets_[indexOf(bucketOf(vtable_->hash(held.ptr())))];
  PtrInterface* before = nullptr;
  PtrInterface* at = head.ptr();
  for (; at != nullptr && at != held.ptr(); at = link(*at).ptr()) before = at;
  if (at == nullptr) assertionFailed("the member is in this table", "HashMapGeneric", __LINE__);
  if (before == nullptr) {
    head = link(*held);
  } else {
    vtable_->setNext(before, link(*held).ptr());
  }
  vtable_->setNext(held.ptr(), nullptr);
  --count_;
  ++version_;
}

PtrInterface* HashMapGeneric::behind(HashLink const& head, PtrInterface const& member, U32 reversedHash) const {
  for (PtrInterface* at = head.ptr(); at != nullptr; at = link(*at).ptr()) {
    U32 const hash = vtable_->hash(at);
    if (hash > reversedHash || (hash == reversedHash && vtable_->keyLessThan(nullptr, at, &member))) return at;
  }
  return nullptr;
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
  PtrInterface* const found = behind(buckets_[indexOf(*bucket)], *member, reversedHash);
  return found != nullptr ? found : findNextBucket(bucket);
}

PtrInterface* HashMapGeneric::startAtHash(void const* key, U32 reversedHash, int* bucket) const {
  *bucket = bucketOf(reversedHash);
  for (PtrInterface* at = buckets_[indexOf(*bucket)].ptr(); at != nullptr; at = link(*at).ptr()) {
    U32 const hash = vtable_->hash(at);
    if (hash > reversedHash) return at;
    if (hash == reversedHash && (vtable_->keyEquals(key, at) || vtable_->keyLessThan(key, at, nullptr))) return at;
  }
  return findNextBucket(bucket);
}

void HashMapGeneric::verify() const {
  U32 found = 0;
  for (U32 index = 0; index <= mask(); ++index) {
    PtrInterface* before = nullptr;
    for (PtrInterface* at = buckets_[index].ptr(); at != nullptr; before = at, at = link(*at).ptr(), ++found) {
      U32 const hash = vtable_->hash(at);
      bool const inPlace = indexOf(bucketOf(hash)) == index;
      bool const inOrder = before == nullptr || vtable_->hash(before) < hash ||
                           (vtable_->hash(before) == hash && vtable_->keyLessThan(nullptr, at, before));
      if (!inPlace || !inOrder) assertionFailed("a member is in its place", "HashMapGeneric", __LINE__);
    }
  }
  if (found != count_) assertionFailed("found == count", "HashMapGeneric", __LINE__);
}

}  // namespace Vek
