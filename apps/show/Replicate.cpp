#include "apps/show/Replicate.h"

#include "apps/kernel/KernelReader.h"
#include "apps/show/HostRoots.h"
#include "dornl3/generic/Digest.h"
#include "dornl3/platform/attrlog/Connection.h"
#include "dornl3/platform/attrlog/MemoryTransport.h"

#include <fmt/format.h>

#include <chrono>
#include <random>

namespace Apps::Show {

namespace {

using namespace Vek::NboAttrLog;

double monotonicSeconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// Two ends of a stream in this process.
struct Link {
  Link() { MemoryTransport::join(ownerTransport, readerTransport); }

  void settle() const {
    do {
      owner->writable();
      reader->writable();
      owner->readable();
      reader->readable();
    } while (owner->wantsWrite() || reader->wantsWrite() || !ownerTransport.incoming().empty() ||
             !readerTransport.incoming().empty());
  }

  MemoryTransport ownerTransport;
  MemoryTransport readerTransport;
  std::random_device device;
  Random random = [this] { return device(); };
  Vek::Ptr<Connection> owner =
      Vek::make<Connection>(Connection::Settings{"owner", {}}, ownerTransport, monotonicSeconds, random);
  Vek::Ptr<Connection> reader =
      Vek::make<Connection>(Connection::Settings{"reader", {}}, readerTransport, monotonicSeconds, random);
};

}  // namespace

Replicated replicateLocal(Kernel::MessageSource& source) {
  Roots const roots;
  Interrupted const interrupted = fillFrom([&source] { return Kernel::readKernel(source); }, roots);
  Vek::Ptr<Vek::Dir> const mounted = Vek::make<Vek::Dir>();
  Link link;
  std::vector<std::pair<Vek::Ptr<Vek::Entity>, Vek::Ptr<Mount>>> mounts;
  roots.forEach([&](Vek::Ptr<Vek::Entity> const& root) {
    link.owner->exports().exportIs(root, Access::readOnly);
    mounts.emplace_back(root, Vek::make<Mount>(root->name(), *root->fwkType(), Access::readOnly, mounted));
    link.reader->mounts().mountIs(mounts.back().second);
  });
  link.settle();

  Replicated result;
  result.notices = noticesOf(interrupted);
  result.areEqual = true;
  result.output = fmt::format("{:<24} {:<16} {:<16}\n", "root", "here", "over the log");
  for (auto const& [root, mount] : mounts) {
    bool const isInStep = mount->state() == Vek::Dir::inStep;
    auto const here = Vek::digest(*root);
    auto const there = isInStep ? Vek::digest(*mount->entity()) : 0;
    bool const isEqual = isInStep && here == there;
    result.areEqual = result.areEqual && isEqual;
    result.output += fmt::format("{:<24} {:016x} {:016x}{}\n", root->name().view(), here, there,
                                 isEqual    ? ""
                                 : isInStep ? "  differs"
                                            : "  is not in step");
  }
  result.output += fmt::format("{} records, {} bytes.\n", link.owner->out()->records(), link.owner->out()->written());
  return result;
}

}  // namespace Apps::Show
