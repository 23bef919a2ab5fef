#include "dornl3/platform/vek/IntrospectionReactor.h"

#include "dornl3/core/Throwers.h"
#include "dornl3/platform/vek/VekType.h"

namespace Vek {

IntrospectionReactor::IntrospectionReactor() : inner_(new Inner) {}

Ptr<IntrospectionReactor> IntrospectionReactor::global() {
  static IntrospectionReactor& reactor = []() -> IntrospectionReactor& {
    Ptr<IntrospectionReactor> const made = new IntrospectionReactor;
    made->referencesLeak();
    return *made;
  }();
  return &reactor;
}

bool IntrospectionReactor::active() const noexcept { return inner_ && inner_->active; }

void IntrospectionReactor::activeIs(bool on) { inner_->active = on; }

void IntrospectionReactor::handleNameSpace(char const* name) { scopes_.emplace_back(name); }

void IntrospectionReactor::handleType(VekType* type, VekType const* base) {
  if (type->base() != base) throwInternalException(format("%s names two bases", type->name().charPtr()));
  scopes_.emplace_back(type->name().charPtr());
}

void IntrospectionReactor::handleAttr(VekAttr const* attr) { attrContext_ = attr; }

void IntrospectionReactor::handleAttrContextExit() { attrContext_ = nullptr; }

void IntrospectionReactor::handleScopeExit() {
  if (scopes_.empty()) throwInternalException("a type's description closes a scope that it did not open");
  scopes_.pop_back();
}

Ptr<VekAttr> IntrospectionReactor::defNoninstantiatingAttr(VekType* owner, char const* name, VekType const* valueType,
                                                           VekType const* keyType, VekAttr::AttrFlags const& flags,
                                                           VekAttr::VekAttrIntrospectionFlags introspectionFlags,
                                                           AttributeId id) {
  Ptr<VekAttr> attr = new VekAttr(owner, name, valueType, keyType, flags, introspectionFlags, id);
  owner->attributeQEnq(attr);
  handleAttr(attr.ptr());
  handleAttrContextExit();
  return attr;
}

void forcePointerAccessH(void const* function) noexcept { asm volatile("" : : "r"(function)); }

}  // namespace Vek
