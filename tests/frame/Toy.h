// Made by schemac from Toy.toml: change that, not this.
// Toys: what the schema compiler emits, for every shape of type and attribute.
// Values are copies. An entity lives while somebody holds it, and belongs to one thread. While it calls its reactors,
// they may do anything: see dornl3/core/ReactorWalk.h.
#pragma once

#include "dornl3/attrlog/FlowOutFrame.h"
#include "dornl3/core/HashMap.h"
#include "dornl3/core/Integers.h"
#include "dornl3/core/ListRaw.h"
#include "dornl3/core/Name.h"
#include "dornl3/core/RbTreeMap.h"
#include "dornl3/core/String8.h"
#include "dornl3/frame/ChildFrame.h"
#include "dornl3/frame/CollectionFrame.h"
#include "dornl3/frame/EntityFrame.h"
#include "dornl3/generic/ValueGeneric.h"
#include "dornl3/platform/attrlog/EntityAdapter.h"
#include "dornl3/platform/attrlog/In.h"
#include "dornl3/platform/siblings/FapId.h"
#include "dornl3/platform/siblings/Fapmask.h"
#include "dornl3/platform/siblings/VlanIdOrNone.h"
#include "dornl3/platform/vek/GenericIfEntity.h"
#include "dornl3/platform/vek/VekType.h"

#include <iosfwd>

#pragma GCC visibility push(default)

namespace Toys {

class ToyPoint;
Vek::String8 valueToStrep(ToyPoint const& value);
std::ostream& operator<<(std::ostream& os, ToyPoint const& value);
Vek::NboAttrLog::OutPtr const& operator<<(Vek::NboAttrLog::OutPtr const& out, ToyPoint const& value);

/// A point and its label.
class ToyPoint {
 public:
  class _Type;
  class GenericIf_;
  static constexpr char const* vekDeclaredName = "Toys::ToyPoint";

  ToyPoint() = default;
  ToyPoint(Vek::U32 x, double y, Vek::String8 label);
  /// Reads the text form. Throws RangeException, with `it` at the fault.
  ToyPoint(Vek::String8::IteratorConst& it, Vek::String8::IteratorConst const& end);
  ToyPoint(Vek::NboAttrLog::In* in, Vek::StreamBogon);

  /// 2: how far east; 0 to 100 in texts and argument lists, anything by the setter
  Vek::U32 x() const noexcept { return x_; }
  void xIs(Vek::U32 value) { x_ = value; }
  /// 3: how far up
  double y() const noexcept { return y_; }
  void yIs(double value) { y_ = value; }
  /// 4: what it is called
  Vek::String8 const& label() const noexcept { return label_; }
  void labelIs(Vek::String8 value) { label_ = std::move(value); }

  bool operator==(ToyPoint const& other) const;
  bool operator!=(ToyPoint const& other) const { return !(*this == other); }

  static Vek::VekType const* _fwkType();
  Vek::VekType const* fwkType() const { return _fwkType(); }

 private:
  friend Vek::String8 valueToStrep(ToyPoint const& value);
  friend Vek::NboAttrLog::OutPtr const& operator<<(Vek::NboAttrLog::OutPtr const& out, ToyPoint const& value);
  struct [[gnu::visibility("hidden")]] Attr;

  Vek::U32 x_ = 0;
  double y_ = 0.0;
  Vek::String8 label_;
};

/// A ToyPoint without its class, read by attribute number.
class ToyPoint::GenericIf_ final : public Vek::ValueGeneric<ToyPoint, ToyPoint const&> {
 public:
  using ValueGeneric::ValueGeneric;
  static Vek::Ptr<GenericIf_> GenericIf_Is(ToyPoint const& value, bool isConst);
  static Vek::Ptr<Vek::GenericIf> genericIfListConstructor(Vek::Ptr<Vek::GenericIf const> const& arguments);

  Vek::Ptr<Vek::GenericIf> attributeOp(AttributeOp const& op, Vek::Ptr<Vek::GenericIf const> const& key, Vek::Ptr<Vek::GenericIf> const& value) override;
};

class ToyVlan;
Vek::String8 valueToStrep(ToyVlan const& value);
std::ostream& operator<<(std::ostream& os, ToyVlan const& value);
Vek::NboAttrLog::OutPtr const& operator<<(Vek::NboAttrLog::OutPtr const& out, ToyVlan value);

/// A VLAN, and no more than that.
class ToyVlan {
 public:
  class _Type;
  class GenericIf_;
  static constexpr char const* vekDeclaredName = "Toys::ToyVlan";

  ToyVlan() = default;
  explicit ToyVlan(Bridging::VlanIdOrNone vlan);
  /// Reads the text form. Throws RangeException, with `it` at the fault.
  ToyVlan(Vek::String8::IteratorConst& it, Vek::String8::IteratorConst const& end);
  ToyVlan(Vek::NboAttrLog::In* in, Vek::StreamBogon);

  /// 2: its number
  Bridging::VlanIdOrNone vlan() const noexcept { return vlan_; }
  void vlanIs(Bridging::VlanIdOrNone value) { vlan_ = value; }

  bool operator==(ToyVlan other) const;
  bool operator!=(ToyVlan other) const { return !(*this == other); }

  static Vek::VekType const* _fwkType();
  Vek::VekType const* fwkType() const { return _fwkType(); }

 private:
  friend Vek::String8 valueToStrep(ToyVlan const& value);
  friend Vek::NboAttrLog::OutPtr const& operator<<(Vek::NboAttrLog::OutPtr const& out, ToyVlan value);
  struct [[gnu::visibility("hidden")]] Attr;

  Bridging::VlanIdOrNone vlan_;
};

/// A ToyVlan without its class, read by attribute number.
class ToyVlan::GenericIf_ final : public Vek::ValueGeneric<ToyVlan, ToyVlan> {
 public:
  using ValueGeneric::ValueGeneric;
  static Vek::Ptr<GenericIf_> GenericIf_Is(ToyVlan value, bool isConst);
  static Vek::Ptr<Vek::GenericIf> genericIfListConstructor(Vek::Ptr<Vek::GenericIf const> const& arguments);

  Vek::Ptr<Vek::GenericIf> attributeOp(AttributeOp const& op, Vek::Ptr<Vek::GenericIf const> const& key, Vek::Ptr<Vek::GenericIf> const& value) override;
};

/// A toy on a shelf.
class Toy : public Vek::Entity {
 public:
  class _Type;
  class NotifieeConst;
  class Notifiee;
  class GenericIf_;
  class VekNboAttrLogSa;

  explicit Toy(Vek::Name name);
  ~Toy() override;

  /// 258: how large it is
  Vek::U64 size() const { return Vek::vekRead(*this, size_); }
  /// Stores, counts a write, calls the reactors. The present value: nothing happens.
  void sizeIs(Vek::U64 const& value);
  /// Adds, wraps silently, calls the reactors, and gives the sum. Counts a read and no write.
  Vek::U64 sizeInc(Vek::U64 const& delta);

  /// 259: whether it is broken
  bool broken() const { return Vek::vekRead(*this, broken_); }
  /// Stores, counts a write, calls the reactors. The present value: nothing happens.
  void brokenIs(bool value);

  /// 260: when it was last played with
  double played() const { return Vek::vekRead(*this, played_); }
  /// Stores, counts a write, calls the reactors. The present value: nothing happens.
  void playedIs(double const& value);

  /// 261: what is written on it
  Vek::String8 const& text() const { return Vek::vekRead(*this, text_); }
  /// Stores, counts a write, calls the reactors. The present value: nothing happens.
  void textIs(Vek::String8 value);

