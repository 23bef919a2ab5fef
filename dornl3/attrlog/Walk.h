// Walk: writes what a flow-out owes, attribute by attribute in rising number. Thread: the entity's. Re-entrancy: nests;
// calls nobody but the adapter's own handlers.
#pragma once

#include "dornl3/attrlog/ChildLog.h"

namespace Vek {

/// Lets the children of an entity exist on the far side before its attributes flow.
template <class Attr, class Sa>
void instantiateChildren(Sa& adapter) {
  adapter.StreamAdapter::vekInstantiateSerialize();
  forEach(typename Attr::All{}, [&](auto attribute) {
    using A = decltype(attribute);
    if constexpr (holdsChildrenByKey<A>) {
      static_cast<void>((adapter.*A::logWalk)());
    } else if constexpr (holdsOneChild<A>) {
      (adapter.*A::logHandler)();
    }
  });
}

/// See StreamAdapter::handleAttrFlowOut.
template <class Attr, class Sa>
AttributeId walkAttributes(Sa& adapter, AttributeId from) {
  return adapter.walk(walkTable<Attr>, from);
}

}  // namespace Vek
