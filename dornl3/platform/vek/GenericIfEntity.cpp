#include "dornl3/platform/vek/GenericIfEntity.h"

#include "dornl3/platform/vek/Builtin.h"
#include "dornl3/platform/vek/EntityText.h"
#include "dornl3/platform/vek/NamedType.h"

namespace Vek {

GenericIfPtrInterface::GenericIfPtrInterface(PtrInterface* object, bool isConst) : GenericIf(isConst) {
  PtrInterface::NotifieeConst::notifierIs(object);
}

GenericIfPtrInterface::~GenericIfPtrInterface() = default;

Ptr<PtrInterface const> GenericIfPtrInterface::obj() const { return rawNotifier(); }
Ptr<PtrInterface> GenericIfPtrInterface::obj() { return const_cast<PtrInterface*>(rawNotifier()); }

VekType const* GenericIfPtrInterface::type() const { return PtrInterface::_fwkType(); }

void const* GenericIfPtrInterface::voidPtrIs(Ptr<VekType const> const& t) const {
  if (t.ptr() != PtrInterface::_fwkType()) throwTypeException(String8(type()->name()));
  return rawNotifier();
}

String8 GenericIfPtrInterface::strRep() const { return valueToStrepOfRawPtr(rawNotifier(), typeid(Entity)); }

Ptr<GenericIf> GenericIfPtrInterface::clone() { return make<GenericIfPtrInterface>(obj().ptr(), isConst()); }

VekType* PtrInterface::_fwkType() {
  static VekType* const type = namedType("Vek::PtrInterface", sizeof(PtrInterface));
  return type;
}

GenericAdapterLink::~GenericAdapterLink() = default;

GenericIfEntity::GenericIfEntity(VekType const* type, PtrInterface* entity, bool isConst)
    : GenericIfPtrInterface(entity, isConst), type_(type) {}

GenericIfEntity::~GenericIfEntity() {
  if (activity_) activity_->dequeue(*this);
  if (!adapter_) return;
  link_->reactorIs(nullptr);  // silent from here on, whoever else holds it
  adapter_->notifierIs(nullptr);
}

void const* GenericIfEntity::voidPtrIs(Ptr<VekType const> const& t) const {
  if (t.ptr() != type_ && t.ptr() != Entity::_fwkType() && t.ptr() != PtrInterface::_fwkType()) {
    throwTypeException(String8(type_->name()));
  }
  return rawNotifier();
}

Entity& GenericIfEntity::entity() const {
  if (rawNotifier() == nullptr) throwTypeException(String8(type_->name()));
  return const_cast<Entity&>(static_cast<Entity const&>(*rawNotifier()));
}

String8 GenericIfEntity::attributeString(AttributeId id) const {
  return rawNotifier() == nullptr ? GenericIf::attributeString(id) : entity().attributeString(id);
}

void GenericIfEntity::activityIs(Ptr<Activity> const& activity) {
  if (activity == activity_) return;
  if (activity_) activity_->dequeue(*this);
  activity_ = activity;
  if (vekPendingAttribute() == 0) return;
  if (activity_) {
    activity_->enqueue(*this);
  } else {
    handleNotification(nullptr);
  }
}

Ptr<GenericIf> GenericIfEntity::clone() { return type_->genericIf_(obj().ptr(), isConst()); }

Ptr<GenericIf> GenericIfEntity::attributeOp(AttributeOp const& op, Ptr<GenericIf const> const& key,
                                            Ptr<GenericIf> const& value) {
  needMutable(op);
  VekAttr const* const attr = type_->attribute(op.attribute);
  if (attr == nullptr || op.op != OpGet) return GenericIf::attributeOp(op, key, value);
  if (key) throwBadIndexAttrException(String8(attr->name()));
  Entity& e = entity();
  auto const wrapped = [&](auto const& v) { return attr->valueType()->genericIf(&v, isConst()); };
  switch (op.attribute) {
  case Entity::keyAttr: {
    VekAttr const* const holder = e.parentAttr();
    if (holder == nullptr || attr->valueType() == Name::_fwkType()) return wrapped(e.name());
    return attributeOp({attributeId(String8(holder->keyAttrName())), OpGet}, nullptr, nullptr);
  }
  case Entity::nameAttr: return wrapped(e.name());
  case Entity::fullNameAttr: return wrapped(e.fullName());
  case Entity::parentAttrNumber: return VekType::genericIf(e.isRoot() ? nullptr : e.parent().ptr(), isConst());
  case Entity::parentAttrIdAttr: return wrapped(e.parentAttrId());
  case Entity::writeCountAttr: return wrapped(e.writeCount());
  case Entity::readCountAttr: return wrapped(e.readCount());
  case Entity::attrLogMarker: return wrapped(e.vekHasAttrLogInterface());
  default: return GenericIf::attributeOp(op, key, value);
  }
}

void GenericIfEntity::hasNotificationActiveIs(bool on) {
  if (on == hasNotificationActive()) return;
  GenericIf::hasNotificationActiveIs(on);
  if (adapter_) adapter_->hasNotificationActiveIs(on);
}

void GenericIfEntity::notifierIs(Ptr<PtrInterface const> const& n) {
  Ptr<PtrInterface const> const held = n;
  if (adapter_) adapter_->notifierIs(held);
  // An object of another type is nobody to the adapter, and must not be taken for an entity here.
  GenericIf::notifierIs(adapter_ ? adapter_->rawNotifier() : nullptr);
  isRegisteredNotifieeIs(false);
}

void GenericIfEntity::vekDoZombieReactors(bool zombie) {
  if (zombie == vekMarkedForDeletion()) return;
  if (link_ != nullptr) link_->vekDoZombieReactors(zombie);
  vekMarkedForDeletionIs(zombie);
}

GenericIfEntity::KeySlot& GenericIfEntity::slotOf(AttributeId id) {
  for (KeySlot& slot : slots_) {
    if (slot.id == id) return slot;
  }
  return slots_.emplace_back(KeySlot{id, {}});
}

// Nobody listens, and nothing waits for somebody who may: nobody can tell an event from none.
bool GenericIfEntity::isIdle() const noexcept { return subscriber() == nullptr && !activity_; }

void GenericIfEntity::sweepIs() {
  vekPendingAttributeIs(fullSweep);
  if (activity_) {
    activity_->enqueue(*this);
  } else {
    handleNotification(nullptr);
  }
}

void GenericIfEntity::tellScalar(AttributeId id) {
  if (isIdle() || vekOnAttribute(id, nullptr)) return;
  onAttribute(id);
}

void GenericIfEntity::tellKey(AttributeId id, VekType const* keyType, void const* key) {
  if (isIdle()) return;
  KeySlot& slot = slotOf(id);
  slot.lastKey = keyType->genericIf(key, isConst());
  tellLastKey(slot);
}

void GenericIfEntity::tellLastKey(KeySlot& slot) {
  if (vekOnAttribute(slot.id, &slot.pending)) return;
  Ptr<GenericIf const> const told = slot.lastKey;
  GenericIf::onAttribute(slot.id, told);
}

void GenericIfEntity::tellWhole(AttributeId id) { onAttribute(id); }

void GenericIfEntity::deliver(VekAttr const& attr, Force force) {
  attr.flags().isCollection() ? deliverKeyed(attr.id(), force) : tellScalar(attr.id());
}

void GenericIfEntity::deliverKeyed(AttributeId id, Force force) {
  KeySlot& slot = slotOf(id);
  U8 const pending = std::exchange(slot.pending, U8{0});
  if (force == Force::yes || pending > 1) {
    // One key cannot stand for several. This event takes the turn: what it causes waits.
    if (activity_) static_cast<void>(activity_->turnDel(*this));
    tellWhole(id);
  } else if (pending == 1) {
    tellLastKey(slot);
  }
}

void GenericIfEntity::handleNotification(ActivityConfig* config) {
  Ptr<GenericIfEntity> const held{this};  // a subscriber may drop the last reference
  int const pending = vekPendingAttribute();
  VekAttr const* const attr = pending > 0 ? type_->attribute(static_cast<AttributeId>(pending)) : nullptr;
  if (attr != nullptr && attr->flags().isSettable()) {
    vekPendingAttributeIs(0);
    deliver(*attr, Force::no);
    return;
  }
  GenericIf::handleNotification(config);
  if (pending < 0) sweep(pending == fullSweep ? Force::yes : Force::no);
}

void GenericIfEntity::sweep(Force force) {
  for (auto const& attr : type_->attributes()) {
    if (!attr->flags().isSettable()) continue;
    redispatch(actsm());
    deliver(*attr, force);
  }
}

}  // namespace Vek
