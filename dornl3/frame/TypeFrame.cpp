#include "dornl3/frame/TypeFrame.h"

namespace Vek::detail {

void describeEntityBase(IntrospectionReactor& reactor, VekType* type) {
  for (VekType::VekAttributeQ::IteratorConst it(&Entity::_fwkType()->attributes()); it; ++it) {
    Ptr<VekAttr> const copy = it->copyFor(type);
    type->attributeQEnq(copy);
    reactor.handleAttr(copy.ptr());
    reactor.handleAttrContextExit();
  }
  reactor.defNoninstantiatingAttr(type, "vekHasAttrLogInterface", Builtin<bool>::_fwkType(), nullptr,
                                  VekAttr::AttrFlags::marker(), VekAttr::markerFlags, Entity::attrLogMarker);
}

void describeInstantiating(IntrospectionReactor& reactor, VekType* owner, char const* name, VekType const* targetType,
                           VekAttr::AttrFlags const& flags, AttributeId id, VekType const* keyType,
                           char const* keyName) {
  bool const keyed = keyName != nullptr;
  VekType::AttrNode node = owner->type_Attr();
  node.attrDel(name);
  VekAttr* const keyAttr = keyed ? node.attr(keyName) : nullptr;
  Ptr<VekAttr> const attr = node.attrIs(name, targetType, keyAttr, nullptr, flags, id);
  if (keyed) attr->keyTypeIs(keyType);
  bool const keyIsName = !keyed || keyType == Name::_fwkType();
  attr->constructorArgNameQEnq(keyed ? keyName : "name");
  attr->constructorArgTypeQEnq(keyIsName ? "Vek::Name" : "Vek::String");
  if (keyed) {
    attr->keyAttrNameIs(keyName);
    attr->keyArgIs(0);
  }
  attr->introspectionFlagsIs(keyed ? VekAttr::declaredFlags | VekAttr::keyedFlags : VekAttr::declaredFlags);
  owner->attributeQEnq(attr);
  reactor.handleAttr(attr.ptr());
  reactor.handleAttrContextExit();
}

}  // namespace Vek::detail
