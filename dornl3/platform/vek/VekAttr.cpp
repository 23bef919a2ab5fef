#include "dornl3/platform/vek/VekAttr.h"

namespace Vek {

VekAttr::VekAttr(VekType* owner, Name name, VekType const* valueType, VekType const* keyType, AttrFlags flags,
                 VekAttrIntrospectionFlags introspectionFlags, AttributeId id)
    : owner_(owner),
      name_(std::move(name)),
      valueType_(valueType),
      keyType_(keyType),
      flags_(flags),
      introspectionFlags_(introspectionFlags),
      id_(id) {}

Ptr<VekAttr> VekAttr::copyFor(VekType* owner) const {
  auto copy = make<VekAttr>(owner, name_, valueType_, keyType_, flags_, introspectionFlags_, id_);
  copy->constructorArgs_ = constructorArgs_;
  copy->keyAttrName_ = keyAttrName_;
  copy->keyArg_ = keyArg_;
  return copy;
}

}  // namespace Vek
