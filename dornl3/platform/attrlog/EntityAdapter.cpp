#include "dornl3/platform/attrlog/EntityAdapter.h"

#include "dornl3/core/Throwers.h"
#include "dornl3/platform/attrlog/Connection.h"
#include "dornl3/platform/attrlog/ControlRecords.h"
#include "dornl3/platform/attrlog/InboundRecord.h"
#include "dornl3/platform/vek/Dir.h"

#include <exception>

namespace Vek {

using NboAttrLog::Demuxer;
using NboAttrLog::FlowIn;
using NboAttrLog::FlowOut;
using NboAttrLog::Out;
using Sa = Entity::VekNboAttrLogSa;

Sa::VekNboAttrLogSa(Vek_BitSet flags, U32 count, Ptr<Out> const& out, PtrInterface* owner)
    : StreamAdapter(flags, count, out), channel_(dynamic_cast<MsgChannel::Constrainer::VekEntry*>(owner)) {
  // Made while a record is applied, it joins the synchronisation that runs.
  if (Demuxer* const demuxer = streamDemuxer()) {
    if (StreamAdapter* const applied = demuxer->applied()) StreamAdapter::syncModeIs(applied->syncMode());
  }
}

Sa::~VekNboAttrLogSa() = default;

void Sa::reactorAdapterIs(Ptr<PtrInterface::NotifieeConst> const& adapter, Ptr<Entity> const& entity) {
  reactorAdapter_ = adapter;
  if (hasFlag(weakAdapter)) isWeakReferenceIs(true);
  isRegisteredNotifieeIs(false);
  notifierIs(entity);
  entity->vekIsBoundIs();
}

Ptr<PtrInterface::NotifieeConst> Sa::reactorAdapterDel() noexcept {
  isWeakReferenceIs(false);
  return std::move(reactorAdapter_);
}

void Sa::hasNotificationActiveIs(bool on) {
  if (on == hasNotificationActive()) return;
  StreamAdapter::hasNotificationActiveIs(on);
  if (!on && rawNotifier() != nullptr) vekNotifierEntity()->vekHasSilentAdapterIs();
  if (reactorAdapter_) reactorAdapter_->hasNotificationActiveIs(on);
}

void Sa::notifierIs(Ptr<PtrInterface const> const& n) {
  if (reactorAdapter_) reactorAdapter_->notifierIs(n);
  StreamAdapter::notifierIs(n);
  isRegisteredNotifieeIs(false);
}

void Sa::vekDoZombieReactors(bool mark) {
  if (mark == vekMarkedForDeletion()) return;
  if (reactorAdapter_) {
    if (rawNotifier() != nullptr) reactorAdapter_->hasNotificationActiveIs(!mark);
    reactorAdapter_->vekMarkedForDeletionIs(mark);
  }
  vekMarkedForDeletionIs(mark);
}

Ptr<Entity const> Sa::vekNotifierEntity() const { return static_cast<Entity const*>(rawNotifier()); }
Ptr<Entity> Sa::vekNotifierEntity() { return const_cast<Entity*>(static_cast<Entity const*>(rawNotifier())); }

void Sa::onNotificationException(AttributeId) {
  if (std::current_exception() == nullptr) return;
  try {
    throw;
  } catch (ReadOnlyException const&) {
    throw;
  } catch (ProtocolException const&) {
    throw;
  } catch (std::exception const& error) {
    if (side() != Side::replica) {
      oweEverything();
    } else if (NboAttrLog::Connection* const connection = boundLog()->connection()) {
      // All of it sent again would overwrite what the owner has; bound anew, the owner's word stands.
      connection->closeIs(format("a change could not be written: %s", error.what()));
    }
  }
}

void Sa::onZeroReferences() {
  Ptr<Sa> const self(this);
  bool const isRoot = side() == Side::owner;
  notifierIs(nullptr);
  if (Demuxer* const demuxer = streamDemuxer()) {
    if (isRoot && nboAttrLogOut() != nullptr) NboAttrLog::sendGone(*boundLog(), entityId());
    demuxer->reactorDel(entityId());
  }
}

// ---- What becomes of a change

void Sa::handleHeld(void (Sa::*slot)()) {
  Ptr<Sa> const held(this);
  (this->*slot)();
}

void Sa::handlerFailed(AttributeId attr) {
  Ptr<Sa> const held(this);
  Sa::onNotificationException(attr);
}

bool Sa::maySend(AttributeId attr) {
  if (hasFlag(syncModeRelay)) return false;
  if (!hasFlag(entityReactorActive) && handlingFlowInFor(attr)) return false;
  if (hasFlag(outputSuppressed | resyncStale | entityReactorActive) || !hasFlag(logEnabled) ||
      nboAttrLogOut() == nullptr) {
    flagsIs(entityReactorActive, false);
    return false;
  }
  needWritable(attr);
  return true;
}

void Sa::needWritable(AttributeId attr) {
  if (!hasFlag(readOnlyLocal) || convertedToWritable(false)) return;
  doThrowReadOnly(vekNotifierEntity()->fwkType()->attribute(attr));
}

void Sa::doThrowReadOnly(VekAttr const* attr) const {
  Ptr<Entity const> const entity = vekNotifierEntity();
  throw ReadOnlyException(format("%s%s%s is mounted read-only here. Mount it writable, or change it where it lives.",
                                 entity->fullName().charPtr(), attr != nullptr ? "." : "",
                                 attr != nullptr ? attr->name().charPtr() : ""));
}

bool Sa::openFlowOut(AttributeId attr) {
  Demuxer* const demuxer = streamDemuxer();
  demuxer->createFlowOut(*this, ConnectDesc(EntityUriPath(), EntityUriPath()), false, FlowOut::marksOnly);
  if (!flowOut()) return false;
  flowOut()->attrIdIs(attr);
  return true;
}

Sa::Turn Sa::scalarTurn(AttributeId attr, U32 slot) {
  if (!maySend(attr)) return Turn::silent;
  bool const room = boundLog()->hasSufficientBuffer();
  if (hasFlag(noFlowOut)) {
    if (hasFlag(handlingScheduledFlowOut) || (room && !hasFlag(flowOutForced))) return Turn::write;
    if (openFlowOut(attr)) flowOut()->slotBitIs(slot, true);
    return Turn::mark;
  }
  Ptr<FlowOut> const& owed = flowOut();
  if (prepareImmediateTransmission(attr, !room)) {
    owed->slotBitIs(slot, false);
    return Turn::write;
  }
  owed->slotBitIs(slot, true);
  if (!hasFlag(handlingScheduledFlowOut)) streamDemuxer()->schedule().marked(*this);
  return Turn::mark;
}

Sa::Turn Sa::keyTurn(AttributeId attr) {
  if (!maySend(attr)) return Turn::silent;
  bool const room = boundLog()->hasSufficientBuffer();
  if (hasFlag(noFlowOut)) {
    if (hasFlag(handlingScheduledFlowOut) || (room && !hasFlag(flowOutForced))) return Turn::write;
    return openFlowOut(attr) ? Turn::mark : Turn::silent;
  }
  if (prepareImmediateTransmission(attr, false) && room) return Turn::write;
  if (!hasFlag(handlingScheduledFlowOut)) streamDemuxer()->schedule().marked(*this);
  return Turn::mark;
}

void Sa::keyMarked(U32 marks, U32 members) {
  if (side() != Side::owner || hasFlag(handlingScheduledFlowOut)) return;
  if (marks <= U64{2} * members + boundLog()->limits().marks) return;
  streamDemuxer()->createFlowOut(*this, ConnectDesc(EntityUriPath(), EntityUriPath()), false, 0);
}

bool Sa::handlingFlowInFor(AttributeId attr) const {
  Demuxer const* const demuxer = streamDemuxer();
  if (demuxer == nullptr || !demuxer->hasFlowIns()) return false;
  Ptr<FlowIn> const flowIn = demuxer->flowIn(entityId());
  if (!flowIn || flowIn->aid() != attr) return false;
  // On a mount a walk that comes in makes no attribute deaf. A text in pieces does, at the replica alone: with both
  // ends deaf to their own texts, neither would be whole.
  return side() == Side::plain || (side() == Side::replica && flowIn->iter() != nullptr);
}

void Sa::scalarOwed(U32 slot) noexcept {
  if (flowOut()) flowOut()->slotBitIs(slot, true);
}

// ---- Texts

namespace {

// A piece: whether it is the last, and bytes. As much as one message takes; the cursor moves behind it.
void writePiece(Out& out, String8::IteratorConst& it) {
  std::string_view const rest = it.rest();
  std::string_view const piece = rest.substr(0, std::max(out.maxMessageSize(), 1U));
  out.putByte(piece.size() == rest.size() ? 1 : 0);
  out.putBytes(piece);
  it += static_cast<int>(piece.size());
}

// A log with less room than this has a text go out in turns.
U32 roomForAText(Out const& out) noexcept {
  U32 const most = out.maxMessageSize();
  return most + most / 2 - 1;
}

}  // namespace

bool Sa::serializeText(AttributeId attr, U32 slot, String8 const& text) {
  if (hasFlag(syncModeRelay)) return false;
  if (!hasFlag(entityReactorActive) && handlingFlowInFor(attr)) {
    if (!hasFlag(handlingScheduledFlowOut)) streamDemuxer()->flowIn(entityId())->hasLocalChangeIs(true);
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
  Out& out = *boundLog();
  if (text.length() > out.limits().textBytes) {
    out.droppedInc();
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

bool Sa::stepOverText(FlowOut& owed, AttributeId attr, AttributeId behind, U32 slot, bool (Sa::*handler)(),
                      AttributeId& next) {
  owed.attrIdIs(attr);
  bool const owes = owed.valueIter() != nullptr || owed.slotBit(slot);
  bool const done = !owes || (this->*handler)();
  owed.slotBitIs(slot, !done);
  return stepEnds(owed, attr, behind, done, next);
}

namespace {

using PartialText = std::string;

}  // namespace

bool Sa::receiveText(InboundRecord const& record, AttributeId attr, U32 slot, String8& text) {
  NboAttrLog::In& in = record.in();
  Demuxer& demuxer = *streamDemuxer();
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
  Demuxer* const demuxer = streamDemuxer();
  Ptr<FlowIn> const flowIn = demuxer != nullptr ? demuxer->flowIn(entityId()) : Ptr<FlowIn>{};
  if (!flowIn || flowIn->aid() != attr) return false;
  if (type == beginMarker) return true;
  if (flowIn->iter() != nullptr) {
    flowIn->iterIs({});
    flowIn->aidIs(0);
  }
  demuxer->flowInDel(entityId());
  // It is the text of here that stands.
  if (flowIn->hasLocalChange() && side() != Side::plain) doNotification(static_cast<int>(attr), nullptr);
  return true;
}

// ---- Children

U32 Sa::childFlags() const noexcept { return Vek_BitSet::notificationBitMask() & 0xffffc3cf & flags(); }

bool Sa::bindChild(AttributeId attr, U32 slot, ChildBinder const& bind) {
  Ptr<Sa> child;
  while (!child) {
    try {
      Expect const expect{EntityIdUnavailableException::id};
      child = bind.call(childFlags());
    } catch (AttrLogRecordException const&) {
      continue;
    } catch (EntityIdUnavailableException const&) {
      if (!flowOut() && !openFlowOut(attr)) return true;
      flowOut()->attrIdIs(attr);
      if (slot != 0) flowOut()->slotBitIs(slot, true);
      flowOut()->yieldRequestedIs(true);
      return false;
    }
  }
  doFixChildFlags(*child);
  if (syncMode() == synchronising || hasFlag(handlingScheduledFlowOut)) {
    child->sessionIs(runningSession());
    child->doThis();
  }
  return true;
}

void Sa::doFixChildFlags(Sa& child) {
  constexpr U32 shared = readOnlyLocal | readOnlyRemote | outputSuppressed | flowOutForced;
  child.vek_bitSetIs(Vek_BitSet((child.flags() & ~shared) | (flags() & shared)));
  // A child may have been filled before anybody was told of it: on a mount it is brought in step by itself.
  if (child.side() != Side::plain && std::exchange(child.isNew_, false)) child.doThis();
}

void Sa::childIsOnLog(Sa& child) {
  child.isNew_ = true;
  child.hasNotificationActiveIs(true);
  try {
    child.inheritSide();
    child.vekOnInit();
  } catch (...) {
    streamDemuxer()->unbind(child);  // or a later try would find it, and write an id that nobody knows
    throw;
  }
}

bool Sa::mustMakeWay(Ptr<Entity> const& child, EntityId id, bool mayThrow) {
  return streamDemuxer()->checkEphemeralEntityDeletion(child, id, mayThrow);
}

void Sa::inheritSide() {
  Ptr<Entity> const entity = vekNotifierEntity();
  if (!entity || entity->isRoot()) return;
  Ptr<Entity> const parent = entity->parent();
  Ptr<Sa> const above = parent->vekNboAttrLogSa(Ptr<Out const>(boundLog()));
  if (!above) return;
  sideIs(above->side());
  if (side() == Side::replica) entity->vekWriteGuardIs(parent->vekIsWriteGuarded());
}

void Sa::childRecordIs(AttributeId attr, String8 const& key, Sa& child) {
  Ptr<Out> const& out = recordIs(static_cast<int>(attr), 0, true, NboAttrLog::childBindRecord);
  out << key << child.entityId();
  recordClosed();
  child.boundAtIs(out->records());
}

void Sa::receiveChildId(Ptr<Entity> const& child) {
  struct Clear {
    Sa& adapter;
    ~Clear() { adapter.flagsIs(entityReactorActive, false); }
  } const clear{*this};
  Ptr<NboAttrLog::In> const in = boundLog()->reverseLog();
  Demuxer* const demuxer = demuxFor(in);
  if (!child || !in || demuxer == nullptr) return;
  Ptr<Sa> const adapter = child->vekNboAttrLogSaIs(Vek_BitSet(childFlags()), 1, boundLog(), channel_);
  adapter->inheritSide();
  EntityId const id = in->nextEntityId();
  adapter->doEntityIdIs(id, *demuxer, true);
  if (!entityId().isAssigned()) in->overwriteId(entityId());
  adapter->flagsIs(resyncStale, false);
}

EntityId Sa::peekChildId(InboundRecord const& record, Ptr<Entity> const& child) {
  NboAttrLog::In& in = record.in();
  U32 const at = in.position();
  EntityId const id = in.nextEntityId();
  in.positionIs(at);
  if (!id.isAssigned() || id == connectionId) throw ProtocolException("a child under an id that is none");
  StreamAdapter const* const holder = streamDemuxer()->adapters().find(id);
  if (holder != nullptr && (!child || holder->rawNotifier() != child.ptr())) {
    throw ProtocolException("an entity id that another entity has");
  }
  NboAttrLog::AdapterTable const& adapters = streamDemuxer()->adapters();
  // An owner says a child again under the id that it had from here. One that is still to be given out would be met
  // later.
  bool const isPeers = side() == Side::plain || id.tag() == boundLog()->connection()->peerTag();
  if (!isPeers && !adapters.wasGivenOut(id)) throw ProtocolException("a child under an id that is not the peer's");
  if (holder == nullptr && adapters.foreign() >= boundLog()->connection()->settings().limits.entities) {
    throw ProtocolException("more entities than this end takes");
  }
  record.decoded();
  return id;
}

Ptr<Sa> Sa::childAdapterOf(Ptr<Entity> const& child) const {
  return child ? child->vekNboAttrLogSa(Ptr<Out const>(boundLog())) : Ptr<Sa>{};
}

// ---- The walk

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

// ---- Markers, announcement, sync mode

void Sa::sendTransactionMarker(AttributeId attr, AttrTransactionType type, U32 arg) {
  // What an owner holds is not swept by a replica, which may not know all of it. An abort concerns its own text alone.
  if (side() == Side::replica && type != abortMarker) return;
  if (nboAttrLogOut() == nullptr) return;
  openRecord(*boundLog(), NboAttrLog::transactionRecord, 12, false);
  boundLog() << Connection::Out::tokenOpen << attr << static_cast<U32>(type) << arg;
  recordClosed();
}

void Sa::needRemoteWritable(int attr) const {
  if (!hasFlag(readOnlyRemote) || readOnlyRemoteOk(attr) || convertedToWritable(false)) return;
  throwInternalException("write-update from readonly proxy: " + vekNotifierEntity()->fullName() +
                         " peerName: " + String8(boundLog()->peerName()));
}

void Sa::transactionHead(AttributeId attr, AttrTransactionType type) {
  Demuxer* const demuxer = streamDemuxer();
  if (demuxer == nullptr) return;
  Ptr<FlowIn> flowIn = demuxer->flowIn(entityId());
  if (flowIn) {
    if (type == endMarker && attr == flowIn->aid()) flowIn->handlingTransactionIs(true);
  } else if (!hasFlag(syncModeRelay) && type == beginMarker) {
    flowIn = demuxer->flowInIs(entityId());
    flowIn->aidIs(attr);
  }
}

// A flow-in that stayed would leave its attribute deaf.
void Sa::handleAttrTransaction(AttributeId attr, AttrTransactionType type, U32) {
  Demuxer* const demuxer = streamDemuxer();
  if (demuxer == nullptr) return;
  Ptr<FlowIn> const flowIn = demuxer->flowIn(entityId());
  if (!flowIn) return;
  bool const ends = type == endMarker && flowIn->handlingTransaction();
  if (ends || (type == abortMarker && flowIn->aid() == attr)) demuxer->flowInDel(entityId());
}

bool Sa::modeOpensTransactions() {
  Demuxer const* const demuxer = streamDemuxer();
  return demuxer != nullptr && demuxer->state() <= NboAttrLog::open && hasFlag(entityReactorActive);
}

Ptr<Out> Sa::orphanIs(char const* typeName) {
  Ptr<Out> const out = nboAttrLogOut();
  if (!out) return {};
  out->nextHeaderIs({.entityId = connectionId, .attribute = NboAttrLog::orphanRecord, .variableSize = 1});
  out << Connection::Out::tokenOpen;
  out->currentPayloadSectionIs(NboAttrLog::typeSection);
  out << String8(typeName);
  out->currentPayloadSectionIs(NboAttrLog::argumentsSection);
  return out << String8(vekNotifierEntity()->name());
}

void Sa::orphanClosed(Ptr<Out> const& out) {
  out->currentPayloadSectionIs(NboAttrLog::idSection);
  out << entityId() << Connection::Out::tokenClose;
  recordWritten(*out);
  doThis();
}

void Sa::receiveSyncMode(NboAttrLog::In& in) {
  SyncMode const mode = SyncModeInstance(in.nextU32());
  in.phaseIs(NboAttrLog::In::Phase::applying);
  Ptr<Entity> const entity = vekNotifierEntity();
  auto const& manager = globalNboAttrLogDemuxerManager();
  for (Demuxer* const demuxer : manager.nboDemuxerIterator()) {
    if (!manager.has(demuxer) || !entityId().isAssigned()) continue;
    Ptr<Sa> const sibling = static_cast<Sa*>(demuxer->adapters().find(entityId()));
    if (!sibling || sibling->vekNotifierEntity() != entity) continue;
    sibling->flagsIs(syncModeRelay, true);
    struct Relay {
      Sa& adapter;
      ~Relay() { adapter.flagsIs(syncModeRelay, false); }
    } const relay{*sibling};
    sibling->syncModeIs(mode);
  }
  if (channel_ != nullptr) channel_->modeIs(3);
  if (mode != inStep) return;
  Ptr<Dir> const dir = ptrCast<Dir>(entity->parent());
  if (!dir) return;
  flagsIs(entityReactorActive, false);
  Ptr<Dir::Entry> const entry = dir->entry(entity->name());
  if (entry && entry->entity() == entity) entry->stateIs(Dir::inStep);
}

void Sa::doBaseVekNboAttrLogSaMsg(int, DeserializationOptions, U32, Ptr<NboAttrLog::In> const&) {
  if (Demuxer* const demuxer = streamDemuxer()) demuxer->skippedInc();
}

// ---- Anchors

void Sa::IsActiveAnchor::telIs(Sa* adapter) noexcept {
  if (adapter_) adapter_->flagsIs(entityReactorActive, false);
  adapter_ = adapter;
  if (adapter_) adapter_->flagsIs(entityReactorActive, true);
}

Sa::HandlingScheduledFlowOutAnchor::HandlingScheduledFlowOutAnchor(Sa& adapter) noexcept
    : adapter_(&adapter), before_(adapter.hasFlag(handlingScheduledFlowOut)) {
  adapter.flagsIs(handlingScheduledFlowOut, static_cast<bool>(adapter.flowOut()));
}

Sa::HandlingScheduledFlowOutAnchor::~HandlingScheduledFlowOutAnchor() {
  adapter_->flagsIs(handlingScheduledFlowOut, before_);
}

}  // namespace Vek
