// Made by schemac from Toy.toml: change that, not this.
#include "tests/frame/Toy.h"

#include "dornl3/attrlog/AdapterFrame.h"
#include "dornl3/attrlog/LoggedType.h"
#include "dornl3/frame/SchemaFile.h"
#include "dornl3/frame/TypeNames.h"
#include "dornl3/frame/ValueFrame.h"
#include "dornl3/generic/EntityGeneric.h"
#include "dornl3/generic/ValueOps.h"
#include "dornl3/text/ValueText.h"

#include <iostream>

namespace Toys {

static void vekInitToy();

// ToyPoint

struct ToyPoint::Attr {
  static constexpr char const* shortName = "ToyPoint";
  static constexpr char const* fullName = "Toys::ToyPoint";
  static constexpr bool bare = false;
  static inline constinit Vek::VekType* record = nullptr;

  struct x : Vek::Fixed<ToyPoint, Vek::U32, 2> {
    static constexpr char const* name = "x";
    static auto& field(auto& value) { return value.x_; }
    static constexpr long long min = 0;
    static constexpr long long max = 100;
  };
  struct y : Vek::Fixed<ToyPoint, double, 3> {
    static constexpr char const* name = "y";
    static auto& field(auto& value) { return value.y_; }
  };
  struct label : Vek::Fixed<ToyPoint, Vek::String8, 4> {
    static constexpr char const* name = "label";
    static auto& field(auto& value) { return value.label_; }
  };
  using All = Vek::List<x, y, label>;
};

class ToyPoint::_Type final : public Vek::GenericValueType<ToyPoint, ToyPoint::Attr> {};

ToyPoint::ToyPoint(Vek::U32 x, double y, Vek::String8 label) : x_(x), y_(y), label_(std::move(label)) {}

ToyPoint::ToyPoint(Vek::String8::IteratorConst& it, Vek::String8::IteratorConst const& end) {
  Vek::readValueText<Attr>(*this, it, end);
}

ToyPoint::ToyPoint(Vek::NboAttrLog::In* in, Vek::StreamBogon) { Vek::readValueFields<Attr>(*this, *in); }
Vek::NboAttrLog::OutPtr const& operator<<(Vek::NboAttrLog::OutPtr const& out, ToyPoint const& value) { return Vek::writeValueFields<ToyPoint::Attr>(out, value); }

bool ToyPoint::operator==(ToyPoint const& other) const { return Vek::valueEqual<Attr>(*this, other); }

Vek::VekType const* ToyPoint::_fwkType() { return Vek::typeRecord<_Type>(vekInitToy); }

Vek::String8 valueToStrep(ToyPoint const& value) { return Vek::valueText<ToyPoint::Attr>(value); }

std::ostream& operator<<(std::ostream& os, ToyPoint const& value) { return Vek::writeTo(os, valueToStrep(value)); }

Vek::Ptr<ToyPoint::GenericIf_> ToyPoint::GenericIf_::GenericIf_Is(ToyPoint const& value, bool isConst) {
  return Vek::activeGeneric<GenericIf_>(value, isConst);
}
Vek::Ptr<Vek::GenericIf> ToyPoint::GenericIf_::genericIfListConstructor(Vek::Ptr<Vek::GenericIf const> const& arguments) {
  return GenericIf_Is(Vek::valueFromList<Attr, ToyPoint>(arguments.ptr()), false);
}
Vek::Ptr<Vek::GenericIf> ToyPoint::GenericIf_::attributeOp(AttributeOp const& op, Vek::Ptr<Vek::GenericIf const> const& key, Vek::Ptr<Vek::GenericIf> const& value) {
  return Vek::valueAttributeOp<Attr>(*this, op, key, value);
}

// ToyVlan

struct ToyVlan::Attr {
  static constexpr char const* shortName = "ToyVlan";
  static constexpr char const* fullName = "Toys::ToyVlan";
  static constexpr bool bare = true;
  static inline constinit Vek::VekType* record = nullptr;

  struct vlan : Vek::Fixed<ToyVlan, Bridging::VlanIdOrNone, 2> {
    static constexpr char const* name = "vlan";
    static auto& field(auto& value) { return value.vlan_; }
  };
  using All = Vek::List<vlan>;
};

class ToyVlan::_Type final : public Vek::GenericValueType<ToyVlan, ToyVlan::Attr> {};

ToyVlan::ToyVlan(Bridging::VlanIdOrNone vlan) : vlan_(vlan) {}

ToyVlan::ToyVlan(Vek::String8::IteratorConst& it, Vek::String8::IteratorConst const& end) {
  Vek::readValueText<Attr>(*this, it, end);
}

ToyVlan::ToyVlan(Vek::NboAttrLog::In* in, Vek::StreamBogon) { Vek::readValueFields<Attr>(*this, *in); }
Vek::NboAttrLog::OutPtr const& operator<<(Vek::NboAttrLog::OutPtr const& out, ToyVlan value) { return Vek::writeValueFields<ToyVlan::Attr>(out, value); }

bool ToyVlan::operator==(ToyVlan other) const { return Vek::valueEqual<Attr>(*this, other); }

Vek::VekType const* ToyVlan::_fwkType() { return Vek::typeRecord<_Type>(vekInitToy); }

Vek::String8 valueToStrep(ToyVlan const& value) { return Vek::valueText<ToyVlan::Attr>(value); }

std::ostream& operator<<(std::ostream& os, ToyVlan const& value) { return Vek::writeTo(os, valueToStrep(value)); }

Vek::Ptr<ToyVlan::GenericIf_> ToyVlan::GenericIf_::GenericIf_Is(ToyVlan value, bool isConst) {
  return Vek::activeGeneric<GenericIf_>(value, isConst);
}
Vek::Ptr<Vek::GenericIf> ToyVlan::GenericIf_::genericIfListConstructor(Vek::Ptr<Vek::GenericIf const> const& arguments) {
  return GenericIf_Is(Vek::valueFromList<Attr, ToyVlan>(arguments.ptr()), false);
}
Vek::Ptr<Vek::GenericIf> ToyVlan::GenericIf_::attributeOp(AttributeOp const& op, Vek::Ptr<Vek::GenericIf const> const& key, Vek::Ptr<Vek::GenericIf> const& value) {
  return Vek::valueAttributeOp<Attr>(*this, op, key, value);
}

// Toy

struct Toy::Attr {
  static constexpr char const* shortName = "Toy";
  static constexpr char const* fullName = "Toys::Toy";
  static inline constinit Vek::VekType* record = nullptr;

  struct size : Vek::Scalar<Toy, Vek::U64, 258> {
    static constexpr char const* name = "size";
    static auto& field(auto& entity) { return entity.size_; }
    static constexpr auto slot = &NotifieeConst::onSize;
    static constexpr auto logHandler = &VekNboAttrLogSa::onSize;
  };
  struct broken : Vek::Scalar<Toy, bool, 259> {
    static constexpr char const* name = "broken";
    static auto& field(auto& entity) { return entity.broken_; }
    static constexpr auto slot = &NotifieeConst::onBroken;
    static constexpr auto logHandler = &VekNboAttrLogSa::onBroken;
  };
  struct played : Vek::Scalar<Toy, double, 260> {
    static constexpr char const* name = "played";
    static auto& field(auto& entity) { return entity.played_; }
    static constexpr auto slot = &NotifieeConst::onPlayed;
    static constexpr auto logHandler = &VekNboAttrLogSa::onPlayed;
  };
  struct text : Vek::Scalar<Toy, Vek::String8, 261> {
    static constexpr char const* name = "text";
    static auto& field(auto& entity) { return entity.text_; }
    static constexpr auto slot = &NotifieeConst::onText;
    static constexpr auto logHandler = &VekNboAttrLogSa::onText;
    static constexpr auto logText = &VekNboAttrLogSa::vekHandleTextSerialize;
  };
  struct place : Vek::Scalar<Toy, ToyPoint, 262> {
    static constexpr char const* name = "place";
    static auto& field(auto& entity) { return entity.place_; }
    static constexpr auto slot = &NotifieeConst::onPlace;
    static constexpr auto logHandler = &VekNboAttrLogSa::onPlace;
  };
  using All = Vek::List<size, broken, played, text, place>;
};

class Toy::_Type final : public Vek::LoggedType<Vek::GenericRootEntityType<Toy, Toy::Attr>> {};

Toy::Toy(Vek::Name name) : Vek::Entity(std::move(name)) {}
Toy::~Toy() = default;
void Toy::sizeIs(Vek::U64 const& value) { Vek::scalarIs<Attr::size>(*this, value); }
Vek::U64 Toy::sizeInc(Vek::U64 const& delta) { return Vek::scalarInc<Attr::size>(*this, delta); }
void Toy::brokenIs(bool value) { Vek::scalarIs<Attr::broken>(*this, value); }
void Toy::playedIs(double const& value) { Vek::scalarIs<Attr::played>(*this, value); }
void Toy::textIs(Vek::String8 value) { Vek::scalarIs<Attr::text>(*this, value); }
void Toy::placeIs(ToyPoint const& value) { Vek::scalarIs<Attr::place>(*this, value); }

Vek::VekType* Toy::_fwkType() { return Vek::typeRecord<_Type>(vekInitToy); }
Vek::String8 Toy::attributeString(Vek::AttributeId id) const { return Vek::attributeString<Attr>(*this, id); }
void Toy::zeroReferencesIs(bool) { Vek::notifyZeroReferences(*this); }

Vek::Ptr<Toy> toyFactory(Vek::Name name) { return Vek::make<Toy>(std::move(name)); }

Toy::NotifieeConst::~NotifieeConst() { leaveForGood(Vek::reactorsOf<Toy>); }
void Toy::NotifieeConst::notifierIs(Vek::Ptr<Vek::PtrInterface const> const& n) {
  follow(Vek::entityOf<Toy>(n), Vek::reactorsOf<Toy>);
}
void Toy::NotifieeConst::isRegisteredNotifieeIs(bool on) const { registerWith(on, Vek::reactorsOf<Toy>); }
Toy::Notifiee::~Notifiee() = default;

class Toy::GenericIf_::GenericIf_Adapter_ final : public Vek::GenericAdapter<Toy> {
 public:
  using GenericAdapter::GenericAdapter;
  static Vek::Ptr<GenericIf_Adapter_> GenericIf_Adapter_Is(Vek::Ptr<Toy> const& entity, GenericIf_& reactor) {
    return Vek::activeGeneric<GenericIf_Adapter_>(entity, reactor);
  }

