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
  if (old) {
    for (FlowOut::VekPendingAbort::Map::IteratorConst it(&old->pendingAbort()); it; ++it) {
      made->pendingAbortIs(it->key(), true);
    }
    if (old->isFull()) made->isFullIs(true);
    made->isSyncSentIs(old->isSyncSent());
    // The far side has the beginning of a walk or of a text: it is to forget it.
    if (old->bookmark() != nullptr || old->valueIter() != nullptr) made->pendingAbortIs(old->attrId(), true);
    adapter.freeResyncState(*old);
  }
  adapter.flowOut_ = made;
  adapter.flagsIs(StreamAdapter::noFlowOut, false);
  schedule_.queue(adapter);
}

Ptr<StreamAdapter> Demuxer::reactorDel(EntityId id) {
  Ptr<StreamAdapter> const adapter = adapters_.take(id);
  if (!adapter) return {};
  schedule_.remove(*adapter);
  flowInDel(id);
  if (Ptr<FlowOut> const flowOut = std::exchange(adapter->flowOut_, nullptr)) adapter->freeResyncState(*flowOut);
  adapter->flagsIs(StreamAdapter::noFlowOut, true);
  schedule_.unblock();  // an id is free
  return adapter;
}

Ptr<FlowIn> Demuxer::flowIn(EntityId id) const {
  auto const at = flowIns_.find(id.number());
  return at == flowIns_.end() ? Ptr<FlowIn>{} : at->second;
}

Ptr<FlowIn> Demuxer::flowInIs(EntityId id) {
  Ptr<FlowIn>& flowIn = flowIns_[id.number()];
  if (!flowIn) flowIn = make<FlowIn>();
  return flowIn;
}

void Demuxer::flowInDel(EntityId id) { flowIns_.erase(id.number()); }

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
  static thread_local NboAttrLog::DemuxerManager manager;
  return manager;
}

NboAttrLog::Demuxer* demuxFor(Ptr<NboAttrLog::In const> const& in) {
  return in == nullptr ? nullptr : in->demuxer();
}

}  // namespace Vek
