// Made by schemac from Toy.toml: change that, not this.
// Toys: what the schema compiler emits, for every shape of type and attribute.
#pragma once

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

/// A point and its label.
class ToyPoint {
 public:
  class _Type;
  class GenericIf_;
  static constexpr char const* vekDeclaredName = "Toys::ToyPoint";

  ToyPoint() = default;
  ToyPoint(Vek::U32 x, double y, Vek::String8 label);
  ToyPoint(Vek::String8::IteratorConst& it, Vek::String8::IteratorConst const& end);

  /// 2: how far east
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

/// A VLAN, and no more than that.
class ToyVlan {
 public:
  class _Type;
  class GenericIf_;
  static constexpr char const* vekDeclaredName = "Toys::ToyVlan";

  ToyVlan() = default;
  explicit ToyVlan(Bridging::VlanIdOrNone vlan);
  ToyVlan(Vek::String8::IteratorConst& it, Vek::String8::IteratorConst const& end);

  /// 2: its number
  Bridging::VlanIdOrNone vlan() const noexcept { return vlan_; }
  void vlanIs(Bridging::VlanIdOrNone value) { vlan_ = value; }

  bool operator==(ToyVlan other) const;
  bool operator!=(ToyVlan other) const { return !(*this == other); }

  static Vek::VekType const* _fwkType();
  Vek::VekType const* fwkType() const { return _fwkType(); }

 private:
  friend Vek::String8 valueToStrep(ToyVlan const& value);
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

  explicit Toy(Vek::Name name);
  ~Toy() override;

  /// 258: how large it is
  Vek::U64 size() const { return Vek::vekRead(*this, size_); }
  void sizeIs(Vek::U64 const& value);
  Vek::U64 sizeInc(Vek::U64 const& delta);
  /// 259: whether it is broken
  bool broken() const { return Vek::vekRead(*this, broken_); }
  void brokenIs(bool value);
  /// 260: when it was last played with
  double played() const { return Vek::vekRead(*this, played_); }
  void playedIs(double const& value);
  /// 261: what is written on it
  Vek::String8 const& text() const { return Vek::vekRead(*this, text_); }
  void textIs(Vek::String8 value);
  /// 262: where it stands
  ToyPoint const& place() const { return Vek::vekRead(*this, place_); }
  void placeIs(ToyPoint const& value);

  bool vekHasAttrLogInterface() const override { return true; }
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

/// The lid of a box.
class Lid : public Vek::Entity {
 public:
  class _Type;
  class NotifieeConst;
  class Notifiee;
  class GenericIf_;

  explicit Lid(Vek::Name name);
  ~Lid() override;

  /// 258: whether it is open
  bool open() const { return Vek::vekRead(*this, open_); }
  void openIs(bool value);

  bool vekHasAttrLogInterface() const override { return true; }
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

/// A drawer of a box, by its label.
class Drawer : public Vek::Entity {
 public:
  class _Type;
  class NotifieeConst;
  class Notifiee;
  class GenericIf_;
  using Map = Vek::HashMap<Drawer, Vek::String8, Drawer>;

  explicit Drawer(Vek::Name name, Vek::String8 label);
  ~Drawer() override;

  /// 258: what stands on it
  Vek::String8 const& label() const { return Vek::vekRead(*this, label_); }
  /// 259: how many things lie in it
  Vek::U32 things() const { return Vek::vekRead(*this, things_); }
  void thingsIs(Vek::U32 value);
  Vek::U32 thingsInc(Vek::U32 delta);

  bool vekHasAttrLogInterface() const override { return true; }
  static Vek::VekType* _fwkType();
  Vek::VekType* fwkType() const override { return _fwkType(); }
  Vek::String8 attributeString(Vek::AttributeId id) const override;
  void zeroReferencesIs(bool) override;

  Vek::String8 vekKey() const { return label_; }
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

/// A shelf of a box, by its name.
class Shelf : public Vek::Entity {
 public:
  class _Type;
  class NotifieeConst;
  class Notifiee;
  class GenericIf_;
  using Map = Vek::HashMap<Shelf, Vek::Name, Shelf>;

  explicit Shelf(Vek::Name name);
  ~Shelf() override;