  void onSize() override { forward(&GenericIf_::onSize); }
  void onBroken() override { forward(&GenericIf_::onBroken); }
  void onPlayed() override { forward(&GenericIf_::onPlayed); }
  void onText() override { forward(&GenericIf_::onText); }
  void onPlace() override { forward(&GenericIf_::onPlace); }
};

Toy::GenericIf_::GenericIf_(Vek::Ptr<Toy> const& entity, bool isConst) : GenericIfEntity(Toy::_fwkType(), entity.ptr(), isConst) {
  adapterIs(GenericIf_Adapter_::GenericIf_Adapter_Is(entity, *this));
}
Toy::GenericIf_::~GenericIf_() = default;
Vek::Ptr<Vek::GenericIf> Toy::GenericIf_::genericIfListConstructor(Vek::Ptr<Vek::GenericIf const> const& arguments) {
  return Vek::entityFromList<Attr, Toy>(arguments);
}
Vek::Ptr<Vek::GenericIf> Toy::GenericIf_::attributeOp(AttributeOp const& op, Vek::Ptr<Vek::GenericIf const> const& key, Vek::Ptr<Vek::GenericIf> const& value) {
  return Vek::entityAttributeOp<Attr, Toy>(*this, op, key, value);
}

/// Stands on a Toy's list of reactors, for a binding to a log.
class Toy::VekNboAttrLogSa::VekNboAttrLogSaAdapter_ final : public Vek::LogReactor<Toy> {
 public:
  using LogReactor::LogReactor;
  static Vek::Ptr<VekNboAttrLogSaAdapter_> VekNboAttrLogSaAdapter_Is(Vek::Ptr<Toy> const& entity, VekNboAttrLogSa& adapter) {
    return Vek::logReactor<VekNboAttrLogSaAdapter_>(entity, adapter);
  }
  void onSize() override { forward(&VekNboAttrLogSa::onSize); }
  void onBroken() override { forward(&VekNboAttrLogSa::onBroken); }
  void onPlayed() override { forward(&VekNboAttrLogSa::onPlayed); }
  void onText() override { forward(&VekNboAttrLogSa::onText); }
  void onPlace() override { forward(&VekNboAttrLogSa::onPlace); }
};

Toy::VekNboAttrLogSa::VekNboAttrLogSa(Vek_BitSet flags, Vek::Ptr<Toy> const& entity, Vek::U32 count, Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::PtrInterface* owner) : Vek::Entity::VekNboAttrLogSa(flags, count, out, owner) {
  reactorAdapterIs(VekNboAttrLogSaAdapter_::VekNboAttrLogSaAdapter_Is(entity, *this), entity);
  Vek::joinSynchronisation<Attr>(*this);
}
Toy::VekNboAttrLogSa::~VekNboAttrLogSa() { Vek::letReactorGo<VekNboAttrLogSaAdapter_>(reactorAdapterDel()); }
Vek::Ptr<Toy::VekNboAttrLogSa::FlowOut> Toy::VekNboAttrLogSa::flowOut() const { return static_cast<FlowOut*>(StreamAdapter::flowOut().ptr()); }
Vek::AttributeId Toy::VekNboAttrLogSa::handleAttrFlowOut(Vek::AttributeId from) { return Vek::walkAttributes<Attr>(*this, from); }
void Toy::VekNboAttrLogSa::freeResyncState(Vek::NboAttrLog::FlowOut& flowOut) { Vek::freeWalkState<Attr>(flowOut); }
void Toy::VekNboAttrLogSa::handleAttrTransaction(Vek::AttributeId attr, AttrTransactionType type, Vek::U32 argument) { Vek::applyTransaction<Attr>(*this, attr, type, argument); }
void Toy::VekNboAttrLogSa::syncModeIs(SyncMode mode) { Vek::syncModeFollows<Attr>(*this, mode); }
void Toy::VekNboAttrLogSa::doSerializeOrphan() { Vek::serializeOrphan<Attr, Toy>(*this); }
void Toy::VekNboAttrLogSa::handleAttrDeserialization(int attr, DeserializationOptions options, Vek::U32 length, Vek::Ptr<Vek::NboAttrLog::In> const& in) {
  Vek::receiveRecord<Attr>(*this, attr, options, length, in);
}
Vek::Ptr<Vek::NboAttrLog::FlowOut> Toy::VekNboAttrLogSa::flowOutIs(Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::ConnectDesc const& desc, bool isFull, Vek::AttributeId startAttr) {
  return Vek::make<FlowOut>(out, this, desc, isFull, startAttr);
}
void Toy::VekNboAttrLogSa::doNotification(int attr, void const* key) { Vek::notifyLog<Attr>(*this, attr, key); }
void Toy::VekNboAttrLogSa::onSize() { Vek::logScalar<Attr, Attr::size>(*this); }
void Toy::VekNboAttrLogSa::onBroken() { Vek::logScalar<Attr, Attr::broken>(*this); }
void Toy::VekNboAttrLogSa::onPlayed() { Vek::logScalar<Attr, Attr::played>(*this); }
void Toy::VekNboAttrLogSa::onText() { static_cast<void>(vekHandleTextSerialize()); }
bool Toy::VekNboAttrLogSa::vekHandleTextSerialize() { return Vek::logText<Attr, Attr::text>(*this); }
void Toy::VekNboAttrLogSa::onPlace() { Vek::logScalar<Attr, Attr::place>(*this); }

Toy::VekNboAttrLogSa::FlowOut::FlowOut(Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::StreamAdapter* adapter, Vek::ConnectDesc const& desc, bool isFull, Vek::AttributeId startAttr) : Vek::NboAttrLog::FlowOut(out, adapter, desc, isFull, startAttr) {
  wordsAre(vekDirtyBitSet0_.words());
  Vek::oweFrom<Attr>(*this, startAttr);
}
Toy::VekNboAttrLogSa::FlowOut::~FlowOut() = default;
bool Toy::VekNboAttrLogSa::FlowOut::hasDirtyAttributes() const { return Vek::owesAnything<Attr>(*this); }

Vek::Ptr<Vek::Entity::VekNboAttrLogSa const> Toy::vekNboAttrLogSa(Vek::Ptr<Vek::NboAttrLog::Out const> const& out) const { return const_cast<Toy*>(this)->vekNboAttrLogSa(out); }
Vek::Ptr<Vek::Entity::VekNboAttrLogSa> Toy::vekNboAttrLogSa(Vek::Ptr<Vek::NboAttrLog::Out const> const& out) { return Vek::logAdapterOf(*this, notifiees_.chain(), out); }
Vek::Ptr<Vek::Entity::VekNboAttrLogSa> Toy::vekNboAttrLogSaForMsgChannel(Vek::Ptr<Vek::Entity::VekNboAttrLogSa> const& adapter) const { return Vek::channelSiblingOf(notifiees_.chain(), adapter); }
Vek::Ptr<Vek::Entity::VekNboAttrLogSa> Toy::vekNboAttrLogSaIs(Vek::PtrInterface::NotifieeConst::Vek_BitSet flags, Vek::U32 count, Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::PtrInterface* owner) {
  return Vek::bindToLog(*this, flags, count, out, owner);
}
Vek::Ptr<Vek::Entity::VekNboAttrLogSa> Toy::vekNboAttrLogSaDel(Vek::Ptr<Vek::NboAttrLog::Out const> const& out) { return Vek::logAdapterDel(*this, out); }

// Lid

struct Lid::Attr {
  static constexpr char const* shortName = "Lid";
  static constexpr char const* fullName = "Toys::Lid";
  static inline constinit Vek::VekType* record = nullptr;

  struct open : Vek::Scalar<Lid, bool, 258> {
    static constexpr char const* name = "open";
    static auto& field(auto& entity) { return entity.open_; }
    static constexpr auto slot = &NotifieeConst::onOpen;
    static constexpr auto logHandler = &VekNboAttrLogSa::onOpen;
  };
  using All = Vek::List<open>;
};

class Lid::_Type final : public Vek::LoggedType<Vek::GenericEntityType<Lid, Lid::Attr>> {};

Lid::Lid(Vek::Name name) : Vek::Entity(std::move(name)) {}
Lid::~Lid() = default;
void Lid::openIs(bool value) { Vek::scalarIs<Attr::open>(*this, value); }

Vek::VekType* Lid::_fwkType() { return Vek::typeRecord<_Type>(vekInitToy); }
Vek::String8 Lid::attributeString(Vek::AttributeId id) const { return Vek::attributeString<Attr>(*this, id); }
void Lid::zeroReferencesIs(bool) { Vek::notifyZeroReferences(*this); }

Lid::NotifieeConst::~NotifieeConst() { leaveForGood(Vek::reactorsOf<Lid>); }
void Lid::NotifieeConst::notifierIs(Vek::Ptr<Vek::PtrInterface const> const& n) {
  follow(Vek::entityOf<Lid>(n), Vek::reactorsOf<Lid>);
}
void Lid::NotifieeConst::isRegisteredNotifieeIs(bool on) const { registerWith(on, Vek::reactorsOf<Lid>); }
Lid::Notifiee::~Notifiee() = default;

class Lid::GenericIf_::GenericIf_Adapter_ final : public Vek::GenericAdapter<Lid> {
 public:
  using GenericAdapter::GenericAdapter;
  static Vek::Ptr<GenericIf_Adapter_> GenericIf_Adapter_Is(Vek::Ptr<Lid> const& entity, GenericIf_& reactor) {
    return Vek::activeGeneric<GenericIf_Adapter_>(entity, reactor);
  }

