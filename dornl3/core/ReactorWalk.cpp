#include "dornl3/core/ReactorWalk.h"

namespace Vek {

void notifyReactors(PtrInterface const& notifier, ReactorChain const& reactors, AttributeId attribute,
                    ReactorSlot slot) {
  walkReactors(notifier, reactors, attribute, [slot](PtrInterface::NotifieeConst& reactor) { (reactor.*slot)(); });
}

}  // namespace Vek
