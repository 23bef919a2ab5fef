#include "dornl3/platform/vek/VekType.h"

#include "dornl3/core/Throwers.h"
#include "dornl3/platform/vek/Entity.h"
#include "dornl3/platform/vek/GenericIfEntity.h"

#include <map>

namespace Vek {

namespace {

// Types register while libraries load, in whatever order, so the registry is made on first use; it lives for good.
std::map<std::string_view, VekType*>& registry() {
  static auto& types = *new std::map<std::string_view, VekType*>;
  return types;
}

}  // namespace

VekType::VekType(Name shortName, VekType const* scope, VekType* base, VekTypeFlags flags)
    : name_(std::move(shortName)), scope_(scope), base_(base), flags_(flags) {}

VekType::~VekType() = default;

void VekType::typeFlagsDoEmbeddedWriteConstraints() {}

void VekType::flagIs(U32& word, U32 bit, bool on) {
  U32 const wanted = on ? word | bit : word & ~bit;
  if (wanted == word) return;
  word = wanted;
  typeFlagsDoEmbeddedWriteConstraints();
}

void VekType::attributeQEnq(Ptr<VekAttr> const& attr) {
  attributes_.enqueue(attr);
  if (attributesByName_[attr->name()] == nullptr) attributesByName_.newMember(attr);
}

VekAttr* VekType::attribute(AttributeId id) const noexcept {
  for (auto const& attr : attributes_) {
    if (attr->id() == id) return attr.ptr();
  }
  return nullptr;
}

VekAttr* VekType::AttrNode::attr(Name const& name) const noexcept { return type_->attributesByName_[name]; }

void VekType::AttrNode::attrDel(Name const& name) {
  Ptr<VekAttr> const gone = attr(name);
  if (!gone) return;
  type_->attributesByName_.deleteMember(gone);
  VekAttributeQ& attributes = type_->attributes_;
  for (VekAttributeQ::Iterator it(&attributes); it; ++it) {
    if (it->value()->name() == name) attributes.deleteMember(it);
  }
}

Ptr<VekAttr> VekType::AttrNode::attrIs(Name const& name, VekType const* type, VekAttr const* /*keyAttr*/,
                                       VekAttr const* /*otherAttr*/, VekAttr::AttrFlags const& flags, AttributeId id) {
  return make<VekAttr>(type_, name, type, nullptr, flags, VekAttr::hiddenFlags, id);
}

Ptr<Entity> VekType::newEntity(Name const&, Dir*) const { throwNotMade("a name alone"); }
Ptr<Entity> VekType::newEntity(Ptr<NboAttrLog::In> const&, PtrInterface::NotifieeConst::Vek_BitSet, U32,
                               PtrInterface*) const {
  throwNotMade("an announcement");
}

void VekType::childAttrLogIs(VekAttr const&, Ptr<Entity> const&, Ptr<NboAttrLog::Out> const&) const {}

Ptr<GenericIf> VekType::genericIf(void const*, bool) const { throwNotMade("a value"); }
Ptr<GenericIf> VekType::genericIf(GenericIf const*, bool) const { throwNotMade("a list of arguments"); }
Ptr<GenericIf> VekType::genericIf(String8 const&, bool) const { throwNotMade("a text"); }
Ptr<GenericIf> VekType::genericIf_(PtrInterface*, bool) const { throwNotMade("an object"); }

Ptr<GenericIf> VekType::genericIf(PtrInterface* object, bool isConst) {
  if (object == nullptr) return make<GenericIfPtrInterface>(nullptr, isConst);
  VekType const* const type = object->fwkType();
  if (type == nullptr) return make<GenericIfPtrInterface>(object, isConst);
  return type->genericIf_(object, isConst);
}

void VekType::throwNotMade(char const* from) const {
  throwInternalException(format("no %s is made from %s", name_.charPtr(), from));
}

void VekType::typeNodeIs(VekType* type, char const* fullName) {
  Name const name{fullName};
  auto const [place, isNew] = registry().try_emplace(name, type);
  if (!isNew) {
    if (place->second == type) return;
    throwInternalException(format("two types are named %s: link one library that defines it, not two", fullName));
  }
  type->fullName_ = name;
}

VekType* VekType::find(std::string_view fullName) {
  auto const place = registry().find(fullName);
  return place == registry().end() ? nullptr : place->second;
}

std::vector<VekType*> VekType::registered() {
  std::vector<VekType*> types;
  types.reserve(registry().size());
  for (auto const& [name, type] : registry()) types.push_back(type);
  return types;
}

}  // namespace Vek
