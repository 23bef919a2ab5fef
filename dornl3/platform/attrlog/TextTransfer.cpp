// Texts on a log: a long one goes out and comes in by pieces, whole or not at all.
#include "dornl3/platform/attrlog/Demuxer.h"
#include "dornl3/platform/attrlog/EntityAdapter.h"
#include "dornl3/platform/attrlog/InboundRecord.h"

#include <algorithm>
#include <string>

namespace Vek {

using Sa = Entity::VekNboAttrLogSa;
using NboAttrLog::FlowIn;
using NboAttrLog::FlowOut;

namespace {

// A piece: whether it is the last, and bytes. As much as one message takes; the cursor moves behind it.
void writePiece(NboAttrLog::Out& out, String8::IteratorConst& it) {
  std::string_view const rest = it.rest();
  std::string_view const piece = rest.substr(0, std::max(out.maxMessageSize(), 1U));
  out.putByte(piece.size() == rest.size() ? 1 : 0);
  out.putBytes(piece);
  it += static_cast<int>(piece.size());
}

// A log with less room than this has a text go out in turns.
U32 roomForAText(NboAttrLog::Out const& out) noexcept {
  U32 const most = out.maxMessageSize();
  return most + most / 2 - 1;
}

}  // namespace

bool Sa::serializeText(AttributeId attr, U32 slot, String8 const& text) {
  Ptr<Sa> const held(this);
  if (hasFlag(syncModeRelay)) return false;
  if (!hasFlag(entityReactorActive) && handlingFlowInFor(attr)) {
    streamDemuxer()->flowIn(entityId())->hasLocalChangeIs(true);
    return false;
  }
  if (!maySend(attr)) return true;
  Ptr<FlowOut> const owed = hasFlag(noFlowOut) ? Ptr<FlowOut>{} : flowOut();
  if (owed && !hasFlag(handlingScheduledFlowOut)) {
    static_cast<void>(prepareImmediateTransmission(attr, true));
    owed->slotBitIs(slot, true);
    streamDemuxer()->schedule().marked(*this);
    return false;
  }
  NboAttrLog::Out& out = *boundLog();
  if (text.length() > out.limits().textBytes) {
    out.droppedInc();
    notReplicatedIs(attr, true);
    return true;
  }
  bool const goesOn = owed && owed->valueIter() != nullptr;
  auto it = goesOn ? NboAttrLog::vekFlowOutValueDeq<String8::IteratorConst>(*owed) : String8::IteratorConst(text);
  if (!it.inside() && it.position() != 0) return true;
  bool mayWrite = owed || out.freeSpace() > roomForAText(out);
  while (mayWrite) {
    bool const mustWait =
        owed && hasFlag(handlingScheduledFlowOut) && (!continueFlowOut() || out.freeSpace() < out.maxMessageSize());
    if (mustWait) {
      owed->valueIterIs(HeapCopy::of(it));
      return false;
    }
    static_cast<void>(recordIs(static_cast<int>(attr), 0, true));
    writePiece(out, it);
    recordClosed();
    if (!it.inside()) return true;
    mayWrite = static_cast<bool>(owed);
  }
  if (!openFlowOut(attr)) return false;
  flowOut()->slotBitIs(slot, true);
  flowOut()->outstandingKeysIs(1);
  NboAttrLog::vekFlowOutValueEnq(*flowOut(), it);
  return false;
}

namespace {

using PartialText = std::string;

}  // namespace

bool Sa::receiveText(InboundRecord const& record, AttributeId attr, U32 slot, String8& text) {
  NboAttrLog::In& in = record.in();
  NboAttrLog::Demuxer& demuxer = *streamDemuxer();
  Ptr<FlowIn> flowIn = demuxer.flowIn(entityId());
  bool const hasPart = flowIn && flowIn->aid() == attr && flowIn->iter() != nullptr;
  bool const isLast = in.isAtLimit() || in.nextbool();
  std::string_view const piece = in.rest();
  std::size_t const before = hasPart ? static_cast<PartialText const*>(flowIn->iter())->size() : 0;
  if (piece.empty() && !isLast) throw ProtocolException("a piece of a text without a byte");
  if (before + piece.size() > in.textLimit()) {
    throw ProtocolException(format("a text of more than %u bytes", in.textLimit()));
  }
  if (isLast) {
    text = hasPart ? String8(static_cast<PartialText*>(flowIn->iter())->append(piece)) : String8(piece);
    if (flowIn) {
      flowIn->iterIs({});
      flowIn->aidIs(0);
      demuxer.flowInDel(entityId());
    }
    // Our own text that is part-way out is an older one.
    if (flowOut() && flowOut()->valueIter() != nullptr && flowOut()->iterAttr() == attr) {
      static_cast<void>(prepareImmediateTransmission(attr, true));
      flowOut()->slotBitIs(slot, true);
    }
    record.decoded();
    return true;
  }
  if (!flowIn) flowIn = demuxer.flowInIs(entityId());
  if (hasPart) {
    static_cast<PartialText*>(flowIn->iter())->append(piece);
  } else {
    flowIn->aidIs(attr);
    flowIn->iterIs(HeapCopy::of(PartialText(piece)));
  }
  return false;
}

bool Sa::passesOverText(AttributeId attr) const {
  Ptr<FlowIn> const flowIn = streamDemuxer()->flowIn(entityId());
  return flowIn && flowIn->aid() == attr && flowIn->isPassedOver();
}

// An owner that may not write for a while takes no piece of a text, nor what then follows of it: the rest alone would
// be another text.
bool Sa::textPassedOver(InboundRecord const& record, AttributeId attr) {
  if (side() != Side::owner) return true;
  NboAttrLog::In& in = record.in();
  bool const isLast = in.isAtLimit() || in.nextbool();
  static_cast<void>(in.rest());
  if (isLast) {
    streamDemuxer()->flowInDel(entityId());
  } else {
    Ptr<FlowIn> const flowIn = streamDemuxer()->flowInIs(entityId());
    flowIn->aidIs(attr);
    flowIn->iterIs({});
    flowIn->isPassedOverIs(true);
  }
  return isLast;
}

bool Sa::textTransaction(AttributeId attr, AttrTransactionType type) {
  NboAttrLog::Demuxer* const demuxer = streamDemuxer();
  Ptr<FlowIn> const flowIn = demuxer != nullptr ? demuxer->flowIn(entityId()) : Ptr<FlowIn>{};
  if (!flowIn || flowIn->aid() != attr) return false;
  if (type == beginMarker) return true;
  // Behind the change of here: a barrier waits for that until the flow-in goes.
  struct LetGo {
    NboAttrLog::Demuxer& demuxer;
    EntityId const id;
    ~LetGo() { demuxer.flowInDel(id); }
  } const letGo{*demuxer, entityId()};
  flowIn->iterIs({});
  flowIn->aidIs(0);
  // It is the text of here that stands.
  if (flowIn->hasLocalChange() && side() != Side::plain) doNotification(static_cast<int>(attr), nullptr);
  return true;
}

}  // namespace Vek
