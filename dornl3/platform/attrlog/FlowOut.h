// FlowOut: what one stream adapter still owes its log, and where a walk over its entity stopped. Values are never
// copied into it: what is owed is read from the entity when it is written, so that a burst sends its last value.
// X::VekNboAttrLogSa::FlowOut adds a bit for each attribute, and the keys owed of each collection.
// Owner: its adapter. It knows the adapter by a raw pointer, since a counted one would keep both alive.
// Thread: the adapter's. It tells nobody of its changes.
#pragma once

#include "dornl3/core/HashMap.h"
#include "dornl3/platform/attrlog/ConnectDesc.h"
#include "dornl3/platform/attrlog/HeapCopy.h"
#include "dornl3/platform/attrlog/Out.h"

#include <cassert>

namespace Vek {

class StreamAdapter;

namespace NboAttrLog {

struct WalkTable;

class FlowOut : public PtrInterface {
 public:
  /// Attributes for which an abort marker is owed.
  class VekPendingAbort final : public HashElement<AttributeId, bool> {
   public:
    using Map = HashMap<VekPendingAbort, AttributeId, bool>;
    using HashElement::HashElement;
  };

  /// The start of a flow-out that owes nothing but what is marked in it.
  static constexpr AttributeId marksOnly = 0x7fffffff;

  static constexpr U8 keysOnlyBit = 0x04;
  static constexpr U8 yieldRequestedBit = 0x10;

  /// `isFull`: it brings the far side in step from the beginning.
  FlowOut(Ptr<Out> const& out, StreamAdapter* adapter, ConnectDesc const& desc, bool isFull,
          AttributeId startAttr) noexcept;
  ~FlowOut() override;

  /// Whether anything is owed: here, beside the attributes' bits and keys.
  [[nodiscard]] virtual bool hasDirtyAttributes() const;

  /// The attribute that the walk stands on.
  [[nodiscard]] AttributeId attrId() const noexcept { return attrId_; }
  virtual void attrIdIs(AttributeId attr) { attrId_ = attr; }

  /// The key at which the walk of a collection goes on; null when it starts at the beginning.
  [[nodiscard]] void* bookmark() const noexcept { return bookmark_.get(); }
  virtual void bookmarkIs(HeapCopy key) {
    bookmark_ = std::move(key);
    if (bookmark() != nullptr) iterAttr_ = attrId_;
  }
  /// How far a long text has been written; null where none is part-way out.
  [[nodiscard]] void* valueIter() const noexcept { return valueIter_.get(); }
  virtual void valueIterIs(HeapCopy iterator) {
    valueIter_ = std::move(iterator);
    if (valueIter() != nullptr) iterAttr_ = attrId_;
  }
  /// The attribute that the key or the place belongs to, while one stands: a walk that begins anew passes others first.
  [[nodiscard]] AttributeId iterAttr() const noexcept { return iterAttr_; }

  /// Told when a text is part-way out; nothing is decided by it.
  virtual void outstandingKeysIs(U32 count) { outstandingKeys_ = count; }
  [[nodiscard]] U32 outstandingKeys() const noexcept { return outstandingKeys_; }

  [[nodiscard]] U8 vekDataBits() const noexcept { return dataBits_; }
  virtual void vekDataBitsIs(U8 bits) { dataBits_ = bits; }
  [[nodiscard]] bool yieldRequested() const noexcept { return (dataBits_ & yieldRequestedBit) != 0; }
  [[nodiscard]] bool keysOnly() const noexcept { return (dataBits_ & keysOnlyBit) != 0; }
  /// Stops the walk: it comes back at the same attribute.
  void yieldRequestedIs(bool on) {
    vekDataBitsIs(static_cast<U8>(on ? dataBits_ | yieldRequestedBit : dataBits_ & ~yieldRequestedBit));
  }

  /// How many children the walk has passed that have no id yet, so that they stay marked.
  [[nodiscard]] U32 waiting() const noexcept { return waiting_; }
  void waitingIs(U32 count) noexcept { waiting_ = count; }

