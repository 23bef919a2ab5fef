// The steps of the walk over what is owed that depend on no type; dornl3/attrlog/Walk.h puts them together.
#include "dornl3/platform/attrlog/EntityAdapter.h"

namespace Vek {

using NboAttrLog::FlowOut;
using Sa = Entity::VekNboAttrLogSa;

bool Sa::walkMayBegin(AttributeId attr, bool& answer) {
  answer = false;
  if (hasFlag(syncModeRelay)) return false;
  if (!hasFlag(entityReactorActive) && handlingFlowInFor(attr)) return false;
  answer = true;
  if (hasFlag(outputSuppressed | resyncStale | entityReactorActive) || !hasFlag(logEnabled)) return false;
  if (nboAttrLogOut() == nullptr) return false;
  needWritable(attr);
  return true;
}

bool Sa::walkEndsEarly(FlowOut* owed, AttributeId first, AttributeId& from) {
  if (owed != nullptr) {
    owed->yieldRequestedIs(false);
    for (FlowOut::VekPendingAbort::Map::IteratorConst it(&owed->pendingAbort()); it; ++it) {
      sendTransactionMarker(it->key(), abortMarker, 0);
      owed->pendingAbortDel(it->key());
    }
  }
  if (from >= first) return false;
  from = StreamAdapter::handleAttrFlowOut(from);
  if (from != 0) return true;
  from = first;
  return !continueFlowOut();
}

bool Sa::stepOverScalar(FlowOut& owed, AttributeId attr, AttributeId behind, U32 slot, void (Sa::*handler)(),
                        AttributeId& next) {
  owed.attrIdIs(attr);
  if (owed.slotBit(slot)) (this->*handler)();
  next = attr;
  if (owed.yieldRequested()) return true;
  next = behind;
  return behind == 0 || !continueFlowOut();
}

bool Sa::stepEnds(FlowOut const& owed, AttributeId attr, AttributeId behind, bool done, AttributeId& next) const {
  next = attr;
  if (owed.yieldRequested()) return true;
  if (behind == 0) {
    if (done) next = 0;
    return true;
  }
  if (continueFlowOut()) {
    next = behind;
    return false;
  }
  if (done) next = owed.hasDirtyAttributes() ? behind : 0;
  return true;
}

}  // namespace Vek
