#include "dornl3/core/ReactorWalk.h"

namespace Vek {

void tellLogsOfMissedChange(ReactorChain const& reactors, AttributeId attribute) noexcept {
  for (auto* at = reactors.head(); at != nullptr; at = ReactorChain::next(*at)) {
    auto const* const behind = at->vekRawReactor();
    if (behind == nullptr || !behind->isStreamAdapter()) return;
    try {
      const_cast<PtrInterface::NotifieeConst*>(at)->onNotificationException(attribute);
    } catch (...) {
      // The caller of the setter hears of it by the exception that is being handled.
    }
  }
}

void notifyReactors(PtrInterface const& notifier, ReactorChain const& reactors, AttributeId attribute,
                    ReactorSlot slot) {
  walkReactors(notifier, reactors, attribute, [slot](PtrInterface::NotifieeConst& reactor) { (reactor.*slot)(); });
}

}  // namespace Vek
