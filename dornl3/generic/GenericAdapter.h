// GenericAdapter: the reactor of an entity of type X that hands typed events on to its generic. An
// X::GenericIf_::GenericIf_Adapter_ derives from it and overrides X's slots; each calls the generic's operation of the
// same name, if the generic is still there.
// Owner: the generic, see GenericIfEntity. It holds its entity weakly. Thread: the entity's. Re-entrancy: a subscriber
// may do what a reactor may, see ReactorWalk.
#pragma once

#include "dornl3/platform/vek/GenericIfEntity.h"

namespace Vek {

template <class X>
class GenericAdapter : public X::Notifiee, public GenericAdapterLink {
 public:
  using Generic = typename X::GenericIf_;

  GenericAdapter(Ptr<X> const& entity, Generic& reactor) : GenericAdapterLink(&reactor) {
    this->isRegisteredNotifieeIs(true);
    this->notifierIs(entity);
    this->isWeakReferenceIs(true);
  }

  /// The generic that is served; null once it is gone.
  [[nodiscard]] Generic* reactor() const noexcept { return static_cast<Generic*>(GenericAdapterLink::reactor()); }
  [[nodiscard]] Ptr<Generic> vekReactorAdapter() { return reactor(); }
  [[nodiscard]] Ptr<Generic const> vekReactorAdapter() const { return reactor(); }
  /// Serves another; takes no reference.
  void vekReactorAdapterIs(Ptr<Generic> const& reactor) { reactorIs(reactor.ptr()); }

  [[nodiscard]] Ptr<PtrInterface::NotifieeConst const> vekReactor() const override { return vekReactorAdapter(); }
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
    hasNotificationActiveIs(false);  // off the list, it follows nobody any more
  }

  void vekDoZombieReactors(bool zombie) override {
    if (zombie == this->vekMarkedForDeletion()) return;
    if (this->rawNotifier() != nullptr) hasNotificationActiveIs(!zombie);
    this->vekMarkedForDeletionIs(zombie);
  }

 protected:
  /// Calls that operation of the generic; a generic that is gone hears nothing.
  template <class... K>
  void forward(void (Generic::*slot)(K...), K const&... key) {
    if (reactor() != nullptr) (reactor()->*slot)(key...);
  }
};

}  // namespace Vek
