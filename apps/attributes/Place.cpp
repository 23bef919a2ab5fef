#include "apps/attributes/Place.h"

#include "apps/attributes/Misfit.h"
#include "dornl3/platform/vek/Builtin.h"
#include "dornl3/platform/vek/Path.h"

#include <fmt/format.h>

#include <algorithm>

namespace Apps::Attributes {

using Vek::GenericIf;
using Vek::VekType;

namespace {

Generic wrap(VekType const& type, void const* value) { return type.genericIf(value, false); }

Generic ask(Place const& place, GenericIf::OpId op) {
  return place.holder->attributeOp({place.attr->id(), op}, place.key, nullptr);
}

template <class T>
T answer(Generic const& generic) {
  return *static_cast<T const*>(generic->voidPtrIs(Vek::Builtin<T>::_fwkType()));
}

// The digits of a whole number, without what may stand ahead of them; empty where the text is none.
std::string_view wholeNumber(std::string_view text) {
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  bool const isWhole = !text.empty() && std::all_of(text.begin() + (text.front() == '-' ? 1 : 0), text.end(),
                                                    [](char c) { return c >= '0' && c <= '9'; });
  if (!isWhole) return {};
  while (text.size() > 1 && text.front() == '0') text.remove_prefix(1);
  return text;
}

// Readers cut what is too large for an integer: whoever types a number wants that one.
bool wasCut(std::string_view text, std::string_view read) {
  std::string_view const number = wholeNumber(read);
  return !number.empty() && !wholeNumber(text).empty() && wholeNumber(text) != number && wholeNumber(text) != "-0";
}

}  // namespace

Kind kindOf(VekType const& owner, Vek::VekAttr const& attr) {
  auto const flags = attr.flags();
  if (flags.isInstantiating()) return flags.isCollection() ? Kind::children : Kind::child;
  if (flags.isCollection()) return Kind::elements;
  return owner.isEntity() && flags.isSettable() ? Kind::scalar : Kind::readOnly;
}

std::string attributePath(std::string_view owner, Vek::VekAttr const& attr) {
  return fmt::format("{}.{}", owner, attr.name().view());
}

std::string memberPath(std::string_view collection, std::string_view keyText) {
  return fmt::format("{}[{}]", collection, keyText);
}

Place attributeOf(Place const& owner, Generic const& holder, Vek::VekAttr const& attr) {
  return {attributePath(owner.path, attr), holder, &attr};
}

Place memberOf(Place const& collection, GenericConst const& key) {
  return {memberPath(collection.path, keyText(*key)), collection.holder, collection.attr, key};
}

bool isText(VekType const& type) {
  return &type == Vek::Name::_fwkType() || &type == Vek::Builtin<Vek::String8>::_fwkType();
}

std::string keyName(GenericIf const& key) {
  VekType const* const type = key.type();
  if (type == Vek::Name::_fwkType()) return std::string{static_cast<Vek::Name const*>(key.voidPtrIs(type))->view()};
  if (type == Vek::Builtin<Vek::String8>::_fwkType()) {
    return std::string{static_cast<Vek::String8 const*>(key.voidPtrIs(type))->view()};
  }
  return std::string{key.strRep().view()};
}

std::string keyText(GenericIf const& key) {
  if (!isText(*key.type())) return keyName(key);
  return std::string{Vek::pathComponent(Vek::Name(std::string_view{keyName(key)})).view()};
}

Generic valueAt(Place const& place) {
  if (place.attr == nullptr) return place.holder;
  if (place.isMember() && !isThere(place)) {
    throw Misfit(fmt::format("{} is not there. 'dornl3 ls' of the collection lists the keys that it has.", place.path));
  }
  return ask(place, GenericIf::OpGet);
}

Vek::Ptr<Vek::Entity> entityOf(GenericIf& generic) {
  auto* const object = dynamic_cast<Vek::GenericIfPtrInterface*>(&generic);
  return object == nullptr ? nullptr : Vek::ptrCast<Vek::Entity>(object->obj());
}

Vek::U32 countAt(Place const& collection) { return answer<Vek::U32>(ask(collection, GenericIf::OpCount)); }
bool isThere(Place const& member) { return answer<bool>(ask(member, GenericIf::OpContains)); }

bool isRecord(VekType const& type) { return type.isValue() && !type.attributes().empty() && type.valAttr() == nullptr; }

void assign(Place const& place, Generic const& value) {
  place.holder->attributeOp({place.attr->id(), GenericIf::OpSet}, place.key, value);
}

Generic makeChild(Place const& place, std::optional<Vek::Name> const& name) {
  auto const arguments = Vek::make<GenericIf::List_>();
  if (place.isMember()) {
    VekType const* const type = place.key->type();
    arguments->enqueue(wrap(*type, place.key->voidPtrIs(type)));
  } else {
    Vek::Name const given = name.value_or(place.attr->name());
    arguments->enqueue(wrap(*Vek::Name::_fwkType(), &given));
  }
  return place.holder->attributeOp({place.attr->id(), GenericIf::OpSet}, nullptr, arguments);
}

void remove(Place const& place) { ask(place, GenericIf::OpDel); }

Generic fromText(VekType const& type, std::string_view text, std::string const& what) {
  Generic value;
  try {
    value = type.genericIf(Vek::String8(text), false);
  } catch (Vek::Exception const& complaint) {
    throw Misfit(fmt::format("{} is {}; {} is none: {}.", what, wanted(type), inQuotes(text), complaint.what()));
  }
  if (wasCut(text, value->strRep())) {
    throw Misfit(fmt::format("{} is {}; {} does not fit into one.", what, wanted(type), inQuotes(text)));
  }
  return value;
}

std::string wanted(VekType const& type) {
  Generic const example = type.genericIf(static_cast<void const*>(nullptr), true);
  return fmt::format("a {}, such as {}", type.fullName().view(), example->strRep().view());
}

}  // namespace Apps::Attributes