  /// 262: where it stands
  ToyPoint const& place() const { return Vek::vekRead(*this, place_); }
  /// Stores, counts a write, calls the reactors. The present value: nothing happens.
  void placeIs(ToyPoint const& value);

  Vek::Ptr<Vek::Entity::VekNboAttrLogSa const> vekNboAttrLogSa(Vek::Ptr<Vek::NboAttrLog::Out const> const& out) const override;
  bool vekHasAttrLogInterface() const override { return true; }
  Vek::Ptr<Vek::Entity::VekNboAttrLogSa> vekNboAttrLogSa(Vek::Ptr<Vek::NboAttrLog::Out const> const& out) override;
  Vek::Ptr<Vek::Entity::VekNboAttrLogSa> vekNboAttrLogSaForMsgChannel(Vek::Ptr<Vek::Entity::VekNboAttrLogSa> const& adapter) const override;
  Vek::Ptr<Vek::Entity::VekNboAttrLogSa> vekNboAttrLogSaIs(Vek::PtrInterface::NotifieeConst::Vek_BitSet flags, Vek::U32 count, Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::PtrInterface* owner) override;
  Vek::Ptr<Vek::Entity::VekNboAttrLogSa> vekNboAttrLogSaDel(Vek::Ptr<Vek::NboAttrLog::Out const> const& out) override;
  static Vek::VekType* _fwkType();
  Vek::VekType* fwkType() const override { return _fwkType(); }
  Vek::String8 attributeString(Vek::AttributeId id) const override;
  void zeroReferencesIs(bool) override;

 private:
  template <class X>
  friend Vek::ReactorChain& Vek::reactorsOf(Vek::PtrInterface const& entity) noexcept;
  struct [[gnu::visibility("hidden")]] Attr;

  Vek::U64 size_ = 0;
  bool broken_ = false;
  double played_ = 0.0;
  Vek::String8 text_;
  ToyPoint place_;
  mutable Vek::ListRaw<NotifieeConst> notifiees_;
};

/// A new Toy, entered in no directory.
Vek::Ptr<Toy> toyFactory(Vek::Name name);

/// Hears of the changes of a Toy that it may not change itself.
class Toy::NotifieeConst : public Vek::Entity::NotifieeConst {
 public:
  NotifieeConst() = default;
  ~NotifieeConst() override;

  Vek::Ptr<Toy const> notifier() const { return static_cast<Toy const*>(rawNotifier()); }
  void notifierIs(Vek::Ptr<Vek::PtrInterface const> const& n) override;
  void isRegisteredNotifieeIs(bool on) const override;

  // Called inside the call that makes a change, which is stored and counted already.
  virtual void onSize() {}
  virtual void onBroken() {}
  virtual void onPlayed() {}
  virtual void onText() {}
  virtual void onPlace() {}
};

/// Hears of the changes of a Toy, and may change it.
class Toy::Notifiee : public Toy::NotifieeConst {
 public:
  ~Notifiee() override;

  Vek::Ptr<Toy> notifier() const { return const_cast<Toy*>(NotifieeConst::notifier().ptr()); }
};

/// A Toy without its class: every attribute by name and number.
class Toy::GenericIf_ final : public Vek::GenericIfEntity {
 public:
  class GenericIf_Adapter_;

  GenericIf_(Vek::Ptr<Toy> const& entity, bool isConst);
  ~GenericIf_() override;
  static Vek::Ptr<Vek::GenericIf> genericIfListConstructor(Vek::Ptr<Vek::GenericIf const> const& arguments);

  Vek::Ptr<Vek::GenericIf> attributeOp(AttributeOp const& op, Vek::Ptr<Vek::GenericIf const> const& key, Vek::Ptr<Vek::GenericIf> const& value) override;
  void onSize() { tellScalar(258); }
  void onBroken() { tellScalar(259); }
  void onPlayed() { tellScalar(260); }
  void onText() { tellScalar(261); }
  void onPlace() { tellScalar(262); }
};

/// What binds a Toy to one attribute log.
class Toy::VekNboAttrLogSa : public Vek::Entity::VekNboAttrLogSa {
 public:
  class FlowOut;
  class VekNboAttrLogSaAdapter_;

  VekNboAttrLogSa(Vek_BitSet flags, Vek::Ptr<Toy> const& entity, Vek::U32 count, Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::PtrInterface* owner);
  ~VekNboAttrLogSa() override;

  Vek::Ptr<Toy> notifier() const { return const_cast<Toy*>(static_cast<Toy const*>(rawNotifier())); }
  Vek::Ptr<FlowOut> flowOut() const;

  Vek::AttributeId handleAttrFlowOut(Vek::AttributeId from) override;
  void freeResyncState(Vek::NboAttrLog::FlowOut& flowOut) override;
  void handleAttrTransaction(Vek::AttributeId attr, AttrTransactionType type, Vek::U32 argument) override;
  void syncModeIs(SyncMode mode) override;
  void doSerializeOrphan() override;
  void handleAttrDeserialization(int attr, DeserializationOptions options, Vek::U32 length, Vek::Ptr<Vek::NboAttrLog::In> const& in) override;
  Vek::Ptr<Vek::NboAttrLog::FlowOut> flowOutIs(Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::ConnectDesc const& desc, bool isFull, Vek::AttributeId startAttr) override;
  void doNotification(int attr, void const* key) override;
  virtual void onSize();
  virtual void onBroken();
  virtual void onPlayed();
  virtual void onText();
  bool vekHandleTextSerialize();
  virtual void onPlace();
};

/// What such a binding owes its log.
class Toy::VekNboAttrLogSa::FlowOut final : public Vek::NboAttrLog::FlowOut {
 public:
  class VekDirtyBitSet0 final : public Vek::DirtyBits<1> {
   public:
    void vekIsSizeDirtyIs(bool on) { bitIs(1, on); }
    void vekIsBrokenDirtyIs(bool on) { bitIs(2, on); }
    void vekIsPlayedDirtyIs(bool on) { bitIs(3, on); }
    void vekIsTextDirtyIs(bool on) { bitIs(4, on); }
    void vekIsPlaceDirtyIs(bool on) { bitIs(5, on); }
  };

  FlowOut(Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::StreamAdapter* adapter, Vek::ConnectDesc const& desc, bool isFull, Vek::AttributeId startAttr);
  ~FlowOut() override;

  VekDirtyBitSet0& vekDirtyBitSet0() { return vekDirtyBitSet0_; }
  bool hasDirtyAttributes() const override;

 private:
  friend struct Toy::Attr;
  VekDirtyBitSet0 vekDirtyBitSet0_;
};

/// The lid of a box.
class Lid : public Vek::Entity {
 public:
  class _Type;
  class NotifieeConst;
  class Notifiee;
  class GenericIf_;
  class VekNboAttrLogSa;

  explicit Lid(Vek::Name name);
  ~Lid() override;

  /// 258: whether it is open
  bool open() const { return Vek::vekRead(*this, open_); }
  /// Stores, counts a write, calls the reactors. The present value: nothing happens.
  void openIs(bool value);

  Vek::Ptr<Vek::Entity::VekNboAttrLogSa const> vekNboAttrLogSa(Vek::Ptr<Vek::NboAttrLog::Out const> const& out) const override;
  bool vekHasAttrLogInterface() const override { return true; }
  Vek::Ptr<Vek::Entity::VekNboAttrLogSa> vekNboAttrLogSa(Vek::Ptr<Vek::NboAttrLog::Out const> const& out) override;
  Vek::Ptr<Vek::Entity::VekNboAttrLogSa> vekNboAttrLogSaForMsgChannel(Vek::Ptr<Vek::Entity::VekNboAttrLogSa> const& adapter) const override;
  Vek::Ptr<Vek::Entity::VekNboAttrLogSa> vekNboAttrLogSaIs(Vek::PtrInterface::NotifieeConst::Vek_BitSet flags, Vek::U32 count, Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::PtrInterface* owner) override;
  Vek::Ptr<Vek::Entity::VekNboAttrLogSa> vekNboAttrLogSaDel(Vek::Ptr<Vek::NboAttrLog::Out const> const& out) override;
  static Vek::VekType* _fwkType();
  Vek::VekType* fwkType() const override { return _fwkType(); }
  Vek::String8 attributeString(Vek::AttributeId id) const override;
  void zeroReferencesIs(bool) override;