  void onOpen() override { forward(&GenericIf_::onOpen); }
};

Lid::GenericIf_::GenericIf_(Vek::Ptr<Lid> const& entity, bool isConst) : GenericIfEntity(Lid::_fwkType(), entity.ptr(), isConst) {
  adapterIs(GenericIf_Adapter_::GenericIf_Adapter_Is(entity, *this));
}
Lid::GenericIf_::~GenericIf_() = default;
Vek::Ptr<Vek::GenericIf> Lid::GenericIf_::attributeOp(AttributeOp const& op, Vek::Ptr<Vek::GenericIf const> const& key, Vek::Ptr<Vek::GenericIf> const& value) {
  return Vek::entityAttributeOp<Attr, Lid>(*this, op, key, value);
}

/// Stands on a Lid's list of reactors, for a binding to a log.
class Lid::VekNboAttrLogSa::VekNboAttrLogSaAdapter_ final : public Vek::LogReactor<Lid> {
 public:
  using LogReactor::LogReactor;
  static Vek::Ptr<VekNboAttrLogSaAdapter_> VekNboAttrLogSaAdapter_Is(Vek::Ptr<Lid> const& entity, VekNboAttrLogSa& adapter) {
    return Vek::logReactor<VekNboAttrLogSaAdapter_>(entity, adapter);
  }
  void onOpen() override { forward(&VekNboAttrLogSa::onOpen); }
};

Lid::VekNboAttrLogSa::VekNboAttrLogSa(Vek_BitSet flags, Vek::Ptr<Lid> const& entity, Vek::U32 count, Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::PtrInterface* owner) : Vek::Entity::VekNboAttrLogSa(flags, count, out, owner) {
  reactorAdapterIs(VekNboAttrLogSaAdapter_::VekNboAttrLogSaAdapter_Is(entity, *this), entity);
  Vek::joinSynchronisation<Attr>(*this);
}
Lid::VekNboAttrLogSa::~VekNboAttrLogSa() { Vek::letReactorGo<VekNboAttrLogSaAdapter_>(reactorAdapterDel()); }
Vek::Ptr<Lid::VekNboAttrLogSa::FlowOut> Lid::VekNboAttrLogSa::flowOut() const { return static_cast<FlowOut*>(StreamAdapter::flowOut().ptr()); }
Vek::AttributeId Lid::VekNboAttrLogSa::handleAttrFlowOut(Vek::AttributeId from) { return Vek::walkAttributes<Attr>(*this, from); }
void Lid::VekNboAttrLogSa::doSerializeOrphan() { Vek::serializeOrphan<Attr, Lid>(*this); }
void Lid::VekNboAttrLogSa::handleAttrDeserialization(int attr, DeserializationOptions options, Vek::U32 length, Vek::Ptr<Vek::NboAttrLog::In> const& in) {
  Vek::receiveRecord<Attr>(*this, attr, options, length, in);
}
Vek::Ptr<Vek::NboAttrLog::FlowOut> Lid::VekNboAttrLogSa::flowOutIs(Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::ConnectDesc const& desc, bool isFull, Vek::AttributeId startAttr) {
  return Vek::make<FlowOut>(out, this, desc, isFull, startAttr);
}
void Lid::VekNboAttrLogSa::doNotification(int attr, void const* key) { Vek::notifyLog<Attr>(*this, attr, key); }
void Lid::VekNboAttrLogSa::onOpen() { Vek::logScalar<Attr, Attr::open>(*this); }

Lid::VekNboAttrLogSa::FlowOut::FlowOut(Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::StreamAdapter* adapter, Vek::ConnectDesc const& desc, bool isFull, Vek::AttributeId startAttr) : Vek::NboAttrLog::FlowOut(out, adapter, desc, isFull, startAttr) {
  wordsAre(vekDirtyBitSet0_.words());
  Vek::oweFrom<Attr>(*this, startAttr);
}
Lid::VekNboAttrLogSa::FlowOut::~FlowOut() = default;
bool Lid::VekNboAttrLogSa::FlowOut::hasDirtyAttributes() const { return Vek::owesAnything<Attr>(*this); }

Vek::Ptr<Vek::Entity::VekNboAttrLogSa const> Lid::vekNboAttrLogSa(Vek::Ptr<Vek::NboAttrLog::Out const> const& out) const { return const_cast<Lid*>(this)->vekNboAttrLogSa(out); }
Vek::Ptr<Vek::Entity::VekNboAttrLogSa> Lid::vekNboAttrLogSa(Vek::Ptr<Vek::NboAttrLog::Out const> const& out) { return Vek::logAdapterOf(*this, notifiees_.chain(), out); }
Vek::Ptr<Vek::Entity::VekNboAttrLogSa> Lid::vekNboAttrLogSaForMsgChannel(Vek::Ptr<Vek::Entity::VekNboAttrLogSa> const& adapter) const { return Vek::channelSiblingOf(notifiees_.chain(), adapter); }
Vek::Ptr<Vek::Entity::VekNboAttrLogSa> Lid::vekNboAttrLogSaIs(Vek::PtrInterface::NotifieeConst::Vek_BitSet flags, Vek::U32 count, Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::PtrInterface* owner) {
  return Vek::bindToLog(*this, flags, count, out, owner);
}
Vek::Ptr<Vek::Entity::VekNboAttrLogSa> Lid::vekNboAttrLogSaDel(Vek::Ptr<Vek::NboAttrLog::Out const> const& out) { return Vek::logAdapterDel(*this, out); }

// Drawer

struct Drawer::Attr {
  static constexpr char const* shortName = "Drawer";
  static constexpr char const* fullName = "Toys::Drawer";
  static inline constinit Vek::VekType* record = nullptr;
  using MemberKey = Vek::String8;

  struct label : Vek::Fixed<Drawer, Vek::String8, 258> {
    static constexpr char const* name = "label";
    static auto& field(auto& entity) { return entity.label_; }
  };
  struct things : Vek::Scalar<Drawer, Vek::U32, 259> {
    static constexpr char const* name = "things";
    static auto& field(auto& entity) { return entity.things_; }
    static constexpr auto slot = &NotifieeConst::onThings;
    static constexpr auto logHandler = &VekNboAttrLogSa::onThings;
  };
  using All = Vek::List<label, things>;
};

class Drawer::_Type final : public Vek::LoggedType<Vek::GenericEntityType<Drawer, Drawer::Attr>> {};

Drawer::Drawer(Vek::Name name, Vek::String8 label) : Vek::Entity(std::move(name)), label_(std::move(label)) {}
Drawer::~Drawer() = default;
void Drawer::thingsIs(Vek::U32 value) { Vek::scalarIs<Attr::things>(*this, value); }
Vek::U32 Drawer::thingsInc(Vek::U32 delta) { return Vek::scalarInc<Attr::things>(*this, delta); }

Vek::VekType* Drawer::_fwkType() { return Vek::typeRecord<_Type>(vekInitToy); }
Vek::String8 Drawer::attributeString(Vek::AttributeId id) const { return Vek::attributeString<Attr>(*this, id); }
void Drawer::zeroReferencesIs(bool) { Vek::notifyZeroReferences(*this); }

Drawer::NotifieeConst::~NotifieeConst() { leaveForGood(Vek::reactorsOf<Drawer>); }
void Drawer::NotifieeConst::notifierIs(Vek::Ptr<Vek::PtrInterface const> const& n) {
  follow(Vek::entityOf<Drawer>(n), Vek::reactorsOf<Drawer>);
}
void Drawer::NotifieeConst::isRegisteredNotifieeIs(bool on) const { registerWith(on, Vek::reactorsOf<Drawer>); }
Drawer::Notifiee::~Notifiee() = default;

class Drawer::GenericIf_::GenericIf_Adapter_ final : public Vek::GenericAdapter<Drawer> {
 public:
  using GenericAdapter::GenericAdapter;
  static Vek::Ptr<GenericIf_Adapter_> GenericIf_Adapter_Is(Vek::Ptr<Drawer> const& entity, GenericIf_& reactor) {
    return Vek::activeGeneric<GenericIf_Adapter_>(entity, reactor);
  }

