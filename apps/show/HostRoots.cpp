#include "apps/show/HostRoots.h"

#include "apps/show/RequestResponder.h"
#include "apps/show/StatusFiller.h"
#include "apps/show/WallClock.h"

namespace Apps::Show {

namespace {

Interrupted fillOnly(ReadFigures const& read, Roots const& roots) {
  Kernel::KernelFigures const figures = read();
  fill(roots, figures);
  return figures.interrupted;
}

}  // namespace

Interrupted fillFrom(ReadFigures const& read, Roots const& roots) {
  auto const responder = Vek::make<RequestResponder>();
  responder->notifierIs(roots.request);
  responder->isRegisteredNotifieeIs(true);

  roots.request->statusRequestIdInc(1);
  Interrupted interrupted = fillOnly(read, roots);
  responder->answer(roots, secondsSince1970());
  return interrupted;
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

HostRoots::HostRoots(ReadFigures const& read, Asker asker)
    : interrupted_{asker == Asker::self ? fillFrom(read, roots_) : fillOnly(read, roots_)} {
  roots_.forEach([](Vek::Ptr<Vek::Entity> const& root) { Vek::Dir::root().entryIs(root); });
}

HostRoots::~HostRoots() {
  roots_.forEach([](Vek::Ptr<Vek::Entity> const& root) { Vek::Dir::root().entryDel(root->name()); });
}

}  // namespace Apps::Show