 private:
  template <class X>
  friend Vek::ReactorChain& Vek::reactorsOf(Vek::PtrInterface const& entity) noexcept;
  struct [[gnu::visibility("hidden")]] Attr;

  bool open_ = true;
  mutable Vek::ListRaw<NotifieeConst> notifiees_;
};

/// Hears of the changes of a Lid that it may not change itself.
class Lid::NotifieeConst : public Vek::Entity::NotifieeConst {
 public:
  NotifieeConst() = default;
  ~NotifieeConst() override;

  Vek::Ptr<Lid const> notifier() const { return static_cast<Lid const*>(rawNotifier()); }
  void notifierIs(Vek::Ptr<Vek::PtrInterface const> const& n) override;
  void isRegisteredNotifieeIs(bool on) const override;

  // Called inside the call that makes a change, which is stored and counted already.
  virtual void onOpen() {}
};

/// Hears of the changes of a Lid, and may change it.
class Lid::Notifiee : public Lid::NotifieeConst {
 public:
  ~Notifiee() override;

  Vek::Ptr<Lid> notifier() const { return const_cast<Lid*>(NotifieeConst::notifier().ptr()); }
};

/// A Lid without its class: every attribute by name and number.
class Lid::GenericIf_ final : public Vek::GenericIfEntity {
 public:
  class GenericIf_Adapter_;

  GenericIf_(Vek::Ptr<Lid> const& entity, bool isConst);
  ~GenericIf_() override;

  Vek::Ptr<Vek::GenericIf> attributeOp(AttributeOp const& op, Vek::Ptr<Vek::GenericIf const> const& key, Vek::Ptr<Vek::GenericIf> const& value) override;
  void onOpen() { tellScalar(258); }
};

/// What binds a Lid to one attribute log.
class Lid::VekNboAttrLogSa : public Vek::Entity::VekNboAttrLogSa {
 public:
  class FlowOut;
  class VekNboAttrLogSaAdapter_;

  VekNboAttrLogSa(Vek_BitSet flags, Vek::Ptr<Lid> const& entity, Vek::U32 count, Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::PtrInterface* owner);
  ~VekNboAttrLogSa() override;

  Vek::Ptr<Lid> notifier() const { return const_cast<Lid*>(static_cast<Lid const*>(rawNotifier())); }
  Vek::Ptr<FlowOut> flowOut() const;

  Vek::AttributeId handleAttrFlowOut(Vek::AttributeId from) override;
  void doSerializeOrphan() override;
  void handleAttrDeserialization(int attr, DeserializationOptions options, Vek::U32 length, Vek::Ptr<Vek::NboAttrLog::In> const& in) override;
  Vek::Ptr<Vek::NboAttrLog::FlowOut> flowOutIs(Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::ConnectDesc const& desc, bool isFull, Vek::AttributeId startAttr) override;
  void doNotification(int attr, void const* key) override;
  virtual void onOpen();
};

/// What such a binding owes its log.
class Lid::VekNboAttrLogSa::FlowOut final : public Vek::NboAttrLog::FlowOut {
 public:
  class VekDirtyBitSet0 final : public Vek::DirtyBits<1> {
   public:
    void vekIsOpenDirtyIs(bool on) { bitIs(1, on); }
  };

  FlowOut(Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::StreamAdapter* adapter, Vek::ConnectDesc const& desc, bool isFull, Vek::AttributeId startAttr);
  ~FlowOut() override;

  VekDirtyBitSet0& vekDirtyBitSet0() { return vekDirtyBitSet0_; }
  bool hasDirtyAttributes() const override;

 private:
  friend struct Lid::Attr;
  VekDirtyBitSet0 vekDirtyBitSet0_;
};

/// A drawer of a box, by its label.
class Drawer : public Vek::Entity {
 public:
  class _Type;
  class NotifieeConst;
  class Notifiee;
  class GenericIf_;
  class VekNboAttrLogSa;
  using Map = Vek::HashMap<Drawer, Vek::String8, Drawer>;

  explicit Drawer(Vek::Name name, Vek::String8 label);
  ~Drawer() override;

  /// 258: what stands on it
  Vek::String8 const& label() const { return Vek::vekRead(*this, label_); }

  /// 259: how many things lie in it
  Vek::U32 things() const { return Vek::vekRead(*this, things_); }
  /// Stores, counts a write, calls the reactors. The present value: nothing happens.
  void thingsIs(Vek::U32 value);
  /// Adds, wraps silently, calls the reactors, and gives the sum. Counts a read and no write.
  Vek::U32 thingsInc(Vek::U32 delta);

  Vek::Ptr<Vek::Entity::VekNboAttrLogSa const> vekNboAttrLogSa(Vek::Ptr<Vek::NboAttrLog::Out const> const& out) const override;
  bool vekHasAttrLogInterface() const override { return true; }
  Vek::Ptr<Vek::Entity::VekNboAttrLogSa> vekNboAttrLogSa(Vek::Ptr<Vek::NboAttrLog::Out const> const& out) override;
  Vek::Ptr<Vek::Entity::VekNboAttrLogSa> vekNboAttrLogSaForMsgChannel(Vek::Ptr<Vek::Entity::VekNboAttrLogSa> const& adapter) const override;
  Vek::Ptr<Vek::Entity::VekNboAttrLogSa> vekNboAttrLogSaIs(Vek::PtrInterface::NotifieeConst::Vek_BitSet flags, Vek::U32 count, Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::PtrInterface* owner) override;
  Vek::Ptr<Vek::Entity::VekNboAttrLogSa> vekNboAttrLogSaDel(Vek::Ptr<Vek::NboAttrLog::Out const> const& out) override;
  static Vek::VekType* _fwkType();
  Vek::VekType* fwkType() const override { return _fwkType(); }
  Vek::String8 attributeString(Vek::AttributeId id) const override;
  void zeroReferencesIs(bool) override;

  /// A member of a collection: its key, and itself for the value, so that it reads as members that are values do.
  Vek::String8 key() const { return label_; }
  Drawer const& value() const { return *this; }
  Drawer& value() { return *this; }
  Vek::HashLink& vekLink() { return vekLink_; }
  static constexpr auto vekLinkMember() { return &Drawer::vekLink_; }

 private:
  template <class X>
  friend Vek::ReactorChain& Vek::reactorsOf(Vek::PtrInterface const& entity) noexcept;
  struct [[gnu::visibility("hidden")]] Attr;

  Vek::HashLink vekLink_;
  Vek::String8 label_;
  Vek::U32 things_ = 0;
  mutable Vek::ListRaw<NotifieeConst> notifiees_;
};

/// Hears of the changes of a Drawer that it may not change itself.
class Drawer::NotifieeConst : public Vek::Entity::NotifieeConst {
 public:
  NotifieeConst() = default;
  ~NotifieeConst() override;

  Vek::Ptr<Drawer const> notifier() const { return static_cast<Drawer const*>(rawNotifier()); }
  void notifierIs(Vek::Ptr<Vek::PtrInterface const> const& n) override;
  void isRegisteredNotifieeIs(bool on) const override;

