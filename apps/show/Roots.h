// Roots: the entities that tell this host's forwarding state, and those that ask for it and configure it. The list of
// them stands here.
#pragma once

#include "dornl3/schema/AclIntf.h"
#include "dornl3/schema/AuditStatus.h"
#include "dornl3/schema/DornL3CliConfig.h"
#include "dornl3/schema/Status.h"

namespace Apps::Show {

struct Roots {
  Vek::Ptr<Hardware::DornL3Unicast::Request> request = Hardware::DornL3Unicast::requestFactory("request");
  Vek::Ptr<Hardware::DornL3Unicast::Status> status = Hardware::DornL3Unicast::statusFactory("status");
  Vek::Ptr<Hardware::DornL3Unicast::AradVxlanRoutingStatus> vxlanRouting =
      Hardware::DornL3Unicast::aradVxlanRoutingStatusFactory("aradVxlanRoutingStatus");
  Vek::Ptr<Hardware::DornL3Unicast::RestartCompletionStatus> restartCompletion =
      Hardware::DornL3Unicast::restartCompletionStatusFactory("restartCompletionStatus");
  Vek::Ptr<Hardware::DornL3Unicast::AuditRequest> auditRequest =
      Hardware::DornL3Unicast::auditRequestFactory("auditRequest");
  Vek::Ptr<Hardware::DornL3Unicast::AuditStatus> auditStatus =
      Hardware::DornL3Unicast::auditStatusFactory("auditStatus");
  Vek::Ptr<Hardware::DornL3Unicast::CliConfig> cliConfig = Hardware::DornL3Unicast::cliConfigFactory("cliConfig");
  Vek::Ptr<Hardware::DornL3Unicast::AclRoute::Config> aclRouteConfig =
      Hardware::DornL3Unicast::AclRoute::configFactory("aclRouteConfig");
  Vek::Ptr<Hardware::DornL3Unicast::AclRoute::Status> aclRouteStatus =
      Hardware::DornL3Unicast::AclRoute::statusFactory("aclRouteStatus");

  /// Calls `each` with every one of them.
  template <class Each>
  void forEach(Each const& each) const {
    each(request), each(status), each(vxlanRouting), each(restartCompletion), each(auditRequest), each(auditStatus),
        each(cliConfig), each(aclRouteConfig), each(aclRouteStatus);
  }
};

}  // namespace Apps::Show