  void onThings() override { forward(&GenericIf_::onThings); }
};

Drawer::GenericIf_::GenericIf_(Vek::Ptr<Drawer> const& entity, bool isConst) : GenericIfEntity(Drawer::_fwkType(), entity.ptr(), isConst) {
  adapterIs(GenericIf_Adapter_::GenericIf_Adapter_Is(entity, *this));
}
Drawer::GenericIf_::~GenericIf_() = default;
Vek::Ptr<Vek::GenericIf> Drawer::GenericIf_::attributeOp(AttributeOp const& op, Vek::Ptr<Vek::GenericIf const> const& key, Vek::Ptr<Vek::GenericIf> const& value) {
  return Vek::entityAttributeOp<Attr, Drawer>(*this, op, key, value);
}

/// Stands on a Drawer's list of reactors, for a binding to a log.
class Drawer::VekNboAttrLogSa::VekNboAttrLogSaAdapter_ final : public Vek::LogReactor<Drawer> {
 public:
  using LogReactor::LogReactor;
  static Vek::Ptr<VekNboAttrLogSaAdapter_> VekNboAttrLogSaAdapter_Is(Vek::Ptr<Drawer> const& entity, VekNboAttrLogSa& adapter) {
    return Vek::logReactor<VekNboAttrLogSaAdapter_>(entity, adapter);
  }
  void onThings() override { forward(&VekNboAttrLogSa::onThings); }
};

Drawer::VekNboAttrLogSa::VekNboAttrLogSa(Vek_BitSet flags, Vek::Ptr<Drawer> const& entity, Vek::U32 count, Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::PtrInterface* owner) : Vek::Entity::VekNboAttrLogSa(flags, count, out, owner) {
  reactorAdapterIs(VekNboAttrLogSaAdapter_::VekNboAttrLogSaAdapter_Is(entity, *this), entity);
  Vek::joinSynchronisation<Attr>(*this);
}
Drawer::VekNboAttrLogSa::~VekNboAttrLogSa() { Vek::letReactorGo<VekNboAttrLogSaAdapter_>(reactorAdapterDel()); }
Vek::Ptr<Drawer::VekNboAttrLogSa::FlowOut> Drawer::VekNboAttrLogSa::flowOut() const { return static_cast<FlowOut*>(StreamAdapter::flowOut().ptr()); }
Vek::AttributeId Drawer::VekNboAttrLogSa::handleAttrFlowOut(Vek::AttributeId from) { return Vek::walkAttributes<Attr>(*this, from); }
void Drawer::VekNboAttrLogSa::doSerializeOrphan() { Vek::serializeOrphan<Attr, Drawer>(*this); }
void Drawer::VekNboAttrLogSa::handleAttrDeserialization(int attr, DeserializationOptions options, Vek::U32 length, Vek::Ptr<Vek::NboAttrLog::In> const& in) {
  Vek::receiveRecord<Attr>(*this, attr, options, length, in);
}
Vek::Ptr<Vek::NboAttrLog::FlowOut> Drawer::VekNboAttrLogSa::flowOutIs(Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::ConnectDesc const& desc, bool isFull, Vek::AttributeId startAttr) {
  return Vek::make<FlowOut>(out, this, desc, isFull, startAttr);
}
void Drawer::VekNboAttrLogSa::doNotification(int attr, void const* key) { Vek::notifyLog<Attr>(*this, attr, key); }
void Drawer::VekNboAttrLogSa::onThings() { Vek::logScalar<Attr, Attr::things>(*this); }

Drawer::VekNboAttrLogSa::FlowOut::FlowOut(Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::StreamAdapter* adapter, Vek::ConnectDesc const& desc, bool isFull, Vek::AttributeId startAttr) : Vek::NboAttrLog::FlowOut(out, adapter, desc, isFull, startAttr) {
  wordsAre(vekDirtyBitSet0_.words());
  Vek::oweFrom<Attr>(*this, startAttr);
}
Drawer::VekNboAttrLogSa::FlowOut::~FlowOut() = default;
bool Drawer::VekNboAttrLogSa::FlowOut::hasDirtyAttributes() const { return Vek::owesAnything<Attr>(*this); }

Vek::Ptr<Vek::Entity::VekNboAttrLogSa const> Drawer::vekNboAttrLogSa(Vek::Ptr<Vek::NboAttrLog::Out const> const& out) const { return const_cast<Drawer*>(this)->vekNboAttrLogSa(out); }
Vek::Ptr<Vek::Entity::VekNboAttrLogSa> Drawer::vekNboAttrLogSa(Vek::Ptr<Vek::NboAttrLog::Out const> const& out) { return Vek::logAdapterOf(*this, notifiees_.chain(), out); }
Vek::Ptr<Vek::Entity::VekNboAttrLogSa> Drawer::vekNboAttrLogSaForMsgChannel(Vek::Ptr<Vek::Entity::VekNboAttrLogSa> const& adapter) const { return Vek::channelSiblingOf(notifiees_.chain(), adapter); }
Vek::Ptr<Vek::Entity::VekNboAttrLogSa> Drawer::vekNboAttrLogSaIs(Vek::PtrInterface::NotifieeConst::Vek_BitSet flags, Vek::U32 count, Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::PtrInterface* owner) {
  return Vek::bindToLog(*this, flags, count, out, owner);
}
Vek::Ptr<Vek::Entity::VekNboAttrLogSa> Drawer::vekNboAttrLogSaDel(Vek::Ptr<Vek::NboAttrLog::Out const> const& out) { return Vek::logAdapterDel(*this, out); }

// Shelf

struct Shelf::Attr {
  static constexpr char const* shortName = "Shelf";
  static constexpr char const* fullName = "Toys::Shelf";
  static inline constinit Vek::VekType* record = nullptr;
  using MemberKey = Vek::Name;

  struct drawers : Vek::KeyedChildren<Shelf, Vek::String8, Drawer, 258> {
    static constexpr char const* name = "drawers";
    static auto& field(auto& entity) { return entity.drawers_; }
    static constexpr char const* keyName = "label";
    static constexpr void (NotifieeConst::*slot)(Vek::String8) = &NotifieeConst::onDrawers;
    static constexpr auto logHandler = &VekNboAttrLogSa::onDrawers;
    static constexpr auto logBind = &VekNboAttrLogSa::drawersNboAttrLogAdapterIs;
    static constexpr auto logRemount = &VekNboAttrLogSa::drawersNboAttrLogAdapterDel;
    static constexpr auto logKey = &VekNboAttrLogSa::vekHandleDrawersSerializeSing;
    static constexpr auto logWalk = &VekNboAttrLogSa::vekHandleDrawersSerializeColl;
    static auto& dirty(auto& flowOut) { return flowOut.vekIsDrawersDirty_; }
  };
  using All = Vek::List<drawers>;
};

class Shelf::_Type final : public Vek::LoggedType<Vek::GenericEntityType<Shelf, Shelf::Attr>> {};

Shelf::Shelf(Vek::Name name) : Vek::Entity(std::move(name)) {}
Shelf::~Shelf() { Vek::orphanChildren<Attr>(*this); }

Vek::Ptr<Drawer> Shelf::newDrawers(Vek::String8 key) { return Vek::childrenNew<Attr::drawers>(*this, key); }
Vek::ValidPtr<Drawer> Shelf::drawersIs(Vek::String8 key) { return Vek::childrenIs<Attr::drawers>(*this, key); }
Vek::Ptr<Drawer> Shelf::drawersDel(Vek::String8 key) { return Vek::childrenDel<Attr::drawers>(*this, key); }
Vek::Ptr<Drawer> Shelf::drawersDel(Drawer::Map::Iterator& it) { return Vek::childrenDelAt<Attr::drawers>(*this, it); }
void Shelf::drawersDelAll() { Vek::childrenDelAll<Attr::drawers>(*this); }
void Shelf::drawersNotify(Vek::String8 key) { Vek::notifyKey<Attr::drawers>(*this, key); }

Vek::VekType* Shelf::_fwkType() { return Vek::typeRecord<_Type>(vekInitToy); }
Vek::String8 Shelf::attributeString(Vek::AttributeId id) const { return Vek::attributeString<Attr>(*this, id); }
void Shelf::zeroReferencesIs(bool) { Vek::notifyZeroReferences(*this); }

Shelf::NotifieeConst::~NotifieeConst() { leaveForGood(Vek::reactorsOf<Shelf>); }
void Shelf::NotifieeConst::notifierIs(Vek::Ptr<Vek::PtrInterface const> const& n) {
  follow(Vek::entityOf<Shelf>(n), Vek::reactorsOf<Shelf>);
}
void Shelf::NotifieeConst::isRegisteredNotifieeIs(bool on) const { registerWith(on, Vek::reactorsOf<Shelf>); }
Shelf::Notifiee::~Notifiee() = default;

class Shelf::GenericIf_::GenericIf_Adapter_ final : public Vek::GenericAdapter<Shelf> {
 public:
  using GenericAdapter::GenericAdapter;
  static Vek::Ptr<GenericIf_Adapter_> GenericIf_Adapter_Is(Vek::Ptr<Shelf> const& entity, GenericIf_& reactor) {
    return Vek::activeGeneric<GenericIf_Adapter_>(entity, reactor);
  }