  // Called inside the call that makes a change, which is stored and counted already.
  virtual void onThings() {}
};

/// Hears of the changes of a Drawer, and may change it.
class Drawer::Notifiee : public Drawer::NotifieeConst {
 public:
  ~Notifiee() override;

  Vek::Ptr<Drawer> notifier() const { return const_cast<Drawer*>(NotifieeConst::notifier().ptr()); }
};

/// A Drawer without its class: every attribute by name and number.
class Drawer::GenericIf_ final : public Vek::GenericIfEntity {
 public:
  class GenericIf_Adapter_;

  GenericIf_(Vek::Ptr<Drawer> const& entity, bool isConst);
  ~GenericIf_() override;

  Vek::Ptr<Vek::GenericIf> attributeOp(AttributeOp const& op, Vek::Ptr<Vek::GenericIf const> const& key, Vek::Ptr<Vek::GenericIf> const& value) override;
  void onThings() { tellScalar(259); }
};

/// What binds a Drawer to one attribute log.
class Drawer::VekNboAttrLogSa : public Vek::Entity::VekNboAttrLogSa {
 public:
  class FlowOut;
  class VekNboAttrLogSaAdapter_;

  VekNboAttrLogSa(Vek_BitSet flags, Vek::Ptr<Drawer> const& entity, Vek::U32 count, Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::PtrInterface* owner);
  ~VekNboAttrLogSa() override;

  Vek::Ptr<Drawer> notifier() const { return const_cast<Drawer*>(static_cast<Drawer const*>(rawNotifier())); }
  Vek::Ptr<FlowOut> flowOut() const;

  Vek::AttributeId handleAttrFlowOut(Vek::AttributeId from) override;
  void doSerializeOrphan() override;
  void handleAttrDeserialization(int attr, DeserializationOptions options, Vek::U32 length, Vek::Ptr<Vek::NboAttrLog::In> const& in) override;
  Vek::Ptr<Vek::NboAttrLog::FlowOut> flowOutIs(Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::ConnectDesc const& desc, bool isFull, Vek::AttributeId startAttr) override;
  void doNotification(int attr, void const* key) override;
  virtual void onThings();
};

/// What such a binding owes its log.
class Drawer::VekNboAttrLogSa::FlowOut final : public Vek::NboAttrLog::FlowOut {
 public:
  class VekDirtyBitSet0 final : public Vek::DirtyBits<1> {
   public:
    void vekIsThingsDirtyIs(bool on) { bitIs(1, on); }
  };

  FlowOut(Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::StreamAdapter* adapter, Vek::ConnectDesc const& desc, bool isFull, Vek::AttributeId startAttr);
  ~FlowOut() override;

  VekDirtyBitSet0& vekDirtyBitSet0() { return vekDirtyBitSet0_; }
  bool hasDirtyAttributes() const override;

 private:
  friend struct Drawer::Attr;
  VekDirtyBitSet0 vekDirtyBitSet0_;
};

/// A shelf of a box, by its name.
class Shelf : public Vek::Entity {
 public:
  class _Type;
  class NotifieeConst;
  class Notifiee;
  class GenericIf_;
  class VekNboAttrLogSa;
  using Map = Vek::HashMap<Shelf, Vek::Name, Shelf>;

  explicit Shelf(Vek::Name name);
  ~Shelf() override;

  /// 258: the drawers in it
  /// Null where there is none.
  Vek::Ptr<Drawer> drawers(Vek::String8 key) const { return Vek::childrenGet(*this, drawers_, key); }
  /// A new child; one that has the key leaves, without a parent. Counts nothing, calls nobody.
  Vek::Ptr<Drawer> newDrawers(Vek::String8 key);
  /// The child, made where it is not there. Calls the reactors for a new one.
  Vek::ValidPtr<Drawer> drawersIs(Vek::String8 key);
  /// Removes the child and gives it, without a parent; null where there is none.
  Vek::Ptr<Drawer> drawersDel(Vek::String8 key);
  /// The same of the child under `it`, which keeps its place.
  Vek::Ptr<Drawer> drawersDel(Drawer::Map::Iterator& it);
  /// Removes all, one by one, each with its count and call of the reactors.
  void drawersDelAll();
  /// Calls the reactors with that key. Changes and counts nothing.
  void drawersNotify(Vek::String8 key);
  Vek::U32 drawersCount() const { return drawers_.count(); }
  /// Walks by the hashes of the keys; members may come and go meanwhile. The entity outlives its iterators.
  Drawer::Map::Iterator drawersIterator() { return Drawer::Map::Iterator(&drawers_); }
  Drawer::Map::IteratorConst drawersIteratorConst() const { return Drawer::Map::IteratorConst(&drawers_); }

  Vek::Ptr<Vek::Entity::VekNboAttrLogSa const> vekNboAttrLogSa(Vek::Ptr<Vek::NboAttrLog::Out const> const& out) const override;
  bool vekHasAttrLogInterface() const override { return true; }
  Vek::Ptr<Vek::Entity::VekNboAttrLogSa> vekNboAttrLogSa(Vek::Ptr<Vek::NboAttrLog::Out const> const& out) override;
  Vek::Ptr<Vek::Entity::VekNboAttrLogSa> vekNboAttrLogSaForMsgChannel(Vek::Ptr<Vek::Entity::VekNboAttrLogSa> const& adapter) const override;
  Vek::Ptr<Vek::Entity::VekNboAttrLogSa> vekNboAttrLogSaIs(Vek::PtrInterface::NotifieeConst::Vek_BitSet flags, Vek::U32 count, Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::PtrInterface* owner) override;
  Vek::Ptr<Vek::Entity::VekNboAttrLogSa> vekNboAttrLogSaDel(Vek::Ptr<Vek::NboAttrLog::Out const> const& out) override;
  static Vek::VekType* _fwkType();
  Vek::VekType* fwkType() const override { return _fwkType(); }
  Vek::String8 attributeString(Vek::AttributeId id) const override;
  void zeroReferencesIs(bool) override;

  /// A member of a collection: its key, and itself for the value, so that it reads as members that are values do.
  Vek::Name key() const { return name(); }
  Shelf const& value() const { return *this; }
  Shelf& value() { return *this; }
  Vek::HashLink& vekLink() { return vekLink_; }
  static constexpr auto vekLinkMember() { return &Shelf::vekLink_; }

 private:
  template <class X>
  friend Vek::ReactorChain& Vek::reactorsOf(Vek::PtrInterface const& entity) noexcept;
  struct [[gnu::visibility("hidden")]] Attr;

  Vek::HashLink vekLink_;
  Drawer::Map drawers_;
  mutable Vek::ListRaw<NotifieeConst> notifiees_;
};

/// Hears of the changes of a Shelf that it may not change itself.
class Shelf::NotifieeConst : public Vek::Entity::NotifieeConst {
 public:
  NotifieeConst() = default;
  ~NotifieeConst() override;

  Vek::Ptr<Shelf const> notifier() const { return static_cast<Shelf const*>(rawNotifier()); }
  void notifierIs(Vek::Ptr<Vek::PtrInterface const> const& n) override;
  void isRegisteredNotifieeIs(bool on) const override;

  // Called inside the call that makes a change, which is stored and counted already.
  // Of the slots of a collection, changes call the one with the key; the others serve adapters.
  virtual void onDrawers(Vek::String8) {}
  virtual void onDrawersvekImmediate() {}
  virtual void onDrawers() {}
};

/// Hears of the changes of a Shelf, and may change it.
class Shelf::Notifiee : public Shelf::NotifieeConst {
 public:
  ~Notifiee() override;

  Vek::Ptr<Shelf> notifier() const { return const_cast<Shelf*>(NotifieeConst::notifier().ptr()); }
};

/// A Shelf without its class: every attribute by name and number.
class Shelf::GenericIf_ final : public Vek::GenericIfEntity {
 public:
  class GenericIf_Adapter_;

