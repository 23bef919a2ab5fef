// AdapterFrame: the two objects that bind an entity of type X to a log. X::VekNboAttrLogSa does the work; its
// VekNboAttrLogSaAdapter_ stands on the entity's list and hands each change on. What they define themselves are
// one-line calls of these. Owner: the stream adapter holds the reactor adapter, which holds neither it nor the entity.
#pragma once

#include "dornl3/attrlog/Sweep.h"
#include "dornl3/platform/attrlog/Demuxer.h"
#include "dornl3/platform/attrlog/EntityBinding.h"

namespace Vek {

/// The reactor of an entity of type X that hands each change on to its stream adapter, if that is still there. A walk
/// over reactors holds the reactor alone: a slot that does more than to write a record holds its adapter meanwhile.
template <class X>
class LogReactor : public X::Notifiee {
 public:
  using Adapter = typename X::VekNboAttrLogSa;

  LogReactor(Ptr<X> const& entity, Adapter& adapter) : adapter_(&adapter) {
    this->isRegisteredNotifieeIs(true);
    this->notifierIs(entity);
    this->isWeakReferenceIs(true);
  }

  [[nodiscard]] Ptr<Adapter> vekReactorAdapter() { return adapter_; }
  [[nodiscard]] Ptr<Adapter const> vekReactorAdapter() const { return adapter_; }
  /// Serves another; takes no reference.
  void vekReactorAdapterIs(Ptr<Adapter> const& adapter) { adapter_ = adapter.ptr(); }
  [[nodiscard]] Ptr<PtrInterface::NotifieeConst const> vekReactor() const override { return vekReactorAdapter(); }
  [[nodiscard]] PtrInterface::NotifieeConst const* vekRawReactor() const noexcept override { return adapter_; }

  void hasNotificationActiveIs(bool on) override {
    if (on == this->hasNotificationActive()) return;
    X::Notifiee::hasNotificationActiveIs(on);
    if (adapter_ != nullptr && !this->vekMarkedForDeletion()) adapter_->hasNotificationActiveIs(on);
  }
  void onNotificationException(AttributeId attr) override {
    if (adapter_ != nullptr) adapter_->handlerFailed(attr);
  }
  void onZeroReferences() override { logReactorEnds(*this, adapter_); }

 protected:
  void forward(void (Adapter::*slot)()) {
    if (adapter_ != nullptr) (adapter_->*slot)();
  }
  template <class K>
  void forward(void (Adapter::*slot)(K), K const& key) {
    if (adapter_ != nullptr) (adapter_->*slot)(key);
  }

 private:
  Adapter* adapter_;
};

/// A new reactor adapter, on its entity's list and switched on.
template <class Reactor, class X>
[[nodiscard]] Ptr<Reactor> logReactor(Ptr<X> const& entity, typename X::VekNboAttrLogSa& adapter) {
  Ptr<Reactor> const made = make<Reactor>(entity, adapter);
  made->hasNotificationActiveIs(true);
  return made;
}

/// The end of a stream adapter's constructor: made while a record is applied, it joins the synchronisation that runs.
template <class Attr, class Sa>
void joinSynchronisation(Sa& adapter) {
  if (adapter.modeOpensTransactions()) transactionsFollowMode<Attr>(adapter);
}

/// The beginning of a stream adapter's destructor: its reactor adapter leaves the entity.
template <class Reactor>
void letReactorGo(Ptr<PtrInterface::NotifieeConst> const& reactor) noexcept {
  if (!reactor) return;
  reactor->isRegisteredNotifieeIs(false);
  reactor->notifierIs(nullptr);
  static_cast<Reactor&>(*reactor).vekReactorAdapterIs(nullptr);
}

/// Finds or makes the adapter of an entity for `out`; see Entity::vekNboAttrLogSaIs.
template <class X>
Ptr<Entity::VekNboAttrLogSa> bindToLog(X& entity, PtrInterface::NotifieeConst::Vek_BitSet flags, U32 count,
                                       Ptr<NboAttrLog::Out> const& out, PtrInterface* owner) {
  using Sa = typename X::VekNboAttrLogSa;
  auto const isOwn = [](Entity::VekNboAttrLogSa& adapter) { return dynamic_cast<Sa*>(&adapter) != nullptr; };
  if (auto const present = boundToLog(entity, isOwn, flags, out)) return present;
  Ptr<Sa> const made = make<Sa>(flags, Ptr<X>(&entity), count, out, owner);
  made->hasNotificationActiveIs(true);
  return made;
}

/// Reports an attribute, or a key of a collection, as if it had changed.
template <class Attr, class Sa>
void notifyLog(Sa& adapter, int attr, void const* key) {
  if (adapter.rawNotifier() == nullptr) return;
  auto const number = static_cast<AttributeId>(attr);
  visit(typename Attr::All{}, attr < 0 ? AttributeId{0} - number : number, [&](auto attribute) {
    using A = decltype(attribute);
    if constexpr (holdsKeys<A>) {
      (adapter.*A::logHandler)(*static_cast<typename A::Key const*>(key));
    } else if constexpr (isLogged<A>) {
      if (attr > 0) (adapter.*A::logHandler)();
    }
  });
}

/// See StreamAdapter::doRemountSelf: the children follow, each with no log to go to.
template <class Attr, class X, class Sa>
void remountWithChildren(Sa& adapter, Ptr<NboAttrLog::Out> const& out) {
  NboAttrLog::Demuxer* const demuxer = adapter.streamDemuxer();
  if (demuxer == nullptr) return;
  Ptr<Entity> const held = adapter.vekNotifierEntity();
  demuxer->remount([&] {
    adapter.StreamAdapter::doRemountSelf(out);
    if (!held) return;
    auto& entity = static_cast<X&>(*held);
    forEach(typename Attr::All{}, [&](auto attribute) {
      using A = decltype(attribute);
      if constexpr (holdsChildrenByKey<A>) {
        for (typename A::Child::Map::Iterator it(&A::field(entity)); it; ++it) (adapter.*A::logRemount)(it.ptr());
      } else if constexpr (holdsOneChild<A>) {
        if (Ptr<typename A::Child> const child = A::field(entity)) (adapter.*A::logRemount)(child);
      }
    });
  });
}

/// Announces an entity: its type, its name and the attributes that its constructor takes, its id.
template <class Attr, class X, class Sa>
void serializeOrphan(Sa& adapter) {
  NboAttrLog::OutPtr const out = adapter.orphanIs(Attr::fullName);
  if (!out) return;
  Ptr<Entity> const entity = adapter.vekNotifierEntity();
  forEach(typename Attr::All{}, [&](auto attribute) {
    using A = decltype(attribute);
    if constexpr (A::flags == VekAttr::AttrFlags::fixed()) out << A::field(static_cast<X const&>(*entity));
  });
  adapter.orphanClosed(out);
}

}  // namespace Vek
