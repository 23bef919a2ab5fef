#include "dornl3/platform/vek/Entity.h"

#include "dornl3/platform/vek/Builtin.h"
#include "dornl3/platform/vek/NamedType.h"
#include "dornl3/platform/vek/Path.h"

#include <array>

namespace Vek {

namespace {

struct FrameworkAttribute {
  AttributeId id;
  char const* name;
  VekType* (*valueType)();
};

// What every entity has before its own attributes. The numbers are stable.
constexpr std::array frameworkAttributes{
    FrameworkAttribute{Entity::nameAttr, "name", Name::_fwkType},
    FrameworkAttribute{Entity::fullNameAttr, "fullName", Builtin<String8>::_fwkType},
    FrameworkAttribute{Entity::parentAttrNumber, "parent", Entity::_fwkType},
    FrameworkAttribute{Entity::parentAttrIdAttr, "parentAttrId", Builtin<U32>::_fwkType},
    FrameworkAttribute{Entity::writeCountAttr, "writeCount", Builtin<U32>::_fwkType},
    FrameworkAttribute{Entity::readCountAttr, "readCount", Builtin<U32>::_fwkType},
};

class EntityBaseType final : public VekType {
 public:
  EntityBaseType() : VekType("Entity", nullptr, nullptr, {}) {
    sizeIs(sizeof(Entity));
    isEntityIs(true);
    constructorArgNameQEnq("name");
    constructorArgTypeQEnq("Vek::Name");
    for (auto const& attribute : frameworkAttributes) {
      auto* const valueType = attribute.valueType == Entity::_fwkType ? this : attribute.valueType();
      attributeQEnq(new VekAttr(this, attribute.name, valueType, nullptr, VekAttr::AttrFlags::fixed(),
                                VekAttr::hiddenFlags, attribute.id));
    }
  }
};

}  // namespace

Entity::~Entity() {
  if (hasSilentAdapter_) vekLetAdaptersGo();
}

Name Entity::name() const { return name_; }

Ptr<Entity const> Entity::parent() const { return parent_; }
Ptr<Entity> Entity::parent() { return parent_; }

void Entity::parentIs(Ptr<Entity> const& parent) {
  bool const leaves = isBound_ && parent_ != nullptr && parent == nullptr;
  parent_ = parent.ptr();
  if (leaves) vekLeaveLogs();
  handleParent(parent);
}

VekAttr const* Entity::parentAttr() const {
  return parent_ == nullptr ? nullptr : parent_->fwkType()->attribute(parentAttrId_);
}

AttributeId Entity::parentAttrId() const { return parentAttrId_; }
void Entity::parentAttrIdIs(AttributeId id) { parentAttrId_ = id; }

bool Entity::isKeyedChild() const {
  VekAttr const* const attr = parentAttr();
  return attr != nullptr && attr->flags().isCollection();
}

String8 Entity::uriPath() const {
  if (isRoot()) return "/" + String8(name());
  String8 const place = parent_->uriPath() + "/" + parent_->attributeString(parentAttrId_);
  return isKeyedChild() ? place + "/" + String8(name()) : place;
}

String8 Entity::fullName() const {
  if (isRoot()) return pathComponent(name());
  String8 const place = parent_->fullName() + "." + parent_->attributeString(parentAttrId_);
  return isKeyedChild() ? place + "[" + pathComponent(name()) + "]" : place;
}

String8 Entity::attributeString(AttributeId id) const {
  for (auto const& attribute : frameworkAttributes) {
    if (attribute.id == id) return attribute.name;
  }
  switch (id) {
  case keyAttr: return "fwkKey";
  case zeroReferencesEvent: return "zeroReferences";
  case noParentAttr: return "orphan";
  case attrLogMarker: return "vekHasAttrLogInterface";
  default: return "unknown";
  }
}

void Entity::vekNotifieeAdapterIs(Ptr<Entity const> const&) {}
void Entity::handleParent(Ptr<Entity> const&) {}

VekType* Entity::_fwkType() {
  static VekType& type = []() -> VekType& {
    Ptr<VekType> const made = new EntityBaseType;
    made->referencesLeak();
    VekType::typeNodeIs(made.ptr(), "Vek::Entity");
    return *made;
  }();
  return &type;
}

VekType* Entity::fwkType() const { return _fwkType(); }

Entity::NotifieeConst::~NotifieeConst() = default;

Name Entity::NotifieeConst::name() const {
  auto const* const entity = dynamic_cast<Entity const*>(rawNotifier());
  return entity == nullptr ? Name{} : entity->name();
}

void Entity::NotifieeConst::onParent() {}
void Entity::NotifieeConst::onVersion() {}

}  // namespace Vek
