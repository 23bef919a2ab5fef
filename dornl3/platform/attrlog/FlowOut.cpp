#include "dornl3/platform/attrlog/FlowOut.h"

namespace Vek::NboAttrLog {

FlowOut::FlowOut(Ptr<Out> const&, StreamAdapter* adapter, ConnectDesc const&, bool isFull,
                 AttributeId startAttr) noexcept
    : attrId_(startAttr), isFull_(isFull), adapter_(adapter) {}

FlowOut::~FlowOut() = default;

bool FlowOut::hasDirtyAttributes() const {
  return pendingAbort_.count() != 0 || bookmark() != nullptr || valueIter() != nullptr;
}

void FlowOut::pendingAbortDel(AttributeId attr) {
  if (Ptr<VekPendingAbort> const member = pendingAbort_[attr]) pendingAbort_.deleteMember(member);
}

void FlowOut::pendingAbortIs(AttributeId attr, bool on) {
  if (VekPendingAbort* const member = pendingAbort_[attr]) {
    member->valueIs(on);
  } else {
    pendingAbort_.newMember(make<VekPendingAbort>(attr, on));
  }
}

}  // namespace Vek::NboAttrLog
