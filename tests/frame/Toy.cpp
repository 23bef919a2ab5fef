#include "tests/frame/Toy.h"

#include <iostream>

#include "frame/SchemaFile.h"
#include "frame/TypeNames.h"
#include "frame/ValueFrame.h"
#include "text/ValueText.h"

namespace Toys {

static void vekInitToys();

// ToyPoint

struct [[gnu::visibility("hidden")]] ToyPoint::Attr {
  static constexpr char const* shortName = "ToyPoint";
  static constexpr char const* fullName = "Toys::ToyPoint";
  static constexpr bool bare = false;
  static inline constinit Vek::VekType* record = nullptr;

  struct x : Vek::Fixed<ToyPoint, Vek::U32, 2> {
    static constexpr char const* name = "x";
    static auto& field(auto& value) { return value.x_; }
    static constexpr int min = 0;
    static constexpr int max = 100;
  };
  struct y : Vek::Fixed<ToyPoint, Vek::Seconds, 3> {
    static constexpr char const* name = "y";
    static auto& field(auto& value) { return value.y_; }
  };
  struct label : Vek::Fixed<ToyPoint, Vek::String8, 4> {
    static constexpr char const* name = "label";
    static auto& field(auto& value) { return value.label_; }
  };
  using All = Vek::List<x, y, label>;
};

class ToyPoint::_Type final : public Vek::ValueType<ToyPoint, ToyPoint::Attr> {};

ToyPoint::ToyPoint(Vek::U32 x, Vek::Seconds y, Vek::String8 label) : x_(x), y_(y), label_(std::move(label)) {}

ToyPoint::ToyPoint(Vek::String8::IteratorConst& it, Vek::String8::IteratorConst const& end) {
  Vek::readValueText<Attr>(*this, it, end);
}

bool ToyPoint::operator==(ToyPoint const& other) const { return Vek::valueEqual<Attr>(*this, other); }

Vek::VekType const* ToyPoint::_fwkType() { return Vek::typeRecord<_Type>(vekInitToys); }

Vek::String8 valueToStrep(ToyPoint const& value) { return Vek::valueText<ToyPoint::Attr>(value); }

std::ostream& operator<<(std::ostream& os, ToyPoint const& value) { return Vek::writeTo(os, valueToStrep(value)); }

// Toy

struct [[gnu::visibility("hidden")]] Toy::Attr {
  static constexpr char const* shortName = "Toy";
  static constexpr char const* fullName = "Toys::Toy";
  static inline constinit Vek::VekType* record = nullptr;

  struct size : Vek::Scalar<Toy, Vek::U64, 258> {
    static constexpr char const* name = "size";
    static auto& field(auto& entity) { return entity.size_; }
    static constexpr auto slot = &NotifieeConst::onSize;
  };
  struct broken : Vek::Scalar<Toy, bool, 259> {
    static constexpr char const* name = "broken";
    static auto& field(auto& entity) { return entity.broken_; }
    static constexpr auto slot = &NotifieeConst::onBroken;
  };
  struct played : Vek::Scalar<Toy, Vek::Seconds, 260> {
    static constexpr char const* name = "played";
    static auto& field(auto& entity) { return entity.played_; }
    static constexpr auto slot = &NotifieeConst::onPlayed;
  };
  struct text : Vek::Scalar<Toy, Vek::String8, 261> {
    static constexpr char const* name = "text";
    static auto& field(auto& entity) { return entity.text_; }
    static constexpr auto slot = &NotifieeConst::onText;
  };
  struct place : Vek::Scalar<Toy, ToyPoint, 262> {
    static constexpr char const* name = "place";
    static auto& field(auto& entity) { return entity.place_; }
    static constexpr auto slot = &NotifieeConst::onPlace;
  };
  using All = Vek::List<size, broken, played, text, place>;
};

class Toy::_Type final : public Vek::RootEntityType<Toy, Toy::Attr> {};

Toy::Toy(Vek::Name name) : Vek::Entity(std::move(name)) {}
Toy::~Toy() = default;

void Toy::sizeIs(Vek::U64 const& value) { Vek::scalarIs<Attr::size>(*this, value); }
Vek::U64 Toy::sizeInc(Vek::U64 const& delta) { return Vek::scalarInc<Attr::size>(*this, delta); }
void Toy::brokenIs(bool value) { Vek::scalarIs<Attr::broken>(*this, value); }
void Toy::playedIs(Vek::Seconds const& value) { Vek::scalarIs<Attr::played>(*this, value); }
void Toy::textIs(Vek::String8 value) { Vek::scalarIs<Attr::text>(*this, value); }
void Toy::placeIs(ToyPoint const& value) { Vek::scalarIs<Attr::place>(*this, value); }

Vek::VekType* Toy::_fwkType() { return Vek::typeRecord<_Type>(vekInitToys); }
Vek::String8 Toy::attributeString(Vek::AttributeId id) const { return Vek::attributeString<Attr>(*this, id); }
void Toy::zeroReferencesIs(bool) { Vek::notifyZeroReferences(*this); }

Toy::NotifieeConst::~NotifieeConst() { leaveForGood(Vek::reactorsOf<Toy>); }
void Toy::NotifieeConst::notifierIs(Vek::Ptr<Vek::PtrInterface const> const& n) {
  follow(Vek::entityOf<Toy>(n), Vek::reactorsOf<Toy>);
}
void Toy::NotifieeConst::isRegisteredNotifieeIs(bool on) const { registerWith(on, Vek::reactorsOf<Toy>); }
Toy::Notifiee::~Notifiee() = default;

Vek::Ptr<Toy> toyFactory(Vek::Name name) { return Vek::make<Toy>(std::move(name)); }

// What happens when the library is loaded

namespace {

using Defined = Vek::List<
    ToyPoint::_Type,
    Toy::_Type>;

using Alphabetical = Vek::List<
    Toy,
    ToyPoint>;

bool done = false;

}  // namespace

static void vekInitToys() { Vek::initSchemaFile(done, std::array{"Toys"}, Alphabetical{}, Defined{}); }

[[gnu::section(".vek.type"), gnu::used, gnu::aligned(32)]] static constinit auto vekTypeNames =
    Vek::typeNames(Defined{});

static std::ios_base::Init const vekStreams;
[[maybe_unused]] static bool const vekLoaded = Vek::loadSchemaFile(vekInitToys, Defined{});

}  // namespace Toys
