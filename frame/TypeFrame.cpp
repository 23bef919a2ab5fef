#include "frame/TypeFrame.h"

namespace Vek::detail {

void describeEntityBase(IntrospectionReactor& reactor, VekType* type) {
  for (auto const& attribute : Entity::_fwkType()->attributes()) {
    Ptr<VekAttr> const copy = attribute->copyFor(type);
    type->attributeQEnq(copy);
    reactor.handleAttr(copy.ptr());
    reactor.handleAttrContextExit();
  }
  reactor.defNoninstantiatingAttr(type, "vekHasAttrLogInterface", Builtin<bool>::_fwkType(), nullptr,
                                  VekAttr::AttrFlags::marker(), VekAttr::markerFlags, Entity::attrLogMarker);
}

}  // namespace Vek::detail
