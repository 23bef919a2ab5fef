#include "apps/show/HostRoots.h"

#include "apps/show/RequestResponder.h"
#include "apps/show/WallClock.h"
#include "dornl3/platform/vek/Dir.h"

namespace Apps::Show {

Interrupted fillFrom(ReadFigures const& read, Roots const& roots) {
  auto const responder = Vek::make<RequestResponder>(roots, read, secondsSince1970);
  responder->notifierIs(roots.request);
  responder->isRegisteredNotifieeIs(true);

  roots.request->statusRequestIdInc(1);
  if (responder->failure()) std::rethrow_exception(responder->failure());
  return responder->interrupted();
}

std::vector<std::string> noticesOf(Interrupted const& interrupted) {
  std::vector<std::string> notices;
  for (std::string_view table : interrupted) {
    notices.push_back(std::string{table} +
                      " kept changing while they were read: the figures may mix several states. Run the command again "
                      "for others.");
  }
  return notices;
}

HostRoots::HostRoots(ReadFigures const& read) : interrupted_{fillFrom(read, roots_)} {
  roots_.forEach([](Vek::Ptr<Vek::Entity> const& root) { Vek::Dir::root().entryIs(root); });
}

HostRoots::~HostRoots() {
  roots_.forEach([](Vek::Ptr<Vek::Entity> const& root) { Vek::Dir::root().entryDel(root->name()); });
}

}  // namespace Apps::Show
