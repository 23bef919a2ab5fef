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

void Sa::handlerFailed(AttributeId attr) {
  Ptr<Sa> const held(this);
  Sa::onNotificationException(attr);
}

bool Sa::maySend(AttributeId attr) {
  if (hasFlag(syncModeRelay)) return false;
  if (!hasFlag(entityReactorActive) && handlingFlowInFor(attr)) return false;
  if (isKeptSilent() || hasFlag(entityReactorActive) || !hasFlag(logEnabled) || nboAttrLogOut() == nullptr) {
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

bool Sa::owesAllForMarks(AttributeId attr, U32 marks, U32 members) {
  if (side() != Side::owner || hasFlag(handlingScheduledFlowOut)) return false;
  if (marks <= U64{2} * members + boundLog()->limits().marks) return false;
  flowOut()->oweAgain(attr);
  return true;
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

bool Sa::isInWalkOf(AttributeId attr) const {
  Demuxer const* const demuxer = streamDemuxer();
  if (demuxer == nullptr || !demuxer->hasFlowIns()) return false;
  Ptr<FlowIn> const flowIn = demuxer->flowIn(entityId());
  return flowIn && flowIn->aid() == attr;
}

void Sa::scalarOwed(U32 slot) noexcept {
  if (flowOut()) flowOut()->slotBitIs(slot, true);
}

// ---- Markers, announcement, sync mode

void Sa::sendTransactionMarker(AttributeId attr, AttrTransactionType type, U32 arg) {
  // What an owner holds is not swept by a replica, which may not know all of it. An abort concerns its own text alone.
  if (side() == Side::replica && type != abortMarker) return;
  if (nboAttrLogOut() == nullptr) return;
  // A child of the far side's that is under way is not mentioned, and is not to be swept there.
  if (type == beginMarker && hasChildOfPeers_) streamDemuxer()->ackIfMoved();
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
