// Roots: the entities that tell this host's forwarding state, and those that ask for it and configure it. The list of
// them stands here.
#pragma once

#include "dornl3/platform/attrlog/Exports.h"
#include "dornl3/platform/vek/Dir.h"
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
    visit(*this, [&each](Vek::Ptr<Vek::Entity> const& root, Vek::NboAttrLog::Access) { each(root); });
  }
  /// The same, and with what others may do with it.
  template <class Each>
  void forEachExport(Each const& each) const {
    visit(*this, each);
  }

  /// Those that stand in a directory under these names; the others are new.
  [[nodiscard]] static Roots in(Vek::Dir const& dir) {
    Roots roots;
    visit(roots, [&dir]<class X>(Vek::Ptr<X>& root, Vek::NboAttrLog::Access) {
      if (auto const entity = Vek::ptrCast<X>(dir.entity(root->name()))) root = entity;
    });
    return roots;
  }

 private:
  // What is asked for and configured is for others to write.
  template <class Self, class Each>
  static void visit(Self& self, Each const& each) {
    using enum Vek::NboAttrLog::Access;
    each(self.request, writable), each(self.status, readOnly), each(self.vxlanRouting, readOnly),
        each(self.restartCompletion, readOnly), each(self.auditRequest, writable), each(self.auditStatus, readOnly),
        each(self.cliConfig, writable), each(self.aclRouteConfig, writable), each(self.aclRouteStatus, readOnly);
  }
};

}  // namespace Apps::Show
