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
  InboundRecord(Sa& adapter, int attr, Ptr<NboAttrLog::In> const& in)
      : adapter_(adapter),
        entity_(const_cast<Entity*>(static_cast<Entity const*>(adapter.rawNotifier()))),
        input_(in.ptr()),
        applies_(!in) {
    if (applies_) {
      NboAttrLog::Out const* const out = adapter.nboAttrLogOut();
      if (out != nullptr) input_ = out->input();
    }
    if (entity_ == nullptr) input_ = nullptr;
    if (!applies_ || input_ == nullptr) return;
    if (adapter.hasFlag(StreamAdapter::entityReactorActive)) [[unlikely]]
      throwAlreadyActive();
    if (adapter.hasFlag(StreamAdapter::readOnlyRemote)) [[unlikely]]
      adapter.needRemoteWritable(attr);
    adapter.flagsIs(StreamAdapter::entityReactorActive, true);
    isActive_ = true;
  }
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
  /// The entity. Whoever touches it when reactors have run holds it meanwhile.
  [[nodiscard]] Entity& entity() const noexcept { return *entity_; }

 private:
  [[noreturn]] static void throwAlreadyActive();

  Sa& adapter_;  // whoever hands the record over holds it
  Entity* const entity_;
  NboAttrLog::In* input_;
  bool const applies_;
  bool isActive_ = false;
};

}  // namespace Vek
