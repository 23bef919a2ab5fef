// The walk over what is owed. It is the one place that makes progress on a flow-out.
#include "dornl3/platform/attrlog/EntityAdapter.h"

namespace Vek {

using NboAttrLog::FlowOut;
using NboAttrLog::WalkStep;
using NboAttrLog::WalkTable;
using Sa = Entity::VekNboAttrLogSa;

bool Sa::walkMayBegin(AttributeId attr, bool& answer) {
  answer = false;
  if (hasFlag(syncModeRelay)) return false;
  if (!hasFlag(entityReactorActive) && handlingFlowInFor(attr)) return false;
  answer = true;
  if (isKeptSilent() || hasFlag(entityReactorActive) || !hasFlag(logEnabled)) return false;
  if (nboAttrLogOut() == nullptr) return false;
  needWritable(attr);
  return true;
}

AttributeId Sa::walk(WalkTable const& table, AttributeId from) {
  if (rawNotifier() == nullptr) return 0;
  Ptr<FlowOut> const owed = flowOut();
  HandlingScheduledFlowOutAnchor const anchor{*this};
  if (walkEndsEarly(owed.ptr(), table.begin->number, from)) return from;
  if (!owed) return 0;
  WalkStep const* step = table.begin;
  while (step != table.end && step->number != from) ++step;
  AttributeId next = 0;
  for (; step != table.end; ++step) {
    if (stepEnds(*owed, *step, step + 1 == table.end ? 0 : step[1].number, next)) break;
  }
  return next;
}

// Aborts that are owed, and the framework's own attributes.
bool Sa::walkEndsEarly(FlowOut* owed, AttributeId first, AttributeId& from) {
  if (owed != nullptr) {
    owed->yieldRequestedIs(false);
    for (FlowOut::VekPendingAbort::Map::IteratorConst it(&owed->pendingAbort()); it; ++it) {
      sendTransactionMarker(it->key(), abortMarker, 0);
      owed->pendingAbortDel(it->key());
    }
  }
  if (from >= first) return false;
  if (owed != nullptr) owed->waitingIs(0);
  from = StreamAdapter::handleAttrFlowOut(from);
  if (from != 0) return true;
  from = first;
  return !continueFlowOut();
}

bool Sa::stepEnds(FlowOut& owed, WalkStep const& step, AttributeId behind, AttributeId& next) {
  owed.attrIdIs(step.number);
  bool done = true;
  if (step.goesOn == nullptr) {
    if (owed.slotBit(step.slot)) step.writes(*this);
  } else if (step.isKeyed) {
    done = step.goesOn(*this);
  } else {
    bool const owes = owed.valueIter() != nullptr || owed.slotBit(step.slot);
    done = !owes || step.goesOn(*this);
    owed.slotBitIs(step.slot, !done);
  }
  next = step.number;
  if (owed.yieldRequested()) return true;
  if (behind == 0) {
    if (done) next = 0;
    return true;
  }
  if (continueFlowOut()) {
    next = behind;
    return false;
  }
  if (done) next = step.goesOn == nullptr || owed.hasDirtyAttributes() ? behind : 0;
  return true;
}

void FlowOut::oweFrom(WalkTable const& table, AttributeId start) noexcept {
  table_ = &table;
  for (WalkStep const* step = table.begin; step != table.end; ++step) {
    slotBitIs(step->slot, step->isKeyed ? start > step->number : start <= step->number);
  }
}

void FlowOut::oweAgain(AttributeId attr) noexcept {
  WalkStep const* step = table_->begin;
  while (step != table_->end && step->number != attr) ++step;
  if (bookmark() != nullptr && iterAttr() == attr) bookmarkIs({});
  if (step != table_->end) slotBitIs(step->slot, false);
}

void FlowOut::placeDel(WalkTable const& table) {
  WalkStep const* step = table.begin;
  while (step != table.end && step->number != attrId()) ++step;
  if (step == table.end || step->goesOn == nullptr) return;
  step->isKeyed ? bookmarkIs({}) : valueIterIs({});
}

}  // namespace Vek
