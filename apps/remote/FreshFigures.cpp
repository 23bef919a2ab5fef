#include "apps/remote/FreshFigures.h"

#include <algorithm>

namespace Apps {

using namespace Hardware::DornL3Unicast;
using Vek::NboAttrLog::Access;

namespace {

constexpr char const* requestRoot = "request";
constexpr char const* statusRoot = "status";
constexpr char const* otherRoots[] = {"aradVxlanRoutingStatus", "restartCompletionStatus"};

// Raises the request above whatever was asked for and answered, as far as that is known here.
Vek::U64 raise(Request& request, Status const& status) {
  Vek::U64 const known = std::max(request.statusRequestId(), status.statusResponseId());
  return request.statusRequestIdInc(known - request.statusRequestId() + 1);
}

}  // namespace

std::vector<AgentMounts::Wish> figureWishes() {
  std::vector<AgentMounts::Wish> wishes{{requestRoot, Request::_fwkType(), Access::writable},
                                        {statusRoot, Status::_fwkType(), Access::readOnly}};
  wishes.push_back({otherRoots[0], AradVxlanRoutingStatus::_fwkType(), Access::readOnly});
  wishes.push_back({otherRoots[1], RestartCompletionStatus::_fwkType(), Access::readOnly});
  return wishes;
}

Show::Roots freshFigures(AgentSession& agent) {
  auto const request = Vek::NboAttrLog::mountedWritable<Request>(agent.mount(requestRoot));
  auto const status = Vek::NboAttrLog::mounted<Status>(agent.mount(statusRoot));
  while (true) {
    Vek::U64 const id = raise(*request, *status);
    // First the agent has the request, then all that it had answered by that time is here. An answer that is among that
    // may be older than this request, for others raise it too; one that comes later is not: the agent reads the kernel
    // and answers in one turn.
    agent.settle({requestRoot});
    agent.settle({statusRoot});
    if (status->statusResponseId() >= id) continue;
    agent.waitUntil([&] { return status->statusResponseId() >= id; });
    break;
  }
  // The answer may have overtaken figures, in its own entity and in others.
  agent.settle({statusRoot, otherRoots[0], otherRoots[1]});
  return Show::Roots::in(agent.dir());
}

}  // namespace Apps