  GenericIf_(Vek::Ptr<Shelf> const& entity, bool isConst);
  ~GenericIf_() override;

  Vek::Ptr<Vek::GenericIf> attributeOp(AttributeOp const& op, Vek::Ptr<Vek::GenericIf const> const& key, Vek::Ptr<Vek::GenericIf> const& value) override;
  void onDrawers(Vek::String8 key);
  void onDrawers() { tellWhole(258); }

  AttributeIteratorConst attributeIteratorConst(Vek::AttributeId id) const override;
  AttributeIteratorConst attributeIteratorKeyConst(Vek::AttributeId id, Vek::Ptr<Vek::GenericIf const> const& key) const override;
};

/// What binds a Shelf to one attribute log.
class Shelf::VekNboAttrLogSa : public Vek::Entity::VekNboAttrLogSa {
 public:
  class FlowOut;
  class VekNboAttrLogSaAdapter_;

  VekNboAttrLogSa(Vek_BitSet flags, Vek::Ptr<Shelf> const& entity, Vek::U32 count, Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::PtrInterface* owner);
  ~VekNboAttrLogSa() override;

  Vek::Ptr<Shelf> notifier() const { return const_cast<Shelf*>(static_cast<Shelf const*>(rawNotifier())); }
  Vek::Ptr<FlowOut> flowOut() const;

  Vek::AttributeId handleAttrFlowOut(Vek::AttributeId from) override;
  void freeResyncState(Vek::NboAttrLog::FlowOut& flowOut) override;
  void handleAttrTransaction(Vek::AttributeId attr, AttrTransactionType type, Vek::U32 argument) override;
  void syncModeIs(SyncMode mode) override;
  void vekInstantiateSerialize() override;
  void doRemountSelf(Vek::Ptr<Vek::NboAttrLog::Out> const& out) override;
  void doSerializeOrphan() override;
  void handleAttrDeserialization(int attr, DeserializationOptions options, Vek::U32 length, Vek::Ptr<Vek::NboAttrLog::In> const& in) override;
  Vek::Ptr<Vek::NboAttrLog::FlowOut> flowOutIs(Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::ConnectDesc const& desc, bool isFull, Vek::AttributeId startAttr) override;
  void doNotification(int attr, void const* key) override;
  virtual void onDrawers(Vek::String8 key);
  bool vekHandleDrawersSerializeColl();
  void vekHandleDrawersSerializeSing(Vek::String8 key, Vek::Ptr<Drawer> const& child);
  Vek::Ptr<Drawer::VekNboAttrLogSa> drawersNboAttrLogAdapterIs(Vek_BitSet flags, Vek::Ptr<Drawer> const& child, Vek::U32 count, Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::PtrInterface* channel);
  Vek::Ptr<Drawer::VekNboAttrLogSa> drawersNboAttrLogAdapterDel(Vek::Ptr<Drawer> const& child);
  Vek::Ptr<Drawer::VekNboAttrLogSa const> drawersNboAttrLogAdapter(Vek::Ptr<Drawer> const&) const { return {}; }
  Vek::Ptr<Drawer::VekNboAttrLogSa> drawersNboAttrLogAdapter(Vek::Ptr<Drawer> const&) { return {}; }
};

/// What such a binding owes its log.
class Shelf::VekNboAttrLogSa::FlowOut final : public Vek::NboAttrLog::FlowOut {
 public:
  class VekDirtyBitSet0 final : public Vek::DirtyBits<1> {
   public:
    void vekDrawersHasSyncedIs(bool on) { bitIs(1, on); }
  };
  class VekVekIsDrawersDirty final : public Vek::HashElement<Vek::String8, bool> {
   public:
    using Map = Vek::HashMap<VekVekIsDrawersDirty, Vek::String8, bool>;
    using HashElement::HashElement;
  };

  FlowOut(Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::StreamAdapter* adapter, Vek::ConnectDesc const& desc, bool isFull, Vek::AttributeId startAttr);
  ~FlowOut() override;

  VekDirtyBitSet0& vekDirtyBitSet0() { return vekDirtyBitSet0_; }
  bool hasDirtyAttributes() const override;
  Vek::Ptr<VekVekIsDrawersDirty> newVekIsDrawersDirty(Vek::String8 key, bool on);
  void vekIsDrawersDirtyIs(Vek::String8 key, bool on);
  bool vekIsDrawersDirtyDel(Vek::String8 key);
  bool vekIsDrawersDirtyDel(VekVekIsDrawersDirty::Map::Iterator const& it) { return it && vekIsDrawersDirtyDel(it->key()); }

 private:
  friend struct Shelf::Attr;
  VekDirtyBitSet0 vekDirtyBitSet0_;
  VekVekIsDrawersDirty::Map vekIsDrawersDirty_;
};

/// A box of toys.
class ToyBox : public Vek::Entity {
 public:
  class _Type;
  class NotifieeConst;
  class Notifiee;
  class GenericIf_;
  class VekNboAttrLogSa;

  explicit ToyBox(Vek::Name name);
  ~ToyBox() override;

  /// 258: how many of each kind
  class VekCounts final : public Vek::RbElement<Vek::U32, Vek::U32> {
   public:
    using Map = Vek::RbTreeMap<VekCounts, Vek::U32, Vek::U32>;
    using RbElement::RbElement;
    ~VekCounts() override;
  };
  /// The default where the key is absent.
  Vek::U32 counts(Vek::U32 key) const { return Vek::collectionGet(*this, counts_, key); }
  /// Sets the value, of a new member where the key is absent. The present value: nothing happens.
  void countsIs(Vek::U32 key, Vek::U32 value);
  /// A new member; one that has the key leaves. Counts nothing, calls nobody.
  Vek::Ptr<VekCounts> newCounts(Vek::U32 key, Vek::U32 value);
  /// Removes the member and gives its value; the default where the key is absent.
  Vek::U32 countsDel(Vek::U32 key);
  /// The same of the member under `it`, which keeps its place.
  Vek::U32 countsDel(VekCounts::Map::Iterator& it);
  /// Removes all, one by one, each with its count and call of the reactors.
  void countsDelAll();
  /// Calls the reactors with that key. Changes and counts nothing.
  void countsNotify(Vek::U32 key);
  Vek::U32 countsCount() const { return counts_.count(); }
  /// Walks by rising key; members may come and go meanwhile. The entity outlives its iterators.
  VekCounts::Map::Iterator countsIterator() { return VekCounts::Map::Iterator(&counts_); }
  VekCounts::Map::IteratorConst countsIteratorConst() const { return VekCounts::Map::IteratorConst(&counts_); }

  /// 259: how many on each FAP
  class VekFaps final : public Vek::RbElement<Hardware::Dorn::FapId, Vek::U64> {
   public:
    using Map = Vek::RbTreeMap<VekFaps, Hardware::Dorn::FapId, Vek::U64>;
    using RbElement::RbElement;
    ~VekFaps() override;
  };
  /// The default where the key is absent.
  Vek::U64 faps(Hardware::Dorn::FapId key) const { return Vek::collectionGet(*this, faps_, key); }
  /// Sets the value, of a new member where the key is absent. The present value: nothing happens.
  void fapsIs(Hardware::Dorn::FapId key, Vek::U64 const& value);
  /// A new member; one that has the key leaves. Counts nothing, calls nobody.
  Vek::Ptr<VekFaps> newFaps(Hardware::Dorn::FapId key, Vek::U64 const& value);
  /// Removes the member and gives its value; the default where the key is absent.
  Vek::U64 fapsDel(Hardware::Dorn::FapId key);
  /// The same of the member under `it`, which keeps its place.
  Vek::U64 fapsDel(VekFaps::Map::Iterator& it);
  /// Removes all, one by one, each with its count and call of the reactors.
  void fapsDelAll();
  /// Calls the reactors with that key. Changes and counts nothing.
  void fapsNotify(Hardware::Dorn::FapId key);
  Vek::U32 fapsCount() const { return faps_.count(); }
  /// Walks by rising key; members may come and go meanwhile. The entity outlives its iterators.
  VekFaps::Map::Iterator fapsIterator() { return VekFaps::Map::Iterator(&faps_); }
  VekFaps::Map::IteratorConst fapsIteratorConst() const { return VekFaps::Map::IteratorConst(&faps_); }

