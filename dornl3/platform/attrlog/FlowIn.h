// FlowIn: what comes in for one entity over several records: a transaction that was begun, or a text in pieces.
// Owner: the demuxer, by entity id. Thread: the demuxer's.
#pragma once

#include "dornl3/core/Ptr.h"
#include "dornl3/platform/attrlog/HeapCopy.h"

namespace Vek::NboAttrLog {

class FlowIn final : public PtrInterface {
 public:
  /// The attribute that opened it; 0 for none.
  [[nodiscard]] AttributeId aid() const noexcept { return aid_; }
  void aidIs(AttributeId attr) noexcept { aid_ = attr; }
  /// The partial text; null where there is none.
  [[nodiscard]] void* iter() const noexcept { return iter_.get(); }
  void iterIs(HeapCopy iterator) noexcept { iter_ = std::move(iterator); }
  /// Whether the end marker of that attribute has come.
  [[nodiscard]] bool handlingTransaction() const noexcept { return handlingTransaction_; }
  void handlingTransactionIs(bool on) noexcept { handlingTransaction_ = on; }
  /// Whether the attribute was changed here while its text came in: that was not sent.
  [[nodiscard]] bool hasLocalChange() const noexcept { return hasLocalChange_; }
  void hasLocalChangeIs(bool on) noexcept { hasLocalChange_ = on; }
  /// Whether a piece of the text was passed over: what is left of it is no text any more.
  [[nodiscard]] bool isPassedOver() const noexcept { return isPassedOver_; }
  void isPassedOverIs(bool on) noexcept { isPassedOver_ = on; }

 private:
  AttributeId aid_ = 0;
  bool handlingTransaction_ = false;
  bool hasLocalChange_ = false;
  bool isPassedOver_ = false;
  HeapCopy iter_;
};

}  // namespace Vek::NboAttrLog
