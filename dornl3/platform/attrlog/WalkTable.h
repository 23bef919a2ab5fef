// WalkTable: what a walk over an entity comes to, a constant of each type; see dornl3/attrlog/WalkSteps.h.
#pragma once

#include "dornl3/platform/vek/Entity.h"

namespace Vek::NboAttrLog {

/// One attribute.
struct WalkStep {
  AttributeId number;
  U32 slot;  ///< its bit in a flow-out
  /// Writes it.
  void (*writes)(Entity::VekNboAttrLogSa& adapter);
  /// In the place of that, of a text or a collection: and says whether all of it has gone.
  bool (*goesOn)(Entity::VekNboAttrLogSa& adapter);
  bool isKeyed;
};

/// All that are logged, by rising number.
struct WalkTable {
  WalkStep const* begin;
  WalkStep const* end;
};

}  // namespace Vek::NboAttrLog
