#include "dornl3/platform/attrlog/EntityBinding.h"

#include "dornl3/core/ValidPtr.h"
#include "dornl3/platform/attrlog/Connection.h"

namespace Vek {

using Sa = Entity::VekNboAttrLogSa;

namespace {

// The adapter that a reactor of an entity belongs to; null for any other reactor.
Sa* adapterBehind(ReactorChain::Member& reactor) noexcept {
  auto const* const raw = reactor.vekRawReactor();
  if (raw == nullptr || !raw->isStreamAdapter()) return nullptr;
  return const_cast<Sa*>(static_cast<Sa const*>(raw));
}

bool isLive(Sa& adapter) {
  NboAttrLog::Demuxer const* const demuxer = adapter.streamDemuxer();
  return demuxer != nullptr && demuxer->state() == NboAttrLog::open;
}

}  // namespace

Ptr<Sa> logAdapterOf(Entity const& entity, ReactorChain const& reactors, Ptr<NboAttrLog::Out const> const& out) {
  for (auto* at = reactors.head(); at != nullptr; at = ReactorChain::next(*at)) {
    Sa* const adapter = adapterBehind(*at);
    if (adapter == nullptr) continue;
    if (!out && adapter->hasUnifiedEntityId() && isLive(*adapter)) return adapter;
    if (adapter->nboAttrLogOut() == out.ptr()) return adapter;
    if (!out) continue;
    NboAttrLog::Demuxer* const demuxer = demuxFor(out->reverseLog());
    if (demuxer == nullptr) return {};
    if (!adapter->entityId().isAssigned()) continue;
    auto* const known = static_cast<Sa*>(demuxer->adapters().find(adapter->entityId()));
    if (known != nullptr && known->rawNotifier() == &entity) return known;
  }
  return {};
}

Ptr<Sa> channelSiblingOf(ReactorChain const& reactors, Ptr<Sa> const& adapter) {
  for (auto* at = reactors.head(); at != nullptr; at = ReactorChain::next(*at)) {
    Sa* const other = adapterBehind(*at);
    if (other == nullptr || other == adapter.ptr() || !other->entityId().isAssigned() || !isLive(*other)) continue;
    bool const alone = adapter->channel() == nullptr && other->hasUnifiedEntityId();
    if (alone || adapter->channel() == other->channel()) return other;
  }
  return {};
}

Ptr<Sa> logAdapterDel(Entity& entity, Ptr<NboAttrLog::Out const> const& out) {
  NboAttrLog::Demuxer* const demuxer = demuxFor(out ? out->reverseLog() : Ptr<NboAttrLog::In>{});
  if (demuxer == nullptr) return {};
  Ptr<Sa> const adapter = entity.vekNboAttrLogSa(out);
  if (adapter) demuxer->reactorDel(adapter->entityId());
  return adapter;
}

Ptr<Sa> boundToLog(Entity& entity, bool (*isOwn)(Sa& adapter), PtrInterface::NotifieeConst::Vek_BitSet flags,
                   Ptr<NboAttrLog::Out> const& out) {
  static_cast<void>(ValidPtr<NboAttrLog::Out>(out));
  Ptr<Sa> const present = entity.vekNboAttrLogSa(out);
  if (!present) return {};
  if (!isOwn(*present)) {
    entity.vekNboAttrLogSaDel(out);
    return {};
  }
  if ((present->flags() & PtrInterface::NotifieeConst::Vek_BitSet::notificationBitMask()) != flags.word())
    present->vek_bitSetIs(flags);
  return present;
}

void logReactorEnds(PtrInterface::NotifieeConst& reactor, Sa* adapter) {
  Ptr<PtrInterface const> const self(&reactor);
  Ptr<Sa> const held(adapter);
  if (held) held->Sa::onZeroReferences();
  reactor.hasNotificationActiveIs(false);
}

void Entity::vekLeaveLogs() {
  auto const& manager = globalNboAttrLogDemuxerManager();
  for (NboAttrLog::Demuxer* const demuxer : manager.nboDemuxerIterator()) {
    if (!manager.has(demuxer)) continue;
    if (Ptr<Sa> const adapter = vekNboAttrLogSa(Ptr<NboAttrLog::Out const>(&demuxer->out()))) demuxer->unbind(*adapter);
  }
}

void Entity::vekLetAdaptersGo() noexcept {
  for (NboAttrLog::Demuxer* const demuxer : globalNboAttrLogDemuxerManager().nboDemuxerIterator()) {
    for (Ptr<StreamAdapter> const& adapter : demuxer->adapters().all()) {
      if (adapter->rawNotifier() != this) continue;
      try {
        static_cast<Sa&>(*adapter).onZeroReferences();
      } catch (std::exception const&) {
        // It has let the entity go; what the far side was not told it hears at the end of the connection.
      }
    }
  }
}

// Of an entity whose type has no bindings.

Ptr<Sa const> Entity::vekNboAttrLogSa(Ptr<NboAttrLog::Out const> const&) const { return {}; }
bool Entity::vekHasAttrLogInterface() const { return false; }
Ptr<Sa> Entity::vekNboAttrLogSa(Ptr<NboAttrLog::Out const> const&) { return {}; }
Ptr<Sa> Entity::vekNboAttrLogSaForMsgChannel(Ptr<Sa> const&) const { return {}; }
Ptr<Sa> Entity::vekNboAttrLogSaIs(PtrInterface::NotifieeConst::Vek_BitSet, U32, Ptr<NboAttrLog::Out> const&,
                                  PtrInterface*) {
  throwInternalException(format("a %s cannot be bound to a log", fwkType()->name().charPtr()));
}
Ptr<Sa> Entity::vekNboAttrLogSaDel(Ptr<NboAttrLog::Out const> const&) { return {}; }

}  // namespace Vek
