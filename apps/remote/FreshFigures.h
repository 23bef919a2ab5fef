// FreshFigures: asks an agent for figures that it has read after it was asked.
#pragma once

#include "apps/remote/AgentSession.h"
#include "apps/show/Roots.h"

namespace Apps {

/// What must be mounted for that: the request writable, and the roots that figures are shown of.
[[nodiscard]] std::vector<AgentMounts::Wish> figureWishes();

/// Asks, and waits until the answer and all figures that belong to it are here. Whoever else asks at the same time,
/// none takes an answer for his that was made before he asked. Throws NoAnswer.
[[nodiscard]] Show::Roots freshFigures(AgentSession& agent);

}  // namespace Apps