  [[nodiscard]] VekPendingAbort::Map const& pendingAbort() const noexcept { return pendingAbort_; }
  virtual void pendingAbortDel(AttributeId attr);
  virtual void pendingAbortIs(AttributeId attr, bool on);

  /// Owes these attributes from `start` on; the bits are fresh.
  void oweFrom(WalkTable const& table, AttributeId start) noexcept;
  /// Owes a collection again, from its beginning.
  void oweAgain(AttributeId attr) noexcept;
  /// Drops the key or the place in a text of the attribute that the walk stands on.
  void placeDel(WalkTable const& table);

  [[nodiscard]] StreamAdapter* streamAdapter() const noexcept { return adapter_; }
  [[nodiscard]] bool isFull() const noexcept { return isFull_; }
  void isFullIs(bool on) noexcept { isFull_ = on; }
  /// Whether the far side has been told that it is being brought in step.
  [[nodiscard]] bool isSyncSent() const noexcept { return isSyncSent_; }
  void isSyncSentIs(bool on) noexcept { isSyncSent_ = on; }
  /// Where the next visit of the walk begins.
  [[nodiscard]] AttributeId resume() const noexcept { return resume_; }
  void resumeIs(AttributeId attr) noexcept { resume_ = attr; }

  /// The bit of an attribute's slot: a scalar is owed, a collection has been walked.
  [[nodiscard]] bool slotBit(U32 slot) const noexcept { return (words_[slot / 32] >> (slot % 32) & 1) != 0; }
  void slotBitIs(U32 slot, bool on) noexcept {
    U32 const bit = U32{1} << (slot % 32);
    words_[slot / 32] = on ? words_[slot / 32] | bit : words_[slot / 32] & ~bit;
  }

 protected:
  /// The bits are the derived class's; it hands them over when it is made.
  void wordsAre(U32* words) noexcept { words_ = words; }

 private:
  AttributeId attrId_;
  AttributeId iterAttr_ = 0;
  U8 dataBits_ = 0;
  bool isFull_;
  bool isSyncSent_ = false;
  AttributeId resume_ = 0;
  U32 outstandingKeys_ = 0;
  U32 waiting_ = 0;
  WalkTable const* table_ = nullptr;
  U32* words_ = nullptr;
  StreamAdapter* adapter_;
  HeapCopy bookmark_;
  HeapCopy valueIter_;
  VekPendingAbort::Map pendingAbort_;
};

/// Keeps a key as the place where a walk goes on. None stands.
template <class K>
void vekFlowOutBookmarkEnq(FlowOut& flowOut, K const& key) {
  [[maybe_unused]] FlowOut const* const rsc = &flowOut;
  assert(!rsc->bookmark());
  flowOut.bookmarkIs(HeapCopy::of(key));
}

/// Takes the key out; the default where none stands.
template <class K>
[[nodiscard]] K vekFlowOutBookmarkDeq(FlowOut& flowOut) {
  if (flowOut.bookmark() == nullptr) return K{};
  K const key = *static_cast<K const*>(flowOut.bookmark());
  flowOut.bookmarkIs({});
  return key;
}

/// Keeps the place in a text that is part-way out. None stands.
template <class I>
void vekFlowOutValueEnq(FlowOut& flowOut, I const& iterator) {
  [[maybe_unused]] FlowOut const* const rsc = &flowOut;
  assert(!rsc->valueIter());
  flowOut.valueIterIs(HeapCopy::of(iterator));
}

/// Takes it out; the start of the empty text where none stands.
template <class I>
[[nodiscard]] I vekFlowOutValueDeq(FlowOut& flowOut) {
  if (flowOut.valueIter() == nullptr) return I{};
  I const iterator = *static_cast<I const*>(flowOut.valueIter());
  flowOut.valueIterIs({});
  return iterator;
}

}  // namespace NboAttrLog

}  // namespace Vek