  void onDrawers(Vek::String8 key) override { forward(&GenericIf_::onDrawers, key); }
  void onDrawers() override { forward(&GenericIf_::onDrawers); }
};

Shelf::GenericIf_::GenericIf_(Vek::Ptr<Shelf> const& entity, bool isConst) : GenericIfEntity(Shelf::_fwkType(), entity.ptr(), isConst) {
  adapterIs(GenericIf_Adapter_::GenericIf_Adapter_Is(entity, *this));
}
Shelf::GenericIf_::~GenericIf_() = default;
Vek::Ptr<Vek::GenericIf> Shelf::GenericIf_::attributeOp(AttributeOp const& op, Vek::Ptr<Vek::GenericIf const> const& key, Vek::Ptr<Vek::GenericIf> const& value) {
  return Vek::entityAttributeOp<Attr, Shelf>(*this, op, key, value);
}
void Shelf::GenericIf_::onDrawers(Vek::String8 key) { Vek::tellKey<Attr::drawers>(*this, key); }
Vek::GenericIf::AttributeIteratorConst Shelf::GenericIf_::attributeIteratorConst(Vek::AttributeId id) const {
  return Vek::entityIterator<Attr, Shelf>(*this, id);
}
Vek::GenericIf::AttributeIteratorConst Shelf::GenericIf_::attributeIteratorKeyConst(Vek::AttributeId id, Vek::Ptr<Vek::GenericIf const> const& key) const {
  return Vek::entityIteratorAt<Attr, Shelf>(*this, id, key);
}

/// Stands on a Shelf's list of reactors, for a binding to a log.
class Shelf::VekNboAttrLogSa::VekNboAttrLogSaAdapter_ final : public Vek::LogReactor<Shelf> {
 public:
  using LogReactor::LogReactor;
  static Vek::Ptr<VekNboAttrLogSaAdapter_> VekNboAttrLogSaAdapter_Is(Vek::Ptr<Shelf> const& entity, VekNboAttrLogSa& adapter) {
    return Vek::logReactor<VekNboAttrLogSaAdapter_>(entity, adapter);
  }
  void onDrawers(Vek::String8 key) override { forward(&VekNboAttrLogSa::onDrawers, key); }
};

Shelf::VekNboAttrLogSa::VekNboAttrLogSa(Vek_BitSet flags, Vek::Ptr<Shelf> const& entity, Vek::U32 count, Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::PtrInterface* owner) : Vek::Entity::VekNboAttrLogSa(flags, count, out, owner) {
  reactorAdapterIs(VekNboAttrLogSaAdapter_::VekNboAttrLogSaAdapter_Is(entity, *this), entity);
  Vek::joinSynchronisation<Attr>(*this);
}
Shelf::VekNboAttrLogSa::~VekNboAttrLogSa() { Vek::letReactorGo<VekNboAttrLogSaAdapter_>(reactorAdapterDel()); }
Vek::Ptr<Shelf::VekNboAttrLogSa::FlowOut> Shelf::VekNboAttrLogSa::flowOut() const { return static_cast<FlowOut*>(StreamAdapter::flowOut().ptr()); }
Vek::AttributeId Shelf::VekNboAttrLogSa::handleAttrFlowOut(Vek::AttributeId from) { return Vek::walkAttributes<Attr>(*this, from); }
void Shelf::VekNboAttrLogSa::freeResyncState(Vek::NboAttrLog::FlowOut& flowOut) { Vek::freeWalkState<Attr>(flowOut); }
void Shelf::VekNboAttrLogSa::handleAttrTransaction(Vek::AttributeId attr, AttrTransactionType type, Vek::U32 argument) { Vek::applyTransaction<Attr>(*this, attr, type, argument); }
void Shelf::VekNboAttrLogSa::syncModeIs(SyncMode mode) { Vek::syncModeFollows<Attr>(*this, mode); }
void Shelf::VekNboAttrLogSa::vekInstantiateSerialize() { Vek::instantiateChildren<Attr>(*this); }
void Shelf::VekNboAttrLogSa::doRemountSelf(Vek::Ptr<Vek::NboAttrLog::Out> const& out) { Vek::remountWithChildren<Attr, Shelf>(*this, out); }
void Shelf::VekNboAttrLogSa::doSerializeOrphan() { Vek::serializeOrphan<Attr, Shelf>(*this); }
void Shelf::VekNboAttrLogSa::handleAttrDeserialization(int attr, DeserializationOptions options, Vek::U32 length, Vek::Ptr<Vek::NboAttrLog::In> const& in) {
  Vek::receiveRecord<Attr>(*this, attr, options, length, in);
}
Vek::Ptr<Vek::NboAttrLog::FlowOut> Shelf::VekNboAttrLogSa::flowOutIs(Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::ConnectDesc const& desc, bool isFull, Vek::AttributeId startAttr) {
  return Vek::make<FlowOut>(out, this, desc, isFull, startAttr);
}
void Shelf::VekNboAttrLogSa::doNotification(int attr, void const* key) { Vek::notifyLog<Attr>(*this, attr, key); }
void Shelf::VekNboAttrLogSa::onDrawers(Vek::String8 key) { Vek::serializePresent<Attr::drawers>(*this, key); }
void Shelf::VekNboAttrLogSa::vekHandleDrawersSerializeSing(Vek::String8 key, Vek::Ptr<Drawer> const& child) { Vek::serializeChild<Attr::drawers>(*this, key, child); }
bool Shelf::VekNboAttrLogSa::vekHandleDrawersSerializeColl() { return Vek::serializeCollection<Attr, Attr::drawers>(*this); }
Vek::Ptr<Drawer::VekNboAttrLogSa> Shelf::VekNboAttrLogSa::drawersNboAttrLogAdapterIs(Vek_BitSet flags, Vek::Ptr<Drawer> const& child, Vek::U32 count, Vek::Ptr<Vek::NboAttrLog::Out> const&, Vek::PtrInterface* channel) {
  return Vek::bindChildRecord<Attr::drawers>(*this, flags, child, count, channel);
}
Vek::Ptr<Drawer::VekNboAttrLogSa> Shelf::VekNboAttrLogSa::drawersNboAttrLogAdapterDel(Vek::Ptr<Drawer> const& child) { return Vek::remountChild<Attr::drawers>(*this, child); }

Shelf::VekNboAttrLogSa::FlowOut::FlowOut(Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::StreamAdapter* adapter, Vek::ConnectDesc const& desc, bool isFull, Vek::AttributeId startAttr) : Vek::NboAttrLog::FlowOut(out, adapter, desc, isFull, startAttr) {
  wordsAre(vekDirtyBitSet0_.words());
  Vek::oweFrom<Attr>(*this, startAttr);
}
Shelf::VekNboAttrLogSa::FlowOut::~FlowOut() = default;
bool Shelf::VekNboAttrLogSa::FlowOut::hasDirtyAttributes() const { return Vek::owesAnything<Attr>(*this); }
Vek::Ptr<Shelf::VekNboAttrLogSa::FlowOut::VekVekIsDrawersDirty> Shelf::VekNboAttrLogSa::FlowOut::newVekIsDrawersDirty(Vek::String8 key, bool on) { return Vek::dirtyKeyNew(vekIsDrawersDirty_, key, on); }
void Shelf::VekNboAttrLogSa::FlowOut::vekIsDrawersDirtyIs(Vek::String8 key, bool on) { Vek::dirtyKeyIs(vekIsDrawersDirty_, key, on); }
bool Shelf::VekNboAttrLogSa::FlowOut::vekIsDrawersDirtyDel(Vek::String8 key) { return Vek::dirtyKeyDel(vekIsDrawersDirty_, key); }

Vek::Ptr<Vek::Entity::VekNboAttrLogSa const> Shelf::vekNboAttrLogSa(Vek::Ptr<Vek::NboAttrLog::Out const> const& out) const { return const_cast<Shelf*>(this)->vekNboAttrLogSa(out); }
Vek::Ptr<Vek::Entity::VekNboAttrLogSa> Shelf::vekNboAttrLogSa(Vek::Ptr<Vek::NboAttrLog::Out const> const& out) { return Vek::logAdapterOf(*this, notifiees_.chain(), out); }
Vek::Ptr<Vek::Entity::VekNboAttrLogSa> Shelf::vekNboAttrLogSaForMsgChannel(Vek::Ptr<Vek::Entity::VekNboAttrLogSa> const& adapter) const { return Vek::channelSiblingOf(notifiees_.chain(), adapter); }
Vek::Ptr<Vek::Entity::VekNboAttrLogSa> Shelf::vekNboAttrLogSaIs(Vek::PtrInterface::NotifieeConst::Vek_BitSet flags, Vek::U32 count, Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::PtrInterface* owner) {
  return Vek::bindToLog(*this, flags, count, out, owner);
}
Vek::Ptr<Vek::Entity::VekNboAttrLogSa> Shelf::vekNboAttrLogSaDel(Vek::Ptr<Vek::NboAttrLog::Out const> const& out) { return Vek::logAdapterDel(*this, out); }

// ToyBox

struct ToyBox::Attr {
  static constexpr char const* shortName = "ToyBox";
  static constexpr char const* fullName = "Toys::ToyBox";
  static inline constinit Vek::VekType* record = nullptr;

