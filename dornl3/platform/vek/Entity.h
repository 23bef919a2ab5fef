// Entity: a named, counted object with attributes, whose every change is told to its reactors.
// Owner: whoever holds a reference. Parent: not counted either way; a parent lets its children go before it goes.
// Thread: each entity is used on one thread, and so is all that hangs on it. Re-entrancy: see ReactorWalk.
#pragma once

#include "dornl3/core/NotifieeConst.h"
#include "dornl3/platform/vek/VekType.h"

namespace Vek {

namespace NboAttrLog {
class Out;
}

class Entity : public PtrInterface {
 public:
  class NotifieeConst;
  class VekNboAttrLogSa;

  /// The key of an entity that is a member of a keyed collection.
  static constexpr AttributeId keyAttr = 0;
  // What every entity has before its own attributes.
  static constexpr AttributeId nameAttr = 128;
  static constexpr AttributeId fullNameAttr = 129;
  static constexpr AttributeId parentAttrNumber = 130;
  static constexpr AttributeId parentAttrIdAttr = 131;
  static constexpr AttributeId writeCountAttr = 132;
  static constexpr AttributeId readCountAttr = 133;
  /// The parent attribute of an entity that has no parent.
  static constexpr AttributeId noParentAttr = 136;
  /// Where the numbers of a type's own attributes begin.
  static constexpr AttributeId firstOwnAttr = 258;
  /// The event that the last reference has gone.
  static constexpr AttributeId zeroReferencesEvent = 5;
  /// Every entity's marker attribute: it can be written to an attribute log.
  static constexpr AttributeId attrLogMarker = 154;

  ~Entity() override;

  /// The constructor's argument; never changes.
  [[nodiscard]] virtual Name name() const;

  /// The entity that holds this one through an attribute, or the directory in which it is; null for one that is in
  /// none, and for one that was removed.
  [[nodiscard]] virtual Ptr<Entity const> parent() const;
  [[nodiscard]] virtual Ptr<Entity> parent();
  /// Stores the parent, without a reference, and tells handleParent. An entity that loses its parent leaves the logs
  /// that it is on, and all below it with it.
  virtual void parentIs(Ptr<Entity> const& parent);
  /// The record of the parent's attribute that holds this entity; null without a parent.
  [[nodiscard]] virtual VekAttr const* parentAttr() const;
  /// The number of that attribute; it stays when the parent goes.
  [[nodiscard]] virtual AttributeId parentAttrId() const;
  virtual void parentAttrIdIs(AttributeId id);

  /// Whether no entity holds this one through an attribute: it has no parent, or a directory.
  [[nodiscard]] bool isRoot() const noexcept { return parent_ == nullptr || parentAttrId_ == noParentAttr; }

  /// The place of the entity as a path of names: "/status/lemV4RouteStats", "/auditStatus/auditInfo/kernel".
  [[nodiscard]] virtual String8 uriPath() const;
  /// The place of the entity as a reader writes it: "status.lemV4RouteStats", "auditStatus.auditInfo[kernel]". It
  /// is also the text of a reference to the entity.
  [[nodiscard]] virtual String8 fullName() const;

  /// The name of an attribute or event, "unknown" for a number that has none.
  [[nodiscard]] virtual String8 attributeString(AttributeId id) const;

  /// For entities that are adapted: reactors are to follow `adapter` in this one's place. Here: nothing.
  virtual void vekNotifieeAdapterIs(Ptr<Entity const> const& adapter);
  /// The parent has changed.
  virtual void handleParent(Ptr<Entity> const& parent);

  // The entity's side of its bindings to logs. Each type that has them overrides all; here there are none.

