#include "dornl3/platform/attrlog/StreamAdapter.h"

#include "dornl3/platform/attrlog/Demuxer.h"

namespace Vek {

using NboAttrLog::Demuxer;
using NboAttrLog::FlowOut;

StreamAdapter::StreamAdapter(Vek_BitSet flags, U32 count, Ptr<NboAttrLog::Out> const& out)
    : count_(count), id_(NboAttrLog::AdapterTable::unassignedId()), out_(out) {
  NotifieeConst::vek_bitSetIs(flags);
  flagsIs(noFlowOut | logEnabled, true);
  // It is switched on when the binding is complete; the root of reactors is born switched on.
  stateBitIs(notificationActiveBit, false);
}

StreamAdapter::~StreamAdapter() = default;

// The adapter itself never stands on a list: what is switched is whether the demuxer knows it.
void StreamAdapter::hasNotificationActiveIs(bool on) {
  if (on == hasNotificationActive()) return;
  stateBitIs(notificationActiveBit, on);
  Demuxer* const demuxer = streamDemuxer();
  if (on && demuxer != nullptr) demuxer->adapters().enter(id_, *this);
}

void StreamAdapter::vek_bitSetIs(Vek_BitSet flags) {
  bool const wasSuppressed = hasFlag(outputSuppressed);
  PtrInterface::NotifieeConst::vek_bitSetIs(flags);
  if (wasSuppressed && !hasFlag(outputSuppressed)) oweEverything();
}

void StreamAdapter::handleSyncMode() {}

AttributeId StreamAdapter::handleAttrFlowOut(AttributeId) {
  if (!flowOut_ || !flowOut_->isFull() || flowOut_->isSyncSent() || !isMountRoot_) return 0;
  NboAttrLog::Out const* const out = nboAttrLogOut();
  if (out == nullptr || !out->hasSufficientBuffer()) return NboAttrLog::syncModeRecord;
  sendSyncMode(synchronising);
  flowOut_->isSyncSentIs(true);
  return 0;
}

void StreamAdapter::freeResyncState(FlowOut&) {}
void StreamAdapter::vekOnInit() { doAssignEntityId(); }
void StreamAdapter::vekInstantiateSerialize() {}

void StreamAdapter::doRemountSelf(Ptr<NboAttrLog::Out> const& out) {
  Demuxer* const demuxer = streamDemuxer();
  if (demuxer != nullptr) demuxer->remount([&] { demuxer->remountNoted(*this, out); });
}

Demuxer const* StreamAdapter::streamDemuxer() const { return out_ ? out_->demuxer() : nullptr; }
Demuxer* StreamAdapter::streamDemuxer() { return out_ ? out_->demuxer() : nullptr; }

void StreamAdapter::doSerializeOrphan() {}
void StreamAdapter::handleAttrDeserialization(int, DeserializationOptions, U32, Ptr<NboAttrLog::In> const&) {}
void StreamAdapter::handleAttrTransaction(AttributeId, AttrTransactionType, U32) {}

void StreamAdapter::doAssignEntityId() {
  Demuxer* const demuxer = streamDemuxer();
  if (demuxer != nullptr && !id_.isAssigned()) doEntityIdIs(demuxer->adapters().newId(), *demuxer, false);
}

Ptr<FlowOut> StreamAdapter::flowOutIs(Ptr<NboAttrLog::Out> const&, ConnectDesc const&, bool, AttributeId) { return {}; }
EntityId StreamAdapter::realEntityId() const { return id_; }
void StreamAdapter::doNotification(int, void const*) {}

void StreamAdapter::syncModeIs(SyncMode mode) {
  syncMode_ = mode;
  handleSyncMode();
}

void StreamAdapter::entityIdIs(EntityId id) { id_ = id; }

bool StreamAdapter::hasUnifiedEntityId() const {
  auto* const demuxer = const_cast<StreamAdapter*>(this)->streamDemuxer();
  return id_.isAssigned() && demuxer != nullptr && demuxer->adapters().find(id_) == this;
}

StreamAdapter::SyncMode StreamAdapter::SyncModeInstance(U32 number) const {
  if (side_ != Side::plain && number != inStep && number != synchronising) {
    throw ProtocolException(format("sync mode %u", number));
  }
  return static_cast<SyncMode>(number);
}

bool StreamAdapter::continueFlowOut() const noexcept {
  if (!flowOut_ || nboAttrLogOut() == nullptr) return false;
  return out_->demuxer()->schedule().mayGoOn();
}

bool StreamAdapter::prepareImmediateTransmission(AttributeId attr, bool bufferShort) {
  NboAttrLog::Out const* const out = nboAttrLogOut();
  if (hasFlag(handlingScheduledFlowOut)) {
    // The walk passes on from an attribute, and drops the mark of a key, unless it is asked to yield.
    bool const mayWrite = !bufferShort && out != nullptr && out->hasSufficientBuffer();
    if (!mayWrite) flowOut_->yieldRequestedIs(true);
    return mayWrite;
  }
  if (flowOut_->valueIter() != nullptr && attr == flowOut_->iterAttr()) {
    // The text that is part-way out has changed: the far side forgets the pieces that it has.
    dropWalkState(*flowOut_);
    flowOut_->pendingAbortIs(attr, true);
  }
  return false;
}

void StreamAdapter::dropWalkState(FlowOut& flowOut) {
  AttributeId const standsOn = flowOut.attrId();
  flowOut.attrIdIs(flowOut.iterAttr());
  freeResyncState(flowOut);
  flowOut.attrIdIs(standsOn);
}

Ptr<NboAttrLog::SyncSession> StreamAdapter::runningSession() const {
  return session_ && session_->isRunning() ? session_ : Ptr<NboAttrLog::SyncSession>{};
}

void StreamAdapter::joinSession() {
  // It is kept beyond this one's own walk: those below may be walking still, and what is bound meanwhile joins them.
  if (!runningSession()) session_ = isMountRoot_ ? make<NboAttrLog::SyncSession>(*this) : nullptr;
  if (inSession_ || !session_) return;
  inSession_ = true;
  session_->walkBegins();
}

void StreamAdapter::leaveSession() noexcept {
  if (isMountRoot_ && session_) session_->rootDel();
  walkEnded();
}

void StreamAdapter::walkEnded() noexcept {
  if (!isMountRoot_) syncMode_ = inStep;  // a root is when the far side is told
  if (!std::exchange(inSession_, false)) return;
  Demuxer* const demuxer = streamDemuxer();
  if (session_->walkEnds() && session_->root() != nullptr && demuxer != nullptr) {
    demuxer->schedule().inStepIs(*session_->root());
  }
}

void StreamAdapter::doThis() {
  syncModeIs(synchronising);
  if (flowOut_ && flowOut_->isFull() && !flowOut_->isSyncSent() && flowOut_->resume() == 0) {
    joinSession();  // the walk that waits may have been asked for before there was one
    return;
  }
  if (Demuxer* const demuxer = streamDemuxer()) demuxer->createFlowOut(*this, {}, true, 0);
}

void StreamAdapter::oweEverything() noexcept {
  if (Demuxer* const demuxer = streamDemuxer()) demuxer->schedule().oweEverything(*this);
}

void StreamAdapter::openRecord(NboAttrLog::Out& out, int attr, U32 fixedSize, bool isVariable, U32 kind) {
  out.nextHeaderIs({.entityId = id_,
                    .attribute = attr,
                    .variableSize = static_cast<U8>(isVariable ? 1 : 0),
                    .payloadSize = fixedSize,
                    .recordKind = kind});
}

void StreamAdapter::sendSyncMode(SyncMode mode) {
  if (nboAttrLogOut() == nullptr) return;
  openRecord(*out_, NboAttrLog::syncModeRecord, 4, false);
  out_ << Connection::Out::tokenOpen << static_cast<U32>(mode) << Connection::Out::tokenClose;
  recordWritten(*out_);
  if (mode != syncMode_) syncModeIs(mode);
}

void StreamAdapter::doEntityIdIs(EntityId id, Demuxer& demuxer, bool fromPeer) {
  NboAttrLog::AdapterTable& adapters = demuxer.adapters();
  StreamAdapter* const other = adapters.find(id);
  bool const takesPeersWord = fromPeer && side_ == Side::replica;
  if (other == this) {
    if (takesPeersWord) entityIdIs(id);
    return;
  }
  if (other != nullptr) throw ProtocolException("an entity id that another entity has");
  Ptr<StreamAdapter> const held(this);
  if (fromPeer && demuxer.isSameMadeAtBothEnds(*this)) {
    // Records under either id are for it, and the owner's id stays.
    adapters.enter(id, *this);
    hasAlias_ = true;
    if (takesPeersWord) entityIdIs(id);
    return;
  }
  demuxer.flowInDel(id_);
  adapters.take(id_);
  if (hasAlias_) adapters.takeAliases(*this);
  hasAlias_ = false;
  entityIdIs(id);
  adapters.enter(id, *this);
  if (flowOut_) demuxer.schedule().queue(*this);  // it may have been blocked for want of an id
}

}  // namespace Vek