  struct counts : Vek::Collection<ToyBox, Vek::U32, Vek::U32, 258> {
    static constexpr char const* name = "counts";
    static auto& field(auto& entity) { return entity.counts_; }
    using Member = VekCounts;
    static constexpr void (NotifieeConst::*slot)(Vek::U32) = &NotifieeConst::onCounts;
    static constexpr auto logHandler = &VekNboAttrLogSa::onCounts;
    static constexpr auto logKey = &VekNboAttrLogSa::vekHandleCountsSerializeSing;
    static constexpr auto logWalk = &VekNboAttrLogSa::vekHandleCountsSerializeColl;
    static auto& dirty(auto& flowOut) { return flowOut.vekIsCountsDirty_; }
  };
  struct faps : Vek::Collection<ToyBox, Hardware::Dorn::FapId, Vek::U64, 259> {
    static constexpr char const* name = "faps";
    static auto& field(auto& entity) { return entity.faps_; }
    using Member = VekFaps;
    static constexpr void (NotifieeConst::*slot)(Hardware::Dorn::FapId) = &NotifieeConst::onFaps;
    static constexpr auto logHandler = &VekNboAttrLogSa::onFaps;
    static constexpr auto logKey = &VekNboAttrLogSa::vekHandleFapsSerializeSing;
    static constexpr auto logWalk = &VekNboAttrLogSa::vekHandleFapsSerializeColl;
    static auto& dirty(auto& flowOut) { return flowOut.vekIsFapsDirty_; }
  };
  struct wanted : Vek::Collection<ToyBox, Vek::U32, bool, 260> {
    static constexpr char const* name = "wanted";
    static auto& field(auto& entity) { return entity.wanted_; }
    using Member = VekWanted;
    static constexpr void (NotifieeConst::*slot)(Vek::U32) = &NotifieeConst::onWanted;
    static constexpr auto logHandler = &VekNboAttrLogSa::onWanted;
    static constexpr auto logKey = &VekNboAttrLogSa::vekHandleWantedSerializeSing;
    static constexpr auto logWalk = &VekNboAttrLogSa::vekHandleWantedSerializeColl;
    static auto& dirty(auto& flowOut) { return flowOut.vekIsWantedDirty_; }
  };
  struct notes : Vek::Collection<ToyBox, Vek::String8, ToyPoint, 261> {
    static constexpr char const* name = "notes";
    static auto& field(auto& entity) { return entity.notes_; }
    using Member = VekNotes;
    static constexpr void (NotifieeConst::*slot)(Vek::String8) = &NotifieeConst::onNotes;
    static constexpr auto logHandler = &VekNboAttrLogSa::onNotes;
    static constexpr auto logKey = &VekNboAttrLogSa::vekHandleNotesSerializeSing;
    static constexpr auto logWalk = &VekNboAttrLogSa::vekHandleNotesSerializeColl;
    static auto& dirty(auto& flowOut) { return flowOut.vekIsNotesDirty_; }
  };
  struct vlans : Vek::Collection<ToyBox, Bridging::VlanIdOrNone, Kiln::Fapmask, 263> {
    static constexpr char const* name = "vlans";
    static auto& field(auto& entity) { return entity.vlans_; }
    using Member = VekVlans;
    static constexpr void (NotifieeConst::*slot)(Bridging::VlanIdOrNone) = &NotifieeConst::onVlans;
    static constexpr auto logHandler = &VekNboAttrLogSa::onVlans;
    static constexpr auto logKey = &VekNboAttrLogSa::vekHandleVlansSerializeSing;
    static constexpr auto logWalk = &VekNboAttrLogSa::vekHandleVlansSerializeColl;
    static auto& dirty(auto& flowOut) { return flowOut.vekIsVlansDirty_; }
  };
  struct capacity : Vek::Constant<ToyBox, Vek::U32, 264> {
    static constexpr char const* name = "capacity";
    static constexpr Vek::U32 constant = 12;
  };
  struct lid : Vek::SingleChild<ToyBox, Lid, 265> {
    static constexpr char const* name = "lid";
    static auto& field(auto& entity) { return entity.lid_; }
    static constexpr auto slot = &NotifieeConst::onLid;
    static constexpr auto logHandler = &VekNboAttrLogSa::onLid;
    static constexpr auto logBind = &VekNboAttrLogSa::lidNboAttrLogAdapterIs;
    static constexpr auto logRemount = &VekNboAttrLogSa::lidNboAttrLogAdapterDel;
  };
  struct shelves : Vek::KeyedChildren<ToyBox, Vek::Name, Shelf, 266> {
    static constexpr char const* name = "shelves";
    static auto& field(auto& entity) { return entity.shelves_; }
    static constexpr char const* keyName = "name";
    static constexpr void (NotifieeConst::*slot)(Vek::Name) = &NotifieeConst::onShelves;
    static constexpr auto logHandler = &VekNboAttrLogSa::onShelves;
    static constexpr auto logBind = &VekNboAttrLogSa::shelvesNboAttrLogAdapterIs;
    static constexpr auto logRemount = &VekNboAttrLogSa::shelvesNboAttrLogAdapterDel;
    static constexpr auto logKey = &VekNboAttrLogSa::vekHandleShelvesSerializeSing;
    static constexpr auto logWalk = &VekNboAttrLogSa::vekHandleShelvesSerializeColl;
    static auto& dirty(auto& flowOut) { return flowOut.vekIsShelvesDirty_; }
  };
  using All = Vek::List<counts, faps, wanted, notes, vlans, capacity, lid, shelves>;
};

class ToyBox::_Type final : public Vek::LoggedType<Vek::GenericRootEntityType<ToyBox, ToyBox::Attr>> {};

ToyBox::ToyBox(Vek::Name name) : Vek::Entity(std::move(name)) {}
ToyBox::~ToyBox() { Vek::orphanChildren<Attr>(*this); }

ToyBox::VekCounts::~VekCounts() = default;
void ToyBox::countsIs(Vek::U32 key, Vek::U32 value) { Vek::collectionIs<Attr::counts>(*this, key, value); }
Vek::Ptr<ToyBox::VekCounts> ToyBox::newCounts(Vek::U32 key, Vek::U32 value) {
  return Vek::collectionNew<Attr::counts>(*this, key, value);
}
Vek::U32 ToyBox::countsDel(Vek::U32 key) { return Vek::collectionDel<Attr::counts>(*this, key); }
Vek::U32 ToyBox::countsDel(VekCounts::Map::Iterator& it) { return Vek::collectionDelAt<Attr::counts>(*this, it); }
void ToyBox::countsDelAll() { Vek::collectionDelAll<Attr::counts>(*this); }
void ToyBox::countsNotify(Vek::U32 key) { Vek::notifyKey<Attr::counts>(*this, key); }

ToyBox::VekFaps::~VekFaps() = default;
void ToyBox::fapsIs(Hardware::Dorn::FapId key, Vek::U64 const& value) { Vek::collectionIs<Attr::faps>(*this, key, value); }
Vek::Ptr<ToyBox::VekFaps> ToyBox::newFaps(Hardware::Dorn::FapId key, Vek::U64 const& value) {
  return Vek::collectionNew<Attr::faps>(*this, key, value);
}
Vek::U64 ToyBox::fapsDel(Hardware::Dorn::FapId key) { return Vek::collectionDel<Attr::faps>(*this, key); }
Vek::U64 ToyBox::fapsDel(VekFaps::Map::Iterator& it) { return Vek::collectionDelAt<Attr::faps>(*this, it); }
void ToyBox::fapsDelAll() { Vek::collectionDelAll<Attr::faps>(*this); }
void ToyBox::fapsNotify(Hardware::Dorn::FapId key) { Vek::notifyKey<Attr::faps>(*this, key); }

ToyBox::VekWanted::~VekWanted() = default;
bool ToyBox::wanted(Vek::U32 key) const { return Vek::collectionGet(*this, wanted_, key); }
void ToyBox::wantedIs(Vek::U32 key, bool value) { Vek::collectionIs<Attr::wanted>(*this, key, value); }
Vek::Ptr<ToyBox::VekWanted> ToyBox::newWanted(Vek::U32 key, bool value) {
  return Vek::collectionNew<Attr::wanted>(*this, key, value);
}
bool ToyBox::wantedDel(Vek::U32 key) { return Vek::collectionDel<Attr::wanted>(*this, key); }
bool ToyBox::wantedDel(VekWanted::Map::Iterator& it) { return Vek::collectionDelAt<Attr::wanted>(*this, it); }
void ToyBox::wantedDelAll() { Vek::collectionDelAll<Attr::wanted>(*this); }
void ToyBox::wantedNotify(Vek::U32 key) { Vek::notifyKey<Attr::wanted>(*this, key); }

ToyBox::VekNotes::~VekNotes() = default;
void ToyBox::notesIs(Vek::String8 key, ToyPoint const& value) { Vek::collectionIs<Attr::notes>(*this, key, value); }
Vek::Ptr<ToyBox::VekNotes> ToyBox::newNotes(Vek::String8 key, ToyPoint const& value) {
  return Vek::collectionNew<Attr::notes>(*this, key, value);
}
ToyPoint ToyBox::notesDel(Vek::String8 key) { return Vek::collectionDel<Attr::notes>(*this, key); }
ToyPoint ToyBox::notesDel(VekNotes::Map::Iterator& it) { return Vek::collectionDelAt<Attr::notes>(*this, it); }
void ToyBox::notesDelAll() { Vek::collectionDelAll<Attr::notes>(*this); }
void ToyBox::notesNotify(Vek::String8 key) { Vek::notifyKey<Attr::notes>(*this, key); }

ToyBox::VekVlans::~VekVlans() = default;
void ToyBox::vlansIs(Bridging::VlanIdOrNone key, Kiln::Fapmask const& value) { Vek::collectionIs<Attr::vlans>(*this, key, value); }
Vek::Ptr<ToyBox::VekVlans> ToyBox::newVlans(Bridging::VlanIdOrNone key, Kiln::Fapmask const& value) {
  return Vek::collectionNew<Attr::vlans>(*this, key, value);
}
Kiln::Fapmask ToyBox::vlansDel(Bridging::VlanIdOrNone key) { return Vek::collectionDel<Attr::vlans>(*this, key); }
Kiln::Fapmask ToyBox::vlansDel(VekVlans::Map::Iterator& it) { return Vek::collectionDelAt<Attr::vlans>(*this, it); }
void ToyBox::vlansDelAll() { Vek::collectionDelAll<Attr::vlans>(*this); }
void ToyBox::vlansNotify(Bridging::VlanIdOrNone key) { Vek::notifyKey<Attr::vlans>(*this, key); }

Vek::Ptr<Lid> ToyBox::newLid(Vek::Name name) { return Vek::childNew<Attr::lid>(*this, name); }
Vek::ValidPtr<Lid> ToyBox::lidIs(Vek::Name name) { return Vek::childIs<Attr::lid>(*this, name); }
Vek::Ptr<Lid> ToyBox::lidDel() { return Vek::childDel<Attr::lid>(*this); }

Vek::Ptr<Shelf> ToyBox::newShelves(Vek::Name key) { return Vek::childrenNew<Attr::shelves>(*this, key); }
Vek::ValidPtr<Shelf> ToyBox::shelvesIs(Vek::Name key) { return Vek::childrenIs<Attr::shelves>(*this, key); }
Vek::Ptr<Shelf> ToyBox::shelvesDel(Vek::Name key) { return Vek::childrenDel<Attr::shelves>(*this, key); }
Vek::Ptr<Shelf> ToyBox::shelvesDel(Shelf::Map::Iterator& it) { return Vek::childrenDelAt<Attr::shelves>(*this, it); }
void ToyBox::shelvesDelAll() { Vek::childrenDelAll<Attr::shelves>(*this); }
void ToyBox::shelvesNotify(Vek::Name key) { Vek::notifyKey<Attr::shelves>(*this, key); }

Vek::VekType* ToyBox::_fwkType() { return Vek::typeRecord<_Type>(vekInitToy); }
Vek::String8 ToyBox::attributeString(Vek::AttributeId id) const { return Vek::attributeString<Attr>(*this, id); }
void ToyBox::zeroReferencesIs(bool) { Vek::notifyZeroReferences(*this); }

Vek::Ptr<ToyBox> toyBoxFactory(Vek::Name name) { return Vek::make<ToyBox>(std::move(name)); }

ToyBox::NotifieeConst::~NotifieeConst() { leaveForGood(Vek::reactorsOf<ToyBox>); }
void ToyBox::NotifieeConst::notifierIs(Vek::Ptr<Vek::PtrInterface const> const& n) {
  follow(Vek::entityOf<ToyBox>(n), Vek::reactorsOf<ToyBox>);
}
void ToyBox::NotifieeConst::isRegisteredNotifieeIs(bool on) const { registerWith(on, Vek::reactorsOf<ToyBox>); }
ToyBox::Notifiee::~Notifiee() = default;

class ToyBox::GenericIf_::GenericIf_Adapter_ final : public Vek::GenericAdapter<ToyBox> {
 public:
  using GenericAdapter::GenericAdapter;
  static Vek::Ptr<GenericIf_Adapter_> GenericIf_Adapter_Is(Vek::Ptr<ToyBox> const& entity, GenericIf_& reactor) {
    return Vek::activeGeneric<GenericIf_Adapter_>(entity, reactor);
  }