  /// 260: which kinds are wanted
  class VekWanted final : public Vek::HashElement<Vek::U32, bool> {
   public:
    using Map = Vek::HashMap<VekWanted, Vek::U32, bool>;
    using HashElement::HashElement;
    ~VekWanted() override;
  };
  /// The default where the key is absent.
  bool wanted(Vek::U32 key) const;
  /// Sets the value, of a new member where the key is absent. The present value: nothing happens.
  void wantedIs(Vek::U32 key, bool value);
  /// A new member; one that has the key leaves. Counts nothing, calls nobody.
  Vek::Ptr<VekWanted> newWanted(Vek::U32 key, bool value);
  /// Removes the member and gives its value; the default where the key is absent.
  bool wantedDel(Vek::U32 key);
  /// The same of the member under `it`, which keeps its place.
  bool wantedDel(VekWanted::Map::Iterator& it);
  /// Removes all, one by one, each with its count and call of the reactors.
  void wantedDelAll();
  /// Calls the reactors with that key. Changes and counts nothing.
  void wantedNotify(Vek::U32 key);
  Vek::U32 wantedCount() const { return wanted_.count(); }
  /// Walks by the hashes of the keys; members may come and go meanwhile. The entity outlives its iterators.
  VekWanted::Map::Iterator wantedIterator() { return VekWanted::Map::Iterator(&wanted_); }
  VekWanted::Map::IteratorConst wantedIteratorConst() const { return VekWanted::Map::IteratorConst(&wanted_); }

  /// 261: where each note sticks
  class VekNotes final : public Vek::HashElement<Vek::String8, ToyPoint> {
   public:
    using Map = Vek::HashMap<VekNotes, Vek::String8, ToyPoint>;
    using HashElement::HashElement;
    ~VekNotes() override;
  };
  /// The default where the key is absent.
  ToyPoint notes(Vek::String8 key) const { return Vek::collectionGet(*this, notes_, key); }
  /// Sets the value, of a new member where the key is absent. The present value: nothing happens.
  void notesIs(Vek::String8 key, ToyPoint const& value);
  /// A new member; one that has the key leaves. Counts nothing, calls nobody.
  Vek::Ptr<VekNotes> newNotes(Vek::String8 key, ToyPoint const& value);
  /// Removes the member and gives its value; the default where the key is absent.
  ToyPoint notesDel(Vek::String8 key);
  /// The same of the member under `it`, which keeps its place.
  ToyPoint notesDel(VekNotes::Map::Iterator& it);
  /// Removes all, one by one, each with its count and call of the reactors.
  void notesDelAll();
  /// Calls the reactors with that key. Changes and counts nothing.
  void notesNotify(Vek::String8 key);
  Vek::U32 notesCount() const { return notes_.count(); }
  /// Walks by the hashes of the keys; members may come and go meanwhile. The entity outlives its iterators.
  VekNotes::Map::Iterator notesIterator() { return VekNotes::Map::Iterator(&notes_); }
  VekNotes::Map::IteratorConst notesIteratorConst() const { return VekNotes::Map::IteratorConst(&notes_); }

  /// 263: FAPs of each VLAN
  class VekVlans final : public Vek::HashElement<Bridging::VlanIdOrNone, Kiln::Fapmask> {
   public:
    using Map = Vek::HashMap<VekVlans, Bridging::VlanIdOrNone, Kiln::Fapmask>;
    using HashElement::HashElement;
    ~VekVlans() override;
  };
  /// The default where the key is absent.
  Kiln::Fapmask vlans(Bridging::VlanIdOrNone key) const { return Vek::collectionGet(*this, vlans_, key); }
  /// Sets the value, of a new member where the key is absent. The present value: nothing happens.
  void vlansIs(Bridging::VlanIdOrNone key, Kiln::Fapmask const& value);
  /// A new member; one that has the key leaves. Counts nothing, calls nobody.
  Vek::Ptr<VekVlans> newVlans(Bridging::VlanIdOrNone key, Kiln::Fapmask const& value);
  /// Removes the member and gives its value; the default where the key is absent.
  Kiln::Fapmask vlansDel(Bridging::VlanIdOrNone key);
  /// The same of the member under `it`, which keeps its place.
  Kiln::Fapmask vlansDel(VekVlans::Map::Iterator& it);
  /// Removes all, one by one, each with its count and call of the reactors.
  void vlansDelAll();
  /// Calls the reactors with that key. Changes and counts nothing.
  void vlansNotify(Bridging::VlanIdOrNone key);
  Vek::U32 vlansCount() const { return vlans_.count(); }
  /// Walks by the hashes of the keys; members may come and go meanwhile. The entity outlives its iterators.
  VekVlans::Map::Iterator vlansIterator() { return VekVlans::Map::Iterator(&vlans_); }
  VekVlans::Map::IteratorConst vlansIteratorConst() const { return VekVlans::Map::IteratorConst(&vlans_); }

  /// 264: how many toys go in
  static constexpr Vek::U32 capacity() { return 12; }

  /// 265: its lid
  /// Null where there is none.
  Vek::Ptr<Lid> lid() const { return Vek::vekRead(*this, lid_); }
  /// A new child of this parent, not held by it. Counts nothing, calls nobody.
  Vek::Ptr<Lid> newLid(Vek::Name name);
  /// The child of that name, made where it is not there; one of another name leaves. Calls the reactors for a new one.
  Vek::ValidPtr<Lid> lidIs(Vek::Name name);
  /// Removes the child and gives it, without a parent; null where there is none.
  Vek::Ptr<Lid> lidDel();

  /// 266: its shelves
  /// Null where there is none.
  Vek::Ptr<Shelf> shelves(Vek::Name key) const { return Vek::childrenGet(*this, shelves_, key); }
  /// A new child; one that has the key leaves, without a parent. Counts nothing, calls nobody.
  Vek::Ptr<Shelf> newShelves(Vek::Name key);
  /// The child, made where it is not there. Calls the reactors for a new one.
  Vek::ValidPtr<Shelf> shelvesIs(Vek::Name key);
  /// Removes the child and gives it, without a parent; null where there is none.
  Vek::Ptr<Shelf> shelvesDel(Vek::Name key);
  /// The same of the child under `it`, which keeps its place.
  Vek::Ptr<Shelf> shelvesDel(Shelf::Map::Iterator& it);
  /// Removes all, one by one, each with its count and call of the reactors.
  void shelvesDelAll();
  /// Calls the reactors with that key. Changes and counts nothing.
  void shelvesNotify(Vek::Name key);
  Vek::U32 shelvesCount() const { return shelves_.count(); }
  /// Walks by the hashes of the keys; members may come and go meanwhile. The entity outlives its iterators.
  Shelf::Map::Iterator shelvesIterator() { return Shelf::Map::Iterator(&shelves_); }
  Shelf::Map::IteratorConst shelvesIteratorConst() const { return Shelf::Map::IteratorConst(&shelves_); }

