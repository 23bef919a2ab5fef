#include "apps/show/HostRoots.h"

#include "apps/kernel/KernelReader.h"
#include "apps/show/RequestResponder.h"
#include "platform/vek/Dir.h"

#include <chrono>
#include <string_view>

namespace Apps::Show {

namespace {

double secondsSince1970() {
  return std::chrono::duration<double>{std::chrono::system_clock::now().time_since_epoch()}.count();
}

std::string interruptionNotice(std::string_view table) {
  return std::string{table} +
         " kept changing while they were read: the figures may mix several states. Run the command again for others.";
}

}  // namespace

std::vector<std::string> fillFromKernel(Roots const& roots, Kernel::MessageSource& source) {
  auto const responder = Vek::make<RequestResponder>(
      roots, [&source] { return Kernel::readKernel(source); }, secondsSince1970);
  responder->notifierIs(roots.request);
  responder->isRegisteredNotifieeIs(true);

  roots.request->statusRequestIdInc(1);
  if (responder->failure()) std::rethrow_exception(responder->failure());
  std::vector<std::string> notices;
  for (std::string_view table : responder->interrupted()) notices.push_back(interruptionNotice(table));
  return notices;
}

HostRoots::HostRoots(Kernel::MessageSource& source) : notices_{fillFromKernel(roots_, source)} {
  roots_.forEach([](Vek::Ptr<Vek::Entity> const& root) { Vek::Dir::root().entryIs(root); });
}

HostRoots::~HostRoots() {
  roots_.forEach([](Vek::Ptr<Vek::Entity> const& root) { Vek::Dir::root().entryDel(root->name()); });
}

}  // namespace Apps::Show