  /// 258: the drawers in it
  Vek::Ptr<Drawer> drawers(Vek::String8 key) const { return Vek::childrenGet(*this, drawers_, key); }
  Vek::Ptr<Drawer> newDrawers(Vek::String8 key);
  Vek::ValidPtr<Drawer> drawersIs(Vek::String8 key);
  Vek::Ptr<Drawer> drawersDel(Vek::String8 key);
  Vek::Ptr<Drawer> drawersDel(Drawer::Map::Iterator& it);
  void drawersDelAll();
  void drawersNotify(Vek::String8 key);
  Vek::U32 drawersCount() const { return drawers_.count(); }
  Drawer::Map::Iterator drawersIterator() { return Drawer::Map::Iterator(&drawers_); }
  Drawer::Map::IteratorConst drawersIteratorConst() const { return Drawer::Map::IteratorConst(&drawers_); }

  bool vekHasAttrLogInterface() const override { return true; }
  static Vek::VekType* _fwkType();
  Vek::VekType* fwkType() const override { return _fwkType(); }
  Vek::String8 attributeString(Vek::AttributeId id) const override;
  void zeroReferencesIs(bool) override;

  Vek::Name vekKey() const { return name(); }
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

/// A box of toys.
class ToyBox : public Vek::Entity {
 public:
  class _Type;
  class NotifieeConst;
  class Notifiee;
  class GenericIf_;

  explicit ToyBox(Vek::Name name);
  ~ToyBox() override;