  Vek::Ptr<Vek::Entity::VekNboAttrLogSa const> vekNboAttrLogSa(Vek::Ptr<Vek::NboAttrLog::Out const> const& out) const override;
  bool vekHasAttrLogInterface() const override { return true; }
  Vek::Ptr<Vek::Entity::VekNboAttrLogSa> vekNboAttrLogSa(Vek::Ptr<Vek::NboAttrLog::Out const> const& out) override;
  Vek::Ptr<Vek::Entity::VekNboAttrLogSa> vekNboAttrLogSaForMsgChannel(Vek::Ptr<Vek::Entity::VekNboAttrLogSa> const& adapter) const override;
  Vek::Ptr<Vek::Entity::VekNboAttrLogSa> vekNboAttrLogSaIs(Vek::PtrInterface::NotifieeConst::Vek_BitSet flags, Vek::U32 count, Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::PtrInterface* owner) override;
  Vek::Ptr<Vek::Entity::VekNboAttrLogSa> vekNboAttrLogSaDel(Vek::Ptr<Vek::NboAttrLog::Out const> const& out) override;
  static Vek::VekType* _fwkType();
  Vek::VekType* fwkType() const override { return _fwkType(); }
  Vek::String8 attributeString(Vek::AttributeId id) const override;
  void zeroReferencesIs(bool) override;

 private:
  template <class X>
  friend Vek::ReactorChain& Vek::reactorsOf(Vek::PtrInterface const& entity) noexcept;
  struct [[gnu::visibility("hidden")]] Attr;

  VekCounts::Map counts_;
  VekFaps::Map faps_;
  VekWanted::Map wanted_;
  VekNotes::Map notes_;
  VekVlans::Map vlans_;
  Vek::Ptr<Lid> lid_;
  Shelf::Map shelves_;
  mutable Vek::ListRaw<NotifieeConst> notifiees_;
};

/// A new ToyBox, entered in no directory.
Vek::Ptr<ToyBox> toyBoxFactory(Vek::Name name);

/// Hears of the changes of a ToyBox that it may not change itself.
class ToyBox::NotifieeConst : public Vek::Entity::NotifieeConst {
 public:
  NotifieeConst() = default;
  ~NotifieeConst() override;

  Vek::Ptr<ToyBox const> notifier() const { return static_cast<ToyBox const*>(rawNotifier()); }
  void notifierIs(Vek::Ptr<Vek::PtrInterface const> const& n) override;
  void isRegisteredNotifieeIs(bool on) const override;

  // Called inside the call that makes a change, which is stored and counted already.
  // Of the slots of a collection, changes call the one with the key; the others serve adapters.
  virtual void onCounts(Vek::U32) {}
  virtual void onCountsvekImmediate() {}
  virtual void onCounts() {}
  virtual void onFaps(Hardware::Dorn::FapId) {}
  virtual void onFapsvekImmediate() {}
  virtual void onFaps() {}
  virtual void onWanted(Vek::U32) {}
  virtual void onWantedvekImmediate() {}
  virtual void onWanted() {}
  virtual void onNotes(Vek::String8) {}
  virtual void onNotesvekImmediate() {}
  virtual void onNotes() {}
  virtual void onVlans(Bridging::VlanIdOrNone) {}
  virtual void onVlansvekImmediate() {}
  virtual void onVlans() {}
  virtual void onLid() {}
  virtual void onShelves(Vek::Name) {}
  virtual void onShelvesvekImmediate() {}
  virtual void onShelves() {}
};

/// Hears of the changes of a ToyBox, and may change it.
class ToyBox::Notifiee : public ToyBox::NotifieeConst {
 public:
  ~Notifiee() override;

  Vek::Ptr<ToyBox> notifier() const { return const_cast<ToyBox*>(NotifieeConst::notifier().ptr()); }
};

/// A ToyBox without its class: every attribute by name and number.
class ToyBox::GenericIf_ final : public Vek::GenericIfEntity {
 public:
  class GenericIf_Adapter_;

  GenericIf_(Vek::Ptr<ToyBox> const& entity, bool isConst);
  ~GenericIf_() override;
  static Vek::Ptr<Vek::GenericIf> genericIfListConstructor(Vek::Ptr<Vek::GenericIf const> const& arguments);

  Vek::Ptr<Vek::GenericIf> attributeOp(AttributeOp const& op, Vek::Ptr<Vek::GenericIf const> const& key, Vek::Ptr<Vek::GenericIf> const& value) override;
  void onCounts(Vek::U32 key);
  void onCounts() { tellWhole(258); }
  void onFaps(Hardware::Dorn::FapId key);
  void onFaps() { tellWhole(259); }
  void onWanted(Vek::U32 key);
  void onWanted() { tellWhole(260); }
  void onNotes(Vek::String8 key);
  void onNotes() { tellWhole(261); }
  void onVlans(Bridging::VlanIdOrNone key);
  void onVlans() { tellWhole(263); }
  void onLid() { tellScalar(265); }
  void onShelves(Vek::Name key);
  void onShelves() { tellWhole(266); }

  AttributeIteratorConst attributeIteratorConst(Vek::AttributeId id) const override;
  AttributeIteratorConst attributeIteratorKeyConst(Vek::AttributeId id, Vek::Ptr<Vek::GenericIf const> const& key) const override;
};

/// What binds a ToyBox to one attribute log.
class ToyBox::VekNboAttrLogSa : public Vek::Entity::VekNboAttrLogSa {
 public:
  class FlowOut;
  class VekNboAttrLogSaAdapter_;

  VekNboAttrLogSa(Vek_BitSet flags, Vek::Ptr<ToyBox> const& entity, Vek::U32 count, Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::PtrInterface* owner);
  ~VekNboAttrLogSa() override;

  Vek::Ptr<ToyBox> notifier() const { return const_cast<ToyBox*>(static_cast<ToyBox const*>(rawNotifier())); }
  Vek::Ptr<FlowOut> flowOut() const;

