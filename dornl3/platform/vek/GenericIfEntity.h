// GenericIfEntity: the generic of an entity, but for what depends on the entity's class: its events, the framework's
// own attributes, and its life together with its adapter. Owner: see GenericIf; the generic holds its entity. The
// adapter, a weak reactor of the entity, is held by the generic and knows it by a plain pointer: generic, adapter,
// entity and subscriber may go in any order.
// Thread: the entity's. Re-entrancy: a subscriber may do what a reactor may, see ReactorWalk.
#pragma once

#include "dornl3/platform/vek/Activity.h"
#include "dornl3/platform/vek/Entity.h"
#include "dornl3/platform/vek/GenericIf.h"

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
  using GenericIf::clone;
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
  /// Serves another, or none; takes no reference.
  void reactorIs(GenericIfEntity* reactor) noexcept { reactor_ = reactor; }
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
  using GenericIf::clone;
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
  using GenericIf::vekFwkActivity;
  [[nodiscard]] Activity* vekFwkActivity() override { return activity_.ptr(); }
  /// Tells every attribute, changed or not, at the next run of the activity.
  void sweepIs();

  /// Delivers what was put off: one attribute, or all of them in a sweep. Of a collection one event is told with its
  /// key, several as one without; each may be put off anew. What a subscriber throws ends the delivery.
  void handleNotification(ActivityConfig* config) override;

  /// What hears the entity for this generic; never null. Whoever holds it longer than the generic holds a silent one.
  [[nodiscard]] Ptr<PtrInterface::NotifieeConst> const& adapter() const noexcept { return adapter_; }

  /// The entity, to work on. Throws TypeException where there is none.
  [[nodiscard]] Entity& entity() const;

  // Events, from the adapter: told now, or put off. What an X::GenericIf_ has as on<Attr> are one-line calls of these.
  void tellScalar(AttributeId id);
  void tellKey(AttributeId id, VekType const* keyType, void const* key);
  /// Of a collection, anywhere in it; never put off.
  void tellWhole(AttributeId id);

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

  enum class Force : bool { no, yes };

  [[nodiscard]] bool isIdle() const noexcept;
  [[nodiscard]] KeySlot& slotOf(AttributeId id);
  void tellLastKey(KeySlot& slot);
  void deliver(VekAttr const& attr, Force force);
  void deliverKeyed(AttributeId id, Force force);
  void sweep(Force force);

  VekType const* type_;
  Ptr<PtrInterface::NotifieeConst> adapter_;
  GenericAdapterLink* link_ = nullptr;
  Ptr<Activity> activity_;
  std::vector<KeySlot> slots_;
};

}  // namespace Vek
