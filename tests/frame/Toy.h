// Toy: a value type and an entity as the schema compiler writes them. Change it first, then the compiler's templates.
#pragma once

#include "core/ListRaw.h"
#include "frame/EntityFrame.h"
#include "platform/vek/Entity.h"

#pragma GCC visibility push(default)

namespace Toys {

// A point and its label.
class ToyPoint {
 public:
  class _Type;
  static constexpr char const* vekDeclaredName = "Toys::ToyPoint";

  ToyPoint() = default;
  ToyPoint(Vek::U32 x, Vek::Seconds y, Vek::String8 label);
  ToyPoint(Vek::String8::IteratorConst& it, Vek::String8::IteratorConst const& end);

  // 2: how far east
  Vek::U32 x() const noexcept { return x_; }
  void xIs(Vek::U32 value) { x_ = value; }
  // 3: how far up
  Vek::Seconds y() const noexcept { return y_; }
  void yIs(Vek::Seconds value) { y_ = value; }
  // 4: what it is called
  Vek::String8 const& label() const noexcept { return label_; }
  void labelIs(Vek::String8 value) { label_ = value; }

  bool operator==(ToyPoint const& other) const;
  bool operator!=(ToyPoint const& other) const { return !(*this == other); }

  static Vek::VekType const* _fwkType();
  Vek::VekType const* fwkType() const { return _fwkType(); }

 private:
  friend Vek::String8 valueToStrep(ToyPoint const& value);
  struct Attr;

  Vek::U32 x_ = 0;
  Vek::Seconds y_ = 0;
  Vek::String8 label_;
};

Vek::String8 valueToStrep(ToyPoint const& value);
std::ostream& operator<<(std::ostream& os, ToyPoint const& value);

// A toy on a shelf.
class Toy : public Vek::Entity {
 public:
  class _Type;
  class NotifieeConst;
  class Notifiee;

  explicit Toy(Vek::Name name);
  ~Toy() override;

  // 258: how large it is
  Vek::U64 size() const { return Vek::vekRead(*this, size_); }
  void sizeIs(Vek::U64 const& value);
  Vek::U64 sizeInc(Vek::U64 const& delta);
  // 259: whether it is broken
  bool broken() const { return Vek::vekRead(*this, broken_); }
  void brokenIs(bool value);
  // 260: when it was last played with
  Vek::Seconds played() const { return Vek::vekRead(*this, played_); }
  void playedIs(Vek::Seconds const& value);
  // 261: what is written on it
  Vek::String8 const& text() const { return Vek::vekRead(*this, text_); }
  void textIs(Vek::String8 value);
  // 262: where it stands
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
  struct Attr;

  Vek::U64 size_ = 0;
  bool broken_ = false;
  Vek::Seconds played_ = 0;
  Vek::String8 text_;
  ToyPoint place_;
  mutable Vek::ListRaw<NotifieeConst> notifiees_;
};

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

class Toy::Notifiee : public Toy::NotifieeConst {
 public:
  ~Notifiee() override;

  Vek::Ptr<Toy> notifier() const { return const_cast<Toy*>(static_cast<Toy const*>(rawNotifier())); }
};

Vek::Ptr<Toy> toyFactory(Vek::Name name);

}  // namespace Toys

#pragma GCC visibility pop