  /// 258: how many of each kind
  class VekCounts final : public Vek::RbElement<Vek::U32, Vek::U32> {
   public:
    using Map = Vek::RbTreeMap<VekCounts, Vek::U32, Vek::U32>;
    using RbElement::RbElement;
    ~VekCounts() override;
  };
  Vek::U32 counts(Vek::U32 key) const { return Vek::collectionGet(*this, counts_, key); }
  void countsIs(Vek::U32 key, Vek::U32 value);
  Vek::Ptr<VekCounts> newCounts(Vek::U32 key, Vek::U32 value);
  Vek::U32 countsDel(Vek::U32 key);
  Vek::U32 countsDel(VekCounts::Map::Iterator& it);
  void countsDelAll();
  void countsNotify(Vek::U32 key);
  Vek::U32 countsCount() const { return counts_.count(); }
  VekCounts::Map::Iterator countsIterator() { return VekCounts::Map::Iterator(&counts_); }
  VekCounts::Map::IteratorConst countsIteratorConst() const { return VekCounts::Map::IteratorConst(&counts_); }
  /// 259: how many on each FAP
  class VekFaps final : public Vek::RbElement<Hardware::Dorn::FapId, Vek::U64> {
   public:
    using Map = Vek::RbTreeMap<VekFaps, Hardware::Dorn::FapId, Vek::U64>;
    using RbElement::RbElement;
    ~VekFaps() override;
  };
  Vek::U64 faps(Hardware::Dorn::FapId key) const { return Vek::collectionGet(*this, faps_, key); }
  void fapsIs(Hardware::Dorn::FapId key, Vek::U64 const& value);
  Vek::Ptr<VekFaps> newFaps(Hardware::Dorn::FapId key, Vek::U64 const& value);
  Vek::U64 fapsDel(Hardware::Dorn::FapId key);
  Vek::U64 fapsDel(VekFaps::Map::Iterator& it);
  void fapsDelAll();
  void fapsNotify(Hardware::Dorn::FapId key);
  Vek::U32 fapsCount() const { return faps_.count(); }
  VekFaps::Map::Iterator fapsIterator() { return VekFaps::Map::Iterator(&faps_); }
  VekFaps::Map::IteratorConst fapsIteratorConst() const { return VekFaps::Map::IteratorConst(&faps_); }
  /// 260: which kinds are wanted
  class VekWanted final : public Vek::HashElement<Vek::U32, bool> {
   public:
    using Map = Vek::HashMap<VekWanted, Vek::U32, bool>;
    using HashElement::HashElement;
    ~VekWanted() override;
  };
  bool wanted(Vek::U32 key) const;
  void wantedIs(Vek::U32 key, bool value);
  Vek::Ptr<VekWanted> newWanted(Vek::U32 key, bool value);
  bool wantedDel(Vek::U32 key);
  bool wantedDel(VekWanted::Map::Iterator& it);
  void wantedDelAll();
  void wantedNotify(Vek::U32 key);
  Vek::U32 wantedCount() const { return wanted_.count(); }
  VekWanted::Map::Iterator wantedIterator() { return VekWanted::Map::Iterator(&wanted_); }
  VekWanted::Map::IteratorConst wantedIteratorConst() const { return VekWanted::Map::IteratorConst(&wanted_); }
  /// 261: where each note sticks
  class VekNotes final : public Vek::HashElement<Vek::String8, ToyPoint> {
   public:
    using Map = Vek::HashMap<VekNotes, Vek::String8, ToyPoint>;
    using HashElement::HashElement;
    ~VekNotes() override;
  };
  ToyPoint notes(Vek::String8 key) const { return Vek::collectionGet(*this, notes_, key); }
  void notesIs(Vek::String8 key, ToyPoint const& value);
  Vek::Ptr<VekNotes> newNotes(Vek::String8 key, ToyPoint const& value);
  ToyPoint notesDel(Vek::String8 key);
  ToyPoint notesDel(VekNotes::Map::Iterator& it);
  void notesDelAll();
  void notesNotify(Vek::String8 key);
  Vek::U32 notesCount() const { return notes_.count(); }
  VekNotes::Map::Iterator notesIterator() { return VekNotes::Map::Iterator(&notes_); }
  VekNotes::Map::IteratorConst notesIteratorConst() const { return VekNotes::Map::IteratorConst(&notes_); }
  /// 263: FAPs of each VLAN
  class VekVlans final : public Vek::HashElement<Bridging::VlanIdOrNone, Kiln::Fapmask> {
   public:
    using Map = Vek::HashMap<VekVlans, Bridging::VlanIdOrNone, Kiln::Fapmask>;
    using HashElement::HashElement;
    ~VekVlans() override;
  };
  Kiln::Fapmask vlans(Bridging::VlanIdOrNone key) const { return Vek::collectionGet(*this, vlans_, key); }
  void vlansIs(Bridging::VlanIdOrNone key, Kiln::Fapmask const& value);
  Vek::Ptr<VekVlans> newVlans(Bridging::VlanIdOrNone key, Kiln::Fapmask const& value);
  Kiln::Fapmask vlansDel(Bridging::VlanIdOrNone key);
  Kiln::Fapmask vlansDel(VekVlans::Map::Iterator& it);
  void vlansDelAll();
  void vlansNotify(Bridging::VlanIdOrNone key);
  Vek::U32 vlansCount() const { return vlans_.count(); }
  VekVlans::Map::Iterator vlansIterator() { return VekVlans::Map::Iterator(&vlans_); }
  VekVlans::Map::IteratorConst vlansIteratorConst() const { return VekVlans::Map::IteratorConst(&vlans_); }
  /// 264: how many toys go in
  static constexpr Vek::U32 capacity() { return 12; }
  /// 265: its lid
  Vek::Ptr<Lid> lid() const { return Vek::vekRead(*this, lid_); }
  Vek::Ptr<Lid> newLid(Vek::Name name);
  Vek::ValidPtr<Lid> lidIs(Vek::Name name);
  Vek::Ptr<Lid> lidDel();
  /// 266: its shelves
  Vek::Ptr<Shelf> shelves(Vek::Name key) const { return Vek::childrenGet(*this, shelves_, key); }
  Vek::Ptr<Shelf> newShelves(Vek::Name key);
  Vek::ValidPtr<Shelf> shelvesIs(Vek::Name key);
  Vek::Ptr<Shelf> shelvesDel(Vek::Name key);
  Vek::Ptr<Shelf> shelvesDel(Shelf::Map::Iterator& it);
  void shelvesDelAll();
  void shelvesNotify(Vek::Name key);
  Vek::U32 shelvesCount() const { return shelves_.count(); }
  Shelf::Map::Iterator shelvesIterator() { return Shelf::Map::Iterator(&shelves_); }
  Shelf::Map::IteratorConst shelvesIteratorConst() const { return Shelf::Map::IteratorConst(&shelves_); }

  bool vekHasAttrLogInterface() const override { return true; }
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

}  // namespace Toys

#pragma GCC visibility pop
