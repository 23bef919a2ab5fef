// InboundRecord: the frame around one record that an adapter handles: what is checked before, and put right after.
#pragma once

#include "dornl3/platform/attrlog/EntityAdapter.h"
#include "dornl3/platform/attrlog/WriteGuard.h"

namespace Vek {

class InboundRecord {
 public:
  using Sa = Entity::VekNboAttrLogSa;

  /// `in`: as in StreamAdapter::handleAttrDeserialization. Throws InternalException where another record is being
  /// applied on the adapter, and where the far side may not write.
  InboundRecord(Sa& adapter, int attr, Ptr<NboAttrLog::In> const& in);
  InboundRecord(InboundRecord const&) = delete;
  InboundRecord& operator=(InboundRecord const&) = delete;
  ~InboundRecord() {
    if (isActive_) adapter_.flagsIs(StreamAdapter::entityReactorActive, false);
  }

  /// Whether there is anything to read from.
  explicit operator bool() const noexcept { return input_ != nullptr; }
  [[nodiscard]] NboAttrLog::In& in() const noexcept { return *input_; }
  /// Whether the record is applied, and not passed over for the present value to be sent.
  [[nodiscard]] bool applies() const noexcept { return applies_; }
  /// All of it is read: what follows touches the entity.
  void decoded() const noexcept { input_->phaseIs(NboAttrLog::In::Phase::applying); }
  [[nodiscard]] Ptr<Entity> const& entity() const noexcept { return entity_; }

 private:
  Sa& adapter_;  // whoever hands the record over holds it
  Ptr<Entity> const entity_;
  NboAttrLog::In* input_;
  bool const applies_;
  bool isActive_ = false;
};

}  // namespace Vek