  void onCounts(Vek::U32 key) override { forward(&GenericIf_::onCounts, key); }
  void onCounts() override { forward(&GenericIf_::onCounts); }
  void onFaps(Hardware::Dorn::FapId key) override { forward(&GenericIf_::onFaps, key); }
  void onFaps() override { forward(&GenericIf_::onFaps); }
  void onWanted(Vek::U32 key) override { forward(&GenericIf_::onWanted, key); }
  void onWanted() override { forward(&GenericIf_::onWanted); }
  void onNotes(Vek::String8 key) override { forward(&GenericIf_::onNotes, key); }
  void onNotes() override { forward(&GenericIf_::onNotes); }
  void onVlans(Bridging::VlanIdOrNone key) override { forward(&GenericIf_::onVlans, key); }
  void onVlans() override { forward(&GenericIf_::onVlans); }
  void onLid() override { forward(&GenericIf_::onLid); }
  void onShelves(Vek::Name key) override { forward(&GenericIf_::onShelves, key); }
  void onShelves() override { forward(&GenericIf_::onShelves); }
};

ToyBox::GenericIf_::GenericIf_(Vek::Ptr<ToyBox> const& entity, bool isConst) : GenericIfEntity(ToyBox::_fwkType(), entity.ptr(), isConst) {
  adapterIs(GenericIf_Adapter_::GenericIf_Adapter_Is(entity, *this));
}
ToyBox::GenericIf_::~GenericIf_() = default;
Vek::Ptr<Vek::GenericIf> ToyBox::GenericIf_::genericIfListConstructor(Vek::Ptr<Vek::GenericIf const> const& arguments) {
  return Vek::entityFromList<Attr, ToyBox>(arguments);
}
Vek::Ptr<Vek::GenericIf> ToyBox::GenericIf_::attributeOp(AttributeOp const& op, Vek::Ptr<Vek::GenericIf const> const& key, Vek::Ptr<Vek::GenericIf> const& value) {
  return Vek::entityAttributeOp<Attr, ToyBox>(*this, op, key, value);
}
void ToyBox::GenericIf_::onCounts(Vek::U32 key) { Vek::tellKey<Attr::counts>(*this, key); }
void ToyBox::GenericIf_::onFaps(Hardware::Dorn::FapId key) { Vek::tellKey<Attr::faps>(*this, key); }
void ToyBox::GenericIf_::onWanted(Vek::U32 key) { Vek::tellKey<Attr::wanted>(*this, key); }
void ToyBox::GenericIf_::onNotes(Vek::String8 key) { Vek::tellKey<Attr::notes>(*this, key); }
void ToyBox::GenericIf_::onVlans(Bridging::VlanIdOrNone key) { Vek::tellKey<Attr::vlans>(*this, key); }
void ToyBox::GenericIf_::onShelves(Vek::Name key) { Vek::tellKey<Attr::shelves>(*this, key); }
Vek::GenericIf::AttributeIteratorConst ToyBox::GenericIf_::attributeIteratorConst(Vek::AttributeId id) const {
  return Vek::entityIterator<Attr, ToyBox>(*this, id);
}
Vek::GenericIf::AttributeIteratorConst ToyBox::GenericIf_::attributeIteratorKeyConst(Vek::AttributeId id, Vek::Ptr<Vek::GenericIf const> const& key) const {
  return Vek::entityIteratorAt<Attr, ToyBox>(*this, id, key);
}

/// Stands on a ToyBox's list of reactors, for a binding to a log.
class ToyBox::VekNboAttrLogSa::VekNboAttrLogSaAdapter_ final : public Vek::LogReactor<ToyBox> {
 public:
  using LogReactor::LogReactor;
  static Vek::Ptr<VekNboAttrLogSaAdapter_> VekNboAttrLogSaAdapter_Is(Vek::Ptr<ToyBox> const& entity, VekNboAttrLogSa& adapter) {
    return Vek::logReactor<VekNboAttrLogSaAdapter_>(entity, adapter);
  }
  void onCounts(Vek::U32 key) override { forward(&VekNboAttrLogSa::onCounts, key); }
  void onFaps(Hardware::Dorn::FapId key) override { forward(&VekNboAttrLogSa::onFaps, key); }
  void onWanted(Vek::U32 key) override { forward(&VekNboAttrLogSa::onWanted, key); }
  void onNotes(Vek::String8 key) override { forward(&VekNboAttrLogSa::onNotes, key); }
  void onVlans(Bridging::VlanIdOrNone key) override { forward(&VekNboAttrLogSa::onVlans, key); }
  void onLid() override { forward(&VekNboAttrLogSa::onLid); }
  void onShelves(Vek::Name key) override { forward(&VekNboAttrLogSa::onShelves, key); }
};

ToyBox::VekNboAttrLogSa::VekNboAttrLogSa(Vek_BitSet flags, Vek::Ptr<ToyBox> const& entity, Vek::U32 count, Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::PtrInterface* owner) : Vek::Entity::VekNboAttrLogSa(flags, count, out, owner) {
  reactorAdapterIs(VekNboAttrLogSaAdapter_::VekNboAttrLogSaAdapter_Is(entity, *this), entity);
  Vek::joinSynchronisation<Attr>(*this);
}
ToyBox::VekNboAttrLogSa::~VekNboAttrLogSa() { Vek::letReactorGo<VekNboAttrLogSaAdapter_>(reactorAdapterDel()); }
Vek::Ptr<ToyBox::VekNboAttrLogSa::FlowOut> ToyBox::VekNboAttrLogSa::flowOut() const { return static_cast<FlowOut*>(StreamAdapter::flowOut().ptr()); }
Vek::AttributeId ToyBox::VekNboAttrLogSa::handleAttrFlowOut(Vek::AttributeId from) { return Vek::walkAttributes<Attr>(*this, from); }
void ToyBox::VekNboAttrLogSa::freeResyncState(Vek::NboAttrLog::FlowOut& flowOut) { Vek::freeWalkState<Attr>(flowOut); }
void ToyBox::VekNboAttrLogSa::handleAttrTransaction(Vek::AttributeId attr, AttrTransactionType type, Vek::U32 argument) { Vek::applyTransaction<Attr>(*this, attr, type, argument); }
void ToyBox::VekNboAttrLogSa::syncModeIs(SyncMode mode) { Vek::syncModeFollows<Attr>(*this, mode); }
void ToyBox::VekNboAttrLogSa::vekInstantiateSerialize() { Vek::instantiateChildren<Attr>(*this); }
void ToyBox::VekNboAttrLogSa::doRemountSelf(Vek::Ptr<Vek::NboAttrLog::Out> const& out) { Vek::remountWithChildren<Attr, ToyBox>(*this, out); }
void ToyBox::VekNboAttrLogSa::doSerializeOrphan() { Vek::serializeOrphan<Attr, ToyBox>(*this); }
void ToyBox::VekNboAttrLogSa::handleAttrDeserialization(int attr, DeserializationOptions options, Vek::U32 length, Vek::Ptr<Vek::NboAttrLog::In> const& in) {
  Vek::receiveRecord<Attr>(*this, attr, options, length, in);
}
Vek::Ptr<Vek::NboAttrLog::FlowOut> ToyBox::VekNboAttrLogSa::flowOutIs(Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::ConnectDesc const& desc, bool isFull, Vek::AttributeId startAttr) {
  return Vek::make<FlowOut>(out, this, desc, isFull, startAttr);
}
void ToyBox::VekNboAttrLogSa::doNotification(int attr, void const* key) { Vek::notifyLog<Attr>(*this, attr, key); }
void ToyBox::VekNboAttrLogSa::onCounts(Vek::U32 key) { Vek::serializePresent<Attr::counts>(*this, key); }
void ToyBox::VekNboAttrLogSa::vekHandleCountsSerializeSing(Vek::U32 key, Vek::U32 value, bool deleted) { Vek::serializeKey<Attr::counts>(*this, key, value, deleted); }
bool ToyBox::VekNboAttrLogSa::vekHandleCountsSerializeColl() { return Vek::serializeCollection<Attr, Attr::counts>(*this); }
void ToyBox::VekNboAttrLogSa::onFaps(Hardware::Dorn::FapId key) { Vek::serializePresent<Attr::faps>(*this, key); }
void ToyBox::VekNboAttrLogSa::vekHandleFapsSerializeSing(Hardware::Dorn::FapId key, Vek::U64 const& value, bool deleted) { Vek::serializeKey<Attr::faps>(*this, key, value, deleted); }
bool ToyBox::VekNboAttrLogSa::vekHandleFapsSerializeColl() { return Vek::serializeCollection<Attr, Attr::faps>(*this); }
void ToyBox::VekNboAttrLogSa::onWanted(Vek::U32 key) { Vek::serializePresent<Attr::wanted>(*this, key); }
void ToyBox::VekNboAttrLogSa::vekHandleWantedSerializeSing(Vek::U32 key, bool value, bool deleted) { Vek::serializeKey<Attr::wanted>(*this, key, value, deleted); }
bool ToyBox::VekNboAttrLogSa::vekHandleWantedSerializeColl() { return Vek::serializeCollection<Attr, Attr::wanted>(*this); }
void ToyBox::VekNboAttrLogSa::onNotes(Vek::String8 key) { Vek::serializePresent<Attr::notes>(*this, key); }
void ToyBox::VekNboAttrLogSa::vekHandleNotesSerializeSing(Vek::String8 key, ToyPoint const& value, bool deleted) { Vek::serializeKey<Attr::notes>(*this, key, value, deleted); }
bool ToyBox::VekNboAttrLogSa::vekHandleNotesSerializeColl() { return Vek::serializeCollection<Attr, Attr::notes>(*this); }
void ToyBox::VekNboAttrLogSa::onVlans(Bridging::VlanIdOrNone key) { Vek::serializePresent<Attr::vlans>(*this, key); }
void ToyBox::VekNboAttrLogSa::vekHandleVlansSerializeSing(Bridging::VlanIdOrNone key, Kiln::Fapmask const& value, bool deleted) { Vek::serializeKey<Attr::vlans>(*this, key, value, deleted); }
bool ToyBox::VekNboAttrLogSa::vekHandleVlansSerializeColl() { return Vek::serializeCollection<Attr, Attr::vlans>(*this); }
void ToyBox::VekNboAttrLogSa::onLid() { Vek::logChild<Attr, Attr::lid>(*this); }
Vek::Ptr<Lid::VekNboAttrLogSa> ToyBox::VekNboAttrLogSa::lidNboAttrLogAdapterIs(Vek_BitSet flags, Vek::Ptr<Lid> const& child, Vek::U32 count, Vek::Ptr<Vek::NboAttrLog::Out> const&, Vek::PtrInterface* channel) {
  return Vek::bindChildRecord<Attr::lid>(*this, flags, child, count, channel);
}
Vek::Ptr<Lid::VekNboAttrLogSa> ToyBox::VekNboAttrLogSa::lidNboAttrLogAdapterDel(Vek::Ptr<Lid> const& child) { return Vek::remountChild<Attr::lid>(*this, child); }
void ToyBox::VekNboAttrLogSa::onShelves(Vek::Name key) { Vek::serializePresent<Attr::shelves>(*this, key); }
void ToyBox::VekNboAttrLogSa::vekHandleShelvesSerializeSing(Vek::Name key, Vek::Ptr<Shelf> const& child) { Vek::serializeChild<Attr::shelves>(*this, key, child); }
bool ToyBox::VekNboAttrLogSa::vekHandleShelvesSerializeColl() { return Vek::serializeCollection<Attr, Attr::shelves>(*this); }
Vek::Ptr<Shelf::VekNboAttrLogSa> ToyBox::VekNboAttrLogSa::shelvesNboAttrLogAdapterIs(Vek_BitSet flags, Vek::Ptr<Shelf> const& child, Vek::U32 count, Vek::Ptr<Vek::NboAttrLog::Out> const&, Vek::PtrInterface* channel) {
  return Vek::bindChildRecord<Attr::shelves>(*this, flags, child, count, channel);
}
Vek::Ptr<Shelf::VekNboAttrLogSa> ToyBox::VekNboAttrLogSa::shelvesNboAttrLogAdapterDel(Vek::Ptr<Shelf> const& child) { return Vek::remountChild<Attr::shelves>(*this, child); }

ToyBox::VekNboAttrLogSa::FlowOut::FlowOut(Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::StreamAdapter* adapter, Vek::ConnectDesc const& desc, bool isFull, Vek::AttributeId startAttr) : Vek::NboAttrLog::FlowOut(out, adapter, desc, isFull, startAttr) {
  wordsAre(vekDirtyBitSet0_.words());
  Vek::oweFrom<Attr>(*this, startAttr);
}
ToyBox::VekNboAttrLogSa::FlowOut::~FlowOut() = default;
bool ToyBox::VekNboAttrLogSa::FlowOut::hasDirtyAttributes() const { return Vek::owesAnything<Attr>(*this); }
Vek::Ptr<ToyBox::VekNboAttrLogSa::FlowOut::VekVekIsCountsDirty> ToyBox::VekNboAttrLogSa::FlowOut::newVekIsCountsDirty(Vek::U32 key, bool on) { return Vek::dirtyKeyNew(vekIsCountsDirty_, key, on); }
void ToyBox::VekNboAttrLogSa::FlowOut::vekIsCountsDirtyIs(Vek::U32 key, bool on) { Vek::dirtyKeyIs(vekIsCountsDirty_, key, on); }
bool ToyBox::VekNboAttrLogSa::FlowOut::vekIsCountsDirtyDel(Vek::U32 key) { return Vek::dirtyKeyDel(vekIsCountsDirty_, key); }
Vek::Ptr<ToyBox::VekNboAttrLogSa::FlowOut::VekVekIsFapsDirty> ToyBox::VekNboAttrLogSa::FlowOut::newVekIsFapsDirty(Hardware::Dorn::FapId key, bool on) { return Vek::dirtyKeyNew(vekIsFapsDirty_, key, on); }
void ToyBox::VekNboAttrLogSa::FlowOut::vekIsFapsDirtyIs(Hardware::Dorn::FapId key, bool on) { Vek::dirtyKeyIs(vekIsFapsDirty_, key, on); }
bool ToyBox::VekNboAttrLogSa::FlowOut::vekIsFapsDirtyDel(Hardware::Dorn::FapId key) { return Vek::dirtyKeyDel(vekIsFapsDirty_, key); }
Vek::Ptr<ToyBox::VekNboAttrLogSa::FlowOut::VekVekIsWantedDirty> ToyBox::VekNboAttrLogSa::FlowOut::newVekIsWantedDirty(Vek::U32 key, bool on) { return Vek::dirtyKeyNew(vekIsWantedDirty_, key, on); }
void ToyBox::VekNboAttrLogSa::FlowOut::vekIsWantedDirtyIs(Vek::U32 key, bool on) { Vek::dirtyKeyIs(vekIsWantedDirty_, key, on); }
bool ToyBox::VekNboAttrLogSa::FlowOut::vekIsWantedDirtyDel(Vek::U32 key) { return Vek::dirtyKeyDel(vekIsWantedDirty_, key); }
Vek::Ptr<ToyBox::VekNboAttrLogSa::FlowOut::VekVekIsNotesDirty> ToyBox::VekNboAttrLogSa::FlowOut::newVekIsNotesDirty(Vek::String8 key, bool on) { return Vek::dirtyKeyNew(vekIsNotesDirty_, key, on); }
void ToyBox::VekNboAttrLogSa::FlowOut::vekIsNotesDirtyIs(Vek::String8 key, bool on) { Vek::dirtyKeyIs(vekIsNotesDirty_, key, on); }
bool ToyBox::VekNboAttrLogSa::FlowOut::vekIsNotesDirtyDel(Vek::String8 key) { return Vek::dirtyKeyDel(vekIsNotesDirty_, key); }
Vek::Ptr<ToyBox::VekNboAttrLogSa::FlowOut::VekVekIsVlansDirty> ToyBox::VekNboAttrLogSa::FlowOut::newVekIsVlansDirty(Bridging::VlanIdOrNone key, bool on) { return Vek::dirtyKeyNew(vekIsVlansDirty_, key, on); }
void ToyBox::VekNboAttrLogSa::FlowOut::vekIsVlansDirtyIs(Bridging::VlanIdOrNone key, bool on) { Vek::dirtyKeyIs(vekIsVlansDirty_, key, on); }
bool ToyBox::VekNboAttrLogSa::FlowOut::vekIsVlansDirtyDel(Bridging::VlanIdOrNone key) { return Vek::dirtyKeyDel(vekIsVlansDirty_, key); }
Vek::Ptr<ToyBox::VekNboAttrLogSa::FlowOut::VekVekIsShelvesDirty> ToyBox::VekNboAttrLogSa::FlowOut::newVekIsShelvesDirty(Vek::Name key, bool on) { return Vek::dirtyKeyNew(vekIsShelvesDirty_, key, on); }
void ToyBox::VekNboAttrLogSa::FlowOut::vekIsShelvesDirtyIs(Vek::Name key, bool on) { Vek::dirtyKeyIs(vekIsShelvesDirty_, key, on); }
bool ToyBox::VekNboAttrLogSa::FlowOut::vekIsShelvesDirtyDel(Vek::Name key) { return Vek::dirtyKeyDel(vekIsShelvesDirty_, key); }

Vek::Ptr<Vek::Entity::VekNboAttrLogSa const> ToyBox::vekNboAttrLogSa(Vek::Ptr<Vek::NboAttrLog::Out const> const& out) const { return const_cast<ToyBox*>(this)->vekNboAttrLogSa(out); }
Vek::Ptr<Vek::Entity::VekNboAttrLogSa> ToyBox::vekNboAttrLogSa(Vek::Ptr<Vek::NboAttrLog::Out const> const& out) { return Vek::logAdapterOf(*this, notifiees_.chain(), out); }
Vek::Ptr<Vek::Entity::VekNboAttrLogSa> ToyBox::vekNboAttrLogSaForMsgChannel(Vek::Ptr<Vek::Entity::VekNboAttrLogSa> const& adapter) const { return Vek::channelSiblingOf(notifiees_.chain(), adapter); }
Vek::Ptr<Vek::Entity::VekNboAttrLogSa> ToyBox::vekNboAttrLogSaIs(Vek::PtrInterface::NotifieeConst::Vek_BitSet flags, Vek::U32 count, Vek::Ptr<Vek::NboAttrLog::Out> const& out, Vek::PtrInterface* owner) {
  return Vek::bindToLog(*this, flags, count, out, owner);
}
Vek::Ptr<Vek::Entity::VekNboAttrLogSa> ToyBox::vekNboAttrLogSaDel(Vek::Ptr<Vek::NboAttrLog::Out const> const& out) { return Vek::logAdapterDel(*this, out); }

// What happens when the library is loaded

namespace {

using Defined = Vek::List<
    ToyPoint::_Type,
    ToyVlan::_Type,
    Toy::_Type,
    Lid::_Type,
    Drawer::_Type,
    Shelf::_Type,
    ToyBox::_Type>;

using Alphabetical = Vek::List<
    Drawer,
    Lid,
    Shelf,
    Toy,
    ToyBox,
    ToyPoint,
    ToyVlan>;

bool done = false;

}  // namespace

static void vekInitToy() {
  Vek::initSchemaFile(done, std::array{"Toys"}, Alphabetical{}, Defined{});
}

[[gnu::section(".vek.type"), gnu::used, gnu::aligned(32)]] static constinit auto vekTypeNames = Vek::typeNames(Defined{});

static std::ios_base::Init const vekStreams;
[[maybe_unused]] static bool const vekLoaded = Vek::loadSchemaFile(vekInitToy, Defined{});

}  // namespace Toys
