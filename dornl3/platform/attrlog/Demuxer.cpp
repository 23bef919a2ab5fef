#include "dornl3/platform/attrlog/Demuxer.h"

#include "dornl3/platform/attrlog/EntityAdapter.h"

#include <algorithm>

namespace Vek {

namespace NboAttrLog {

Demuxer::Demuxer(Out& out, U32 tag, Limits const& limits)
    : out_(&out), adapters_(tag, limits.entities), schedule_(out, adapters_) {
  globalNboAttrLogDemuxerManager().demuxerIs(*this);
}

Demuxer::~Demuxer() { globalNboAttrLogDemuxerManager().demuxerDel(*this); }

void Demuxer::createFlowOut(StreamAdapter& adapter, ConnectDesc const& desc, bool isFull, AttributeId startAttr) {
  Ptr<FlowOut> const old = adapter.flowOut();
  if (old && startAttr != 0) return;
  Ptr<FlowOut> const made = adapter.flowOutIs(adapter.boundLog(), desc, isFull, startAttr);
  if (isFull) adapter.joinSession();
  if (old) {
    for (FlowOut::VekPendingAbort::Map::IteratorConst it(&old->pendingAbort()); it; ++it) {
      made->pendingAbortIs(it->key(), true);
    }
    if (old->isFull()) made->isFullIs(true);
    made->isSyncSentIs(old->isSyncSent());
    // The far side has the beginning of a walk or of a text: it is to forget it.
    if (old->bookmark() != nullptr || old->valueIter() != nullptr) made->pendingAbortIs(old->iterAttr(), true);
    adapter.dropWalkState(*old);
  }
  adapter.flowOut_ = made;
  adapter.flagsIs(StreamAdapter::noFlowOut, false);
  barriers_.owes(adapter);
  schedule_.queue(adapter);
}

Ptr<StreamAdapter> Demuxer::reactorDel(EntityId id) {
  Ptr<StreamAdapter> const adapter = adapters_.take(id);
  if (!adapter) return {};
  if (adapter->hasAlias_) adapters_.takeAliases(*adapter);
  adapter->leaveSession();
  schedule_.remove(*adapter);
  barriers_.walked(*adapter, true);
  flowInDel(id);
  if (Ptr<FlowOut> const flowOut = std::exchange(adapter->flowOut_, nullptr)) adapter->dropWalkState(*flowOut);
  adapter->flagsIs(StreamAdapter::noFlowOut, true);
  if (id.isAssigned()) schedule_.unblock();  // one is free
  return adapter;
}

void Demuxer::unbind(StreamAdapter& adapter) {
  Ptr<StreamAdapter> const held(&adapter);
  remount([&adapter] { adapter.doRemountSelf(nullptr); });
}

void Demuxer::remountDone() {
  for (Remount const& remount : std::exchange(remounts_, {})) {
    StreamAdapter& left = *remount.adapter;
    if (Ptr<FlowOut> const flowOut = std::exchange(left.flowOut_, nullptr)) left.dropWalkState(*flowOut);
    left.flagsIs(StreamAdapter::noFlowOut, true);
    left.leaveSession();
    left.out_ = remount.out;
    if (remount.out) {
      left.entityIdIs(AdapterTable::unassignedId());
      if (Demuxer* const other = left.streamDemuxer()) other->adapters().enter(left.entityId(), left);
    } else {
      left.notifierIs(nullptr);
    }
    retired_.push_back(remount.adapter);
  }
  if (!isBusy_) retire();
}

void Demuxer::remountNoted(StreamAdapter& adapter, Ptr<Out> const& out) {
  remounts_.push_back({&adapter, out});
  schedule_.remove(adapter);
  barriers_.walked(adapter, true);
  flowInDel(adapter.entityId());
  if (adapters_.take(adapter.entityId()) && adapter.hasAlias_) adapters_.takeAliases(adapter);
  // One is free. A child that got none leaves as well: those that wait would wake each other for ever.
  if (adapter.entityId().isAssigned()) schedule_.unblock();
}

bool Demuxer::checkEphemeralEntityDeletion(Ptr<Entity> const& child, EntityId id, bool mayThrow) {
  if (!child) return false;
  Ptr<Entity::VekNboAttrLogSa> const adapter = child->vekNboAttrLogSa(Ptr<Out const>(out_));
  if (!adapter || !adapter->entityId().isAssigned() || adapter->hasFlag(StreamAdapter::resyncStale)) return false;
  if (adapters_.find(id) == adapter.ptr() || isSameMadeAtBothEnds(*adapter)) return false;
  if (mayThrow) throw NameInUseException();
  return true;
}

bool Demuxer::isSameMadeAtBothEnds(StreamAdapter const& adapter) const noexcept {
  return adapters_.isOurs(adapter.entityId()) && ackFromPeer_ < adapter.boundAt_;
}

bool Demuxer::isBindUnderWay(StreamAdapter const& child, StreamAdapter const& parent) const noexcept {
  return isSameMadeAtBothEnds(child) && child.boundIn_ == parent.entityId();
}

Ptr<FlowIn> Demuxer::flowIn(EntityId id) const {
  auto const at = flowIns_.find(id.number());
  return at == flowIns_.end() ? Ptr<FlowIn>{} : at->second;
}

Ptr<FlowIn> Demuxer::flowInIs(EntityId id) {
  Ptr<FlowIn>& flowIn = flowIns_[id.number()];
  if (!flowIn) flowIn = make<FlowIn>();
  out_->hasFlowInsIs(true);
  return flowIn;
}

void Demuxer::flowInDel(EntityId id) {
  if (flowIns_.erase(id.number()) == 0) return;
  out_->hasFlowInsIs(!flowIns_.empty());
  StreamAdapter const* const adapter = adapters_.find(id);
  if (adapter != nullptr && !Schedule::isOwing(*adapter)) barriers_.walked(*adapter, true);
}

bool Demuxer::holdsBack(StreamAdapter const& adapter) const {
  if (!hasFlowIns()) return false;
  Ptr<FlowIn> const flowIn = this->flowIn(adapter.entityId());
  return flowIn && flowIn->hasLocalChange();
}

void Demuxer::notReplicatedIs(String8 const& path, bool on) {
  std::erase(notReplicated_, path);
  if (on && notReplicated_.size() < mostNotReplicated) notReplicated_.push_back(path);
  out_->isWatchedIs(!notReplicated_.empty());
}

void Demuxer::ackIfMoved() {
  if (processed_ == ackSent_) return;
  ackSent_ = processed_;
  out_->nextHeaderIs({.entityId = connectionId, .attribute = ackRecord, .payloadSize = 8});
  OutPtr const out(out_);
  out << Vek::Connection::Out::tokenOpen << processed_ << Vek::Connection::Out::tokenClose;
}

void Demuxer::teardown() noexcept {
  schedule_.clear();
  flowIns_.clear();
  out_->hasFlowInsIs(false);
  for (Ptr<StreamAdapter> const& adapter : adapters_.all()) {
    reactorDel(adapter->entityId());
    adapter->notifierIs(nullptr);
  }
  schedule_.clear();
}

bool DemuxerManager::has(Demuxer const* demuxer) const noexcept {
  return std::find(demuxers_.begin(), demuxers_.end(), demuxer) != demuxers_.end();
}

}  // namespace NboAttrLog

NboAttrLog::DemuxerManager& globalNboAttrLogDemuxerManager() {
  // It is never destroyed: what has static storage may let entities go after the objects of the thread have gone.
  // Without demuxers it owns nothing.
  union Lasting {
    constexpr Lasting() noexcept : manager() {}
    constexpr ~Lasting() {}  // NOLINT(modernize-use-equals-default): a defaulted one is deleted, for the member has one
    NboAttrLog::DemuxerManager manager;
  };
  static constinit thread_local Lasting lasting;
  return lasting.manager;
}

NboAttrLog::Demuxer* demuxFor(Ptr<NboAttrLog::In const> const& in) { return in == nullptr ? nullptr : in->demuxer(); }

}  // namespace Vek
