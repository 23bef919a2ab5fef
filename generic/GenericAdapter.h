// GenericAdapter: the reactor of an entity of type X that turns typed events into numbered ones for its generic. An
// X::GenericIf_::GenericIf_Adapter_ derives from it and overrides X's slots.
// Owner: the generic, see GenericIfEntity. It holds its entity weakly.
#pragma once

#include "frame/TypeFrame.h"
#include "platform/vek/GenericIfEntity.h"

namespace Vek {

template <class X>
class GenericAdapter : public X::Notifiee, public GenericAdapterLink {
 public:
  GenericAdapter(Ptr<X> const& entity, GenericIfEntity& reactor) : GenericAdapterLink(&reactor) {
    this->isRegisteredNotifieeIs(true);
    this->notifierIs(entity);
    this->isWeakReferenceIs(true);
  }

  [[nodiscard]] Ptr<PtrInterface::NotifieeConst const> vekReactor() const override { return vekRawReactor(); }
  [[nodiscard]] PtrInterface::NotifieeConst const* vekRawReactor() const noexcept override { return reactor(); }

  void hasNotificationActiveIs(bool on) override {
    if (on == this->hasNotificationActive()) return;
    X::Notifiee::hasNotificationActiveIs(on);
    if (reactor() != nullptr && !this->vekMarkedForDeletion()) reactor()->hasNotificationActiveIs(on);
  }

  void onNotificationException(AttributeId id) override {
    if (reactor() != nullptr) reactor()->PtrInterface::NotifieeConst::onNotificationException(id);
  }

  void onZeroReferences() override {
    if (reactor() != nullptr) reactor()->PtrInterface::NotifieeConst::onZeroReferences();
    hasNotificationActiveIs(false);
    X::Notifiee::onZeroReferences();
  }

  void vekDoZombieReactors(bool zombie) override {
    if (zombie == this->vekMarkedForDeletion()) return;
    if (this->rawNotifier() != nullptr) hasNotificationActiveIs(!zombie);
    this->vekMarkedForDeletionIs(zombie);
  }

 protected:
  void forward(AttributeId id) {
    if (reactor() != nullptr) reactor()->onScalarEvent(id);
  }
  template <class K>
  void forward(AttributeId id, K const& key) {
    if (reactor() != nullptr) reactor()->onKeyedEvent(id, typeOf<K>(), &key);
  }
  void forwardWhole(AttributeId id) {
    if (reactor() != nullptr) reactor()->onWholeEvent(id);
  }
};

}  // namespace Vek
