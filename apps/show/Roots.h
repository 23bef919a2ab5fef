// Roots: the entities that tell this host's forwarding state, and the one that asks for it.
#pragma once

#include "schema/Status.h"

namespace Apps::Show {

struct Roots {
  Vek::Ptr<Hardware::DornL3Unicast::Request> request = Hardware::DornL3Unicast::requestFactory("request");
  Vek::Ptr<Hardware::DornL3Unicast::Status> status = Hardware::DornL3Unicast::statusFactory("status");
  Vek::Ptr<Hardware::DornL3Unicast::AradVxlanRoutingStatus> vxlanRouting =
      Hardware::DornL3Unicast::aradVxlanRoutingStatusFactory("aradVxlanRoutingStatus");
  Vek::Ptr<Hardware::DornL3Unicast::RestartCompletionStatus> restartCompletion =
      Hardware::DornL3Unicast::restartCompletionStatusFactory("restartCompletionStatus");
};

}  // namespace Apps::Show
