#include "dornl3/core/NotifieeConst.h"

#include "dornl3/core/ReactorChain.h"

namespace Vek {

using Notifiee = PtrInterface::NotifieeConst;

PtrInterface::NotifieeConst::NotifieeConst() noexcept { PtrInterface::hasNotificationActiveIs(true); }

PtrInterface::NotifieeConst::~NotifieeConst() {
  if (notifier_ != nullptr && !weak_) notifier_->referencesDec();
}

void Notifiee::hasNotificationActiveIs(bool on) {
  if (on == hasNotificationActive()) return;
  PtrInterface::hasNotificationActiveIs(on);
  if (on) {
    if ((flags_.word_ & wasRegisteredBit) != 0) isRegisteredNotifieeIs(true);
  } else {
    flags_.word_ = registered_ ? flags_.word_ | wasRegisteredBit : flags_.word_ & ~wasRegisteredBit;
    isRegisteredNotifieeIs(false);
  }
}

Ptr<Notifiee const> Notifiee::vekReactor() const { return this; }

Notifiee const* Notifiee::vekRawReactor() const noexcept { return this; }

bool Notifiee::isStreamAdapter() const noexcept { return false; }

void Notifiee::isRegisteredNotifieeIs(bool on) const { registered_ = on; }

void Notifiee::vek_bitSetIs(Vek_BitSet flags) { flags_.notificationFlagsIs(flags); }

Name Notifiee::name() const { return {}; }

void Notifiee::notifierIs(Ptr<PtrInterface const> const& n) { notifierAssign(n.ptr()); }

void Notifiee::notifierAssign(PtrInterface const* n) {
  if (n == notifier_) return;
  if (n != nullptr && !weak_) n->referencesInc();
  PtrInterface const* const old = std::exchange(notifier_, n);
  if (old != nullptr && !weak_) old->referencesDec();
}

void Notifiee::isWeakReferenceIs(bool on) {
  if (on == weak_) return;
  weak_ = on;
  if (notifier_ == nullptr) return;
  if (on) {
    notifier_->referencesDec();
  } else {
    notifier_->referencesInc();
  }
}

void Notifiee::handleNotification(ActivityConfig* config) {
  int const pending = std::exchange(pendingAttribute_, 0);
  handleDefault(config, pending > 0 ? static_cast<AttributeId>(pending) : 0, pending < 0);
}

void Notifiee::handleDefault(ActivityConfig*, AttributeId id, bool isSweep) {
  isSweep || id == 0 ? onNotification() : onAttribute(id);
}

Activity* Notifiee::vekFwkActivity() { return nullptr; }
Activity const* Notifiee::vekFwkActivity() const { return const_cast<NotifieeConst*>(this)->vekFwkActivity(); }
Activity* Notifiee::actsm() { return vekFwkActivity(); }

void Notifiee::onAttribute(AttributeId) {}
void Notifiee::onNotification() {}
void Notifiee::onCollectionNotification(String8) {}
void Notifiee::onNotificationException() {}
void Notifiee::onNotificationException(AttributeId) { onNotificationException(); }
void Notifiee::handleNotificationException(AttributeId id) { onNotificationException(id); }
void Notifiee::handleNotificationException() { onNotificationException(); }

void Notifiee::onZeroReferences() {
  if (weak_ && !registered_) notifierIs(nullptr);
}

void Notifiee::follow(PtrInterface const* notifier, ListOf listOf) {
  Ptr<PtrInterface const> const old = notifier_;
  if (notifier == old) return;
  notifierAssign(notifier);
  if (!registered_) return;
  if (old) listOf(*old).remove(*this);
  if (notifier != nullptr) listOf(*notifier).insert(*this);
}

void Notifiee::registerWith(bool on, ListOf listOf) const {
  if (on == registered_) return;
  registered_ = on;
  if (notifier_ == nullptr) return;
  Ptr<PtrInterface const> const held = notifier_;
  if (on) {
    listOf(*held).insert(*this);
  } else {
    listOf(*held).remove(*this);
    if (held->stateBit(heldBit)) letNotifierGo();
  }
}

void Notifiee::leaveForGood(ListOf listOf) noexcept {
  if (notifier_ == nullptr || !registered_ || vekMarkedForDeletion()) return;
  // A weak reactor's notifier still has its list: with that the reactor would have let it go.
  listOf(*notifier_).remove(*this);
}

}  // namespace Vek