  Vek::AttributeId handleAttrFlowOut(Vek::AttributeId from) override;
  void freeResyncState(Vek::NboAttrLog::FlowOut& flowOut) override;
  void handleAttrTransaction(Vek::AttributeId attr, AttrTransactionType type, Vek::U32 argument) override;
  void syncModeIs(SyncMode mode) override;
  void vekInstantiateSerialize() override;
  void doRemountSelf(Vek::Ptr<Vek::NboAttrLog::Out> const& out) override;
  void doSerializeOrphan() override;
  void handleAttrDeserialization(int attr, DeserializationOptions options, Vek::U32 length, Vek::Ptr<Vek::NboAttrLog::In> const& in) override;
  Vek::Ptr<Vek::NboAttrLog::FlowOut> flowOutIs(Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::ConnectDesc const& desc, bool isFull, Vek::AttributeId startAttr) override;
  void doNotification(int attr, void const* key) override;
  virtual void onCounts(Vek::U32 key);
  bool vekHandleCountsSerializeColl();
  void vekHandleCountsSerializeSing(Vek::U32 key, Vek::U32 value, bool deleted);
  virtual void onFaps(Hardware::Dorn::FapId key);
  bool vekHandleFapsSerializeColl();
  void vekHandleFapsSerializeSing(Hardware::Dorn::FapId key, Vek::U64 const& value, bool deleted);
  virtual void onWanted(Vek::U32 key);
  bool vekHandleWantedSerializeColl();
  void vekHandleWantedSerializeSing(Vek::U32 key, bool value, bool deleted);
  virtual void onNotes(Vek::String8 key);
  bool vekHandleNotesSerializeColl();
  void vekHandleNotesSerializeSing(Vek::String8 key, ToyPoint const& value, bool deleted);
  virtual void onVlans(Bridging::VlanIdOrNone key);
  bool vekHandleVlansSerializeColl();
  void vekHandleVlansSerializeSing(Bridging::VlanIdOrNone key, Kiln::Fapmask const& value, bool deleted);
  virtual void onLid();
  Vek::Ptr<Lid::VekNboAttrLogSa> lidNboAttrLogAdapterIs(Vek_BitSet flags, Vek::Ptr<Lid> const& child, Vek::U32 count, Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::PtrInterface* channel);
  Vek::Ptr<Lid::VekNboAttrLogSa> lidNboAttrLogAdapterDel(Vek::Ptr<Lid> const& child);
  Vek::Ptr<Lid::VekNboAttrLogSa const> lidNboAttrLogAdapter(Vek::Ptr<Lid> const&) const { return {}; }
  Vek::Ptr<Lid::VekNboAttrLogSa> lidNboAttrLogAdapter(Vek::Ptr<Lid> const&) { return {}; }
  virtual void onShelves(Vek::Name key);
  bool vekHandleShelvesSerializeColl();
  void vekHandleShelvesSerializeSing(Vek::Name key, Vek::Ptr<Shelf> const& child);
  Vek::Ptr<Shelf::VekNboAttrLogSa> shelvesNboAttrLogAdapterIs(Vek_BitSet flags, Vek::Ptr<Shelf> const& child, Vek::U32 count, Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::PtrInterface* channel);
  Vek::Ptr<Shelf::VekNboAttrLogSa> shelvesNboAttrLogAdapterDel(Vek::Ptr<Shelf> const& child);
  Vek::Ptr<Shelf::VekNboAttrLogSa const> shelvesNboAttrLogAdapter(Vek::Ptr<Shelf> const&) const { return {}; }
  Vek::Ptr<Shelf::VekNboAttrLogSa> shelvesNboAttrLogAdapter(Vek::Ptr<Shelf> const&) { return {}; }
};

/// What such a binding owes its log.
class ToyBox::VekNboAttrLogSa::FlowOut final : public Vek::NboAttrLog::FlowOut {
 public:
  class VekDirtyBitSet0 final : public Vek::DirtyBits<1> {
   public:
    void vekCountsHasSyncedIs(bool on) { bitIs(1, on); }
    void vekFapsHasSyncedIs(bool on) { bitIs(2, on); }
    void vekWantedHasSyncedIs(bool on) { bitIs(3, on); }
    void vekNotesHasSyncedIs(bool on) { bitIs(4, on); }
    void vekVlansHasSyncedIs(bool on) { bitIs(5, on); }
    void vekIsLidDirtyIs(bool on) { bitIs(6, on); }
    void vekShelvesHasSyncedIs(bool on) { bitIs(7, on); }
  };
  class VekVekIsCountsDirty final : public Vek::RbElement<Vek::U32, bool> {
   public:
    using Map = Vek::RbTreeMap<VekVekIsCountsDirty, Vek::U32, bool>;
    using RbElement::RbElement;
  };
  class VekVekIsFapsDirty final : public Vek::RbElement<Hardware::Dorn::FapId, bool> {
   public:
    using Map = Vek::RbTreeMap<VekVekIsFapsDirty, Hardware::Dorn::FapId, bool>;
    using RbElement::RbElement;
  };
  class VekVekIsWantedDirty final : public Vek::HashElement<Vek::U32, bool> {
   public:
    using Map = Vek::HashMap<VekVekIsWantedDirty, Vek::U32, bool>;
    using HashElement::HashElement;
  };
  class VekVekIsNotesDirty final : public Vek::HashElement<Vek::String8, bool> {
   public:
    using Map = Vek::HashMap<VekVekIsNotesDirty, Vek::String8, bool>;
    using HashElement::HashElement;
  };
  class VekVekIsVlansDirty final : public Vek::HashElement<Bridging::VlanIdOrNone, bool> {
   public:
    using Map = Vek::HashMap<VekVekIsVlansDirty, Bridging::VlanIdOrNone, bool>;
    using HashElement::HashElement;
  };
  class VekVekIsShelvesDirty final : public Vek::HashElement<Vek::Name, bool> {
   public:
    using Map = Vek::HashMap<VekVekIsShelvesDirty, Vek::Name, bool>;
    using HashElement::HashElement;
  };

  FlowOut(Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::StreamAdapter* adapter, Vek::ConnectDesc const& desc, bool isFull, Vek::AttributeId startAttr);
  ~FlowOut() override;

  VekDirtyBitSet0& vekDirtyBitSet0() { return vekDirtyBitSet0_; }
  bool hasDirtyAttributes() const override;
  Vek::Ptr<VekVekIsCountsDirty> newVekIsCountsDirty(Vek::U32 key, bool on);
  void vekIsCountsDirtyIs(Vek::U32 key, bool on);
  bool vekIsCountsDirtyDel(Vek::U32 key);
  bool vekIsCountsDirtyDel(VekVekIsCountsDirty::Map::Iterator const& it) { return it && vekIsCountsDirtyDel(it->key()); }
  Vek::Ptr<VekVekIsFapsDirty> newVekIsFapsDirty(Hardware::Dorn::FapId key, bool on);
  void vekIsFapsDirtyIs(Hardware::Dorn::FapId key, bool on);
  bool vekIsFapsDirtyDel(Hardware::Dorn::FapId key);
  bool vekIsFapsDirtyDel(VekVekIsFapsDirty::Map::Iterator const& it) { return it && vekIsFapsDirtyDel(it->key()); }
  Vek::Ptr<VekVekIsWantedDirty> newVekIsWantedDirty(Vek::U32 key, bool on);
  void vekIsWantedDirtyIs(Vek::U32 key, bool on);
  bool vekIsWantedDirtyDel(Vek::U32 key);
  bool vekIsWantedDirtyDel(VekVekIsWantedDirty::Map::Iterator const& it) { return it && vekIsWantedDirtyDel(it->key()); }
  Vek::Ptr<VekVekIsNotesDirty> newVekIsNotesDirty(Vek::String8 key, bool on);
  void vekIsNotesDirtyIs(Vek::String8 key, bool on);
  bool vekIsNotesDirtyDel(Vek::String8 key);
  bool vekIsNotesDirtyDel(VekVekIsNotesDirty::Map::Iterator const& it) { return it && vekIsNotesDirtyDel(it->key()); }
  Vek::Ptr<VekVekIsVlansDirty> newVekIsVlansDirty(Bridging::VlanIdOrNone key, bool on);
  void vekIsVlansDirtyIs(Bridging::VlanIdOrNone key, bool on);
  bool vekIsVlansDirtyDel(Bridging::VlanIdOrNone key);
  bool vekIsVlansDirtyDel(VekVekIsVlansDirty::Map::Iterator const& it) { return it && vekIsVlansDirtyDel(it->key()); }
  Vek::Ptr<VekVekIsShelvesDirty> newVekIsShelvesDirty(Vek::Name key, bool on);
  void vekIsShelvesDirtyIs(Vek::Name key, bool on);
  bool vekIsShelvesDirtyDel(Vek::Name key);
  bool vekIsShelvesDirtyDel(VekVekIsShelvesDirty::Map::Iterator const& it) { return it && vekIsShelvesDirtyDel(it->key()); }

 private:
  friend struct ToyBox::Attr;
  VekDirtyBitSet0 vekDirtyBitSet0_;
  VekVekIsCountsDirty::Map vekIsCountsDirty_;
  VekVekIsFapsDirty::Map vekIsFapsDirty_;
  VekVekIsWantedDirty::Map vekIsWantedDirty_;
  VekVekIsNotesDirty::Map vekIsNotesDirty_;
  VekVekIsVlansDirty::Map vekIsVlansDirty_;
  VekVekIsShelvesDirty::Map vekIsShelvesDirty_;
};

}  // namespace Toys

#pragma GCC visibility pop
