// GenericIfEntity: the generic of an entity, but for what depends on the entity's class: its events, the framework's
// own attributes, and its life together with its adapter. Owner: see GenericIf; the generic holds its entity. The
// adapter, a weak reactor of the entity, is held by the generic and knows it by a plain pointer: generic, adapter,
// entity and subscriber may go in any order.
#pragma once

#include "platform/vek/Activity.h"
#include "platform/vek/Entity.h"
#include "platform/vek/GenericIf.h"

#include <vector>

namespace Vek {

/// The generic of an object about which no more is known, or of null.
class GenericIfPtrInterface : public GenericIf {
 public:
  GenericIfPtrInterface(PtrInterface* object, bool isConst);
  ~GenericIfPtrInterface() override;

  /// The object, or null.
  [[nodiscard]] virtual Ptr<PtrInterface const> obj() const;
  [[nodiscard]] virtual Ptr<PtrInterface> obj();

  [[nodiscard]] VekType const* type() const override;
  [[nodiscard]] void const* voidPtrIs(Ptr<VekType const> const& t) const override;
  [[nodiscard]] String8 strRep() const override;
  [[nodiscard]] Ptr<GenericIf> clone() override;
};

class GenericIfEntity;

/// The side of an adapter that its generic sees.
class GenericAdapterLink {
 public:
  explicit GenericAdapterLink(GenericIfEntity* reactor) noexcept : reactor_(reactor) {}
  GenericAdapterLink(GenericAdapterLink const&) = delete;
  GenericAdapterLink& operator=(GenericAdapterLink const&) = delete;
  virtual ~GenericAdapterLink();

  /// The generic that is served; null once it is gone.
  [[nodiscard]] GenericIfEntity* reactor() const noexcept { return reactor_; }
  void reactorDel() noexcept { reactor_ = nullptr; }
  virtual void vekDoZombieReactors(bool zombie) = 0;

 private:
  GenericIfEntity* reactor_;
};

class GenericIfEntity : public GenericIfPtrInterface {
 public:
  ~GenericIfEntity() override;

  [[nodiscard]] VekType const* type() const override { return type_; }
  [[nodiscard]] void const* voidPtrIs(Ptr<VekType const> const& t) const override;
  [[nodiscard]] String8 attributeString(AttributeId id) const override;
  [[nodiscard]] Ptr<GenericIf> clone() override;
  /// What every entity has: its name and place, its counts, its key; they are read only.
  Ptr<GenericIf> attributeOp(AttributeOp const& op, Ptr<GenericIf const> const& key,
                             Ptr<GenericIf> const& value) override;

  void hasNotificationActiveIs(bool on) override;
  void notifierIs(Ptr<PtrInterface const> const& n) override;
  void vekDoZombieReactors(bool zombie) override;

  /// Puts events off until the activity runs; null: they are told at once, those that wait already among them.
  void activityIs(Ptr<Activity> const& activity);
  [[nodiscard]] Ptr<Activity> const& activity() const noexcept { return activity_; }
  /// Tells every attribute, changed or not, at the next run of the activity.
  void sweepIs();

  /// Delivers what was put off.
  void handleNotification(ActivityConfig* config) override;
  [[nodiscard]] Activity* actsm() override { return activity_.ptr(); }

  /// The entity, to work on. Throws TypeException where there is none.
  [[nodiscard]] Entity& entity() const;

  // Events, from the adapter.
  void onScalarEvent(AttributeId id);
  void onKeyedEvent(AttributeId id, VekType const* keyType, void const* key);
  void onWholeEvent(AttributeId id);

 protected:
  GenericIfEntity(VekType const* type, PtrInterface* entity, bool isConst);

  /// Takes the adapter, once.
  template <class Adapter>
  void adapterIs(Ptr<Adapter> const& adapter) noexcept {
    adapter_ = adapter;
    link_ = adapter.ptr();
  }

 private:
  struct KeySlot {
    AttributeId id;
    Ptr<GenericIf const> lastKey;
    U8 pending = 0;  // how many events wait: none, one, or several
  };

  static constexpr int changedSweep = -1;
  static constexpr int fullSweep = -2;

  [[nodiscard]] KeySlot& slotOf(AttributeId id);
  [[nodiscard]] bool vekOnAttribute(AttributeId id, U8* pending);
  void redispatch() noexcept { delivering_ = 0; }
  void deliverScalar(AttributeId id);
  void deliverKeyed(AttributeId id, bool force);
  void sweep(bool force);

  VekType const* type_;
  Ptr<PtrInterface::NotifieeConst> adapter_;
  GenericAdapterLink* link_ = nullptr;
  Ptr<Activity> activity_;
  std::vector<KeySlot> slots_;
  int pendingAttribute_ = 0;    // 0 none, an attribute's number, or one of the sweeps
  AttributeId delivering_ = 0;  // its next event is told at once
};

}  // namespace Vek
