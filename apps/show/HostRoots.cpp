#include "apps/show/HostRoots.h"

#include "apps/show/RequestResponder.h"
#include "apps/show/WallClock.h"
#include "platform/vek/Dir.h"

#include <string_view>

namespace Apps::Show {

namespace {

std::string interruptionNotice(std::string_view table) {
  return std::string{table} +
         " kept changing while they were read: the figures may mix several states. Run the command again for others.";
}

}  // namespace

std::vector<std::string> fillFrom(ReadFigures const& read, Roots const& roots) {
  auto const responder = Vek::make<RequestResponder>(roots, read, secondsSince1970);
  responder->notifierIs(roots.request);
  responder->isRegisteredNotifieeIs(true);

  roots.request->statusRequestIdInc(1);
  if (responder->failure()) std::rethrow_exception(responder->failure());
  std::vector<std::string> notices;
  for (std::string_view table : responder->interrupted()) notices.push_back(interruptionNotice(table));
  return notices;
}

HostRoots::HostRoots(ReadFigures const& read) : notices_{fillFrom(read, roots_)} {
  roots_.forEach([](Vek::Ptr<Vek::Entity> const& root) { Vek::Dir::root().entryIs(root); });
}

HostRoots::~HostRoots() {
  roots_.forEach([](Vek::Ptr<Vek::Entity> const& root) { Vek::Dir::root().entryDel(root->name()); });
}

}  // namespace Apps::Show