  /// The adapter for `out`, or null; with a null `out` one whose log is live.
  [[nodiscard]] virtual Ptr<VekNboAttrLogSa const> vekNboAttrLogSa(Ptr<NboAttrLog::Out const> const& out) const;
  /// Whether the entity can be written to an attribute log.
  [[nodiscard]] virtual bool vekHasAttrLogInterface() const;
  [[nodiscard]] virtual Ptr<VekNboAttrLogSa> vekNboAttrLogSa(Ptr<NboAttrLog::Out const> const& out);
  /// The adapter that shares a message channel with this one, or null.
  [[nodiscard]] virtual Ptr<VekNboAttrLogSa> vekNboAttrLogSaForMsgChannel(Ptr<VekNboAttrLogSa> const& adapter) const;
  /// The adapter for `out`, made if there is none; one that stands takes over the notification flags. Throws
  /// RangeException for a null `out`, InternalException where the type has no bindings.
  virtual Ptr<VekNboAttrLogSa> vekNboAttrLogSaIs(PtrInterface::NotifieeConst::Vek_BitSet flags, U32 count,
                                                 Ptr<NboAttrLog::Out> const& out, PtrInterface* owner);
  /// Takes the adapter for `out` from its demuxer, and gives it; null where there is none.
  virtual Ptr<VekNboAttrLogSa> vekNboAttrLogSaDel(Ptr<NboAttrLog::Out const> const& out);

  /// Effective changes by setters, and reads of attributes. Both wrap silently; reading them counts nothing.
  [[nodiscard]] U32 writeCount() const noexcept { return writeCount_; }
  [[nodiscard]] U32 readCount() const noexcept { return readCount_; }
  void vekWriteCountInc() noexcept { ++writeCount_; }

  /// Every local change passes here before anything is stored. Throws ReadOnlyException where the entity belongs to
  /// another process and may not be changed here, or not now; costs a test of one byte where no mount has armed it.
  void vekNeedWritable(AttributeId attr) {
    if (guard_ != 0) [[unlikely]]
      vekWriteGuarded(attr);
  }
  /// A mount keeps this entity from local changes, or no longer does.
  void vekWriteGuardIs(bool armed) noexcept {
    guard_ = static_cast<U8>(armed ? guard_ | guardArmed : guard_ & ~(guardArmed | guardPass));
  }
  [[nodiscard]] bool vekIsWriteGuarded() const noexcept { return (guard_ & guardArmed) != 0; }
  /// An adapter has been bound to the entity.
  void vekIsBoundIs() noexcept { isBound_ = true; }
  /// One of its adapters has been switched off: it stands on no list, and hears of the entity's end in another way.
  void vekHasSilentAdapterIs() noexcept { hasSilentAdapter_ = true; }
  void vekReadCountInc() const noexcept { ++readCount_; }

  /// The record of all entities' base, with the attributes that every entity has.
  static VekType* _fwkType();
  [[nodiscard]] VekType* fwkType() const override;

 protected:
  explicit Entity(Name name) noexcept : name_(std::move(name)) {}

 private:
  friend class WritePass;
  static constexpr U8 guardArmed = 1;
  static constexpr U8 guardPass = 2;
  void vekWriteGuarded(AttributeId attr);
  void vekLeaveLogs();
  void vekLetAdaptersGo() noexcept;
  [[nodiscard]] bool isKeyedChild() const;

  Name const name_;
  U32 writeCount_ = 0;
  mutable U32 readCount_ = 0;
  AttributeId parentAttrId_ = noParentAttr;
  U8 guard_ = 0;
  bool isBound_ = false;  // an adapter has followed it
  bool hasSilentAdapter_ = false;
  Entity* parent_ = nullptr;
};

/// Whether an attribute of a type is the type's own, and not one that every entity has.
[[nodiscard]] inline bool isOwn(VekType const& type, VekAttr const& attr) noexcept {
  return !type.isEntity() || attr.id() >= Entity::firstOwnAttr;
}

/// Base of the reactors of entities.
class Entity::NotifieeConst : public PtrInterface::NotifieeConst {
 public:
  ~NotifieeConst() override;

  [[nodiscard]] Name name() const override;

  /// The entity's parent has changed.
  virtual void onParent();
  /// The entity's version has changed.
  virtual void onVersion();

 protected:
  NotifieeConst() noexcept = default;
};

}  // namespace Vek
