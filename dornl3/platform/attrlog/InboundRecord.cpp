#include "dornl3/platform/attrlog/InboundRecord.h"

#include "dornl3/core/Throwers.h"

namespace Vek {

InboundRecord::InboundRecord(Sa& adapter, int attr, Ptr<NboAttrLog::In> const& in)
    : adapter_(adapter),
      entity_(const_cast<Entity*>(static_cast<Entity const*>(adapter.rawNotifier()))),
      input_(in.ptr()),
      applies_(!in) {
  if (applies_) {
    NboAttrLog::Out const* const out = adapter.nboAttrLogOut();
    if (out != nullptr) input_ = out->input();
  }
  if (input_ == nullptr || !entity_) {
    input_ = nullptr;
    return;
  }
  if (!applies_) return;
  if (adapter.hasFlag(StreamAdapter::entityReactorActive)) {
    throwInternalException("entity reactor is already active");
  }
  if (adapter.hasFlag(StreamAdapter::readOnlyRemote)) adapter.needRemoteWritable(attr);
  adapter.flagsIs(StreamAdapter::entityReactorActive, true);
  isActive_ = true;
}

}  // namespace Vek
