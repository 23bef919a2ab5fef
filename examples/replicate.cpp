// One process that keeps a copy of an entity in step with it. Between two programs the stream would be a socket, each
// end would have a loop of its own, and nothing else would be different.
#include <dornl3/platform/attrlog/Connection.h>
#include <dornl3/platform/attrlog/MemoryTransport.h>
#include <dornl3/schema/Status.h>

#include <iostream>

namespace L3 = Hardware::DornL3Unicast;
namespace Log = Vek::NboAttrLog;

class Watcher : public L3::Status::NotifieeConst {
 public:
  void onNumVrfs() override { std::cout << "VRFs: " << notifier()->numVrfs() << '\n'; }
  void onInUseArpEntries(Hardware::Dorn::FapId fap) override {
    std::cout << "ARP entries of FAP " << fap.value() << ": " << notifier()->inUseArpEntries(fap) << '\n';
  }
};

Vek::Ptr<Log::Connection> end(char const* name, Log::Transport& transport) {
  return Vek::make<Log::Connection>(Log::Connection::Settings{name, {}}, transport, Log::steadyClock(),
                                    Log::systemRandom());
}

int main() {
  Log::MemoryTransport here, there;
  Log::MemoryTransport::join(here, there);
  auto const owner = end("owner", here), reader = end("reader", there);
  auto const exchange = [&] {  // what two loops would do
    for (int turn = 0; turn < 8; ++turn) {
      for (auto const& one : {owner, reader}) {
        one->readable();
        one->writable();
      }
    }
  };

  auto const status = L3::statusFactory("status");
  status->numVrfsIs(3);
  owner->exports().exportIs(status, Log::Access::readOnly);
  auto const mount = Log::mountOf<L3::Status>("status", Log::Access::readOnly);
  reader->mounts().mountIs(mount);
  exchange();
  auto const replica = Log::mounted<L3::Status>(*mount);
  std::cout << "in step with " << replica->numVrfs() << " VRFs\n";

  auto const watcher = Vek::make<Watcher>();
  watcher->notifierIs(replica);
  watcher->isRegisteredNotifieeIs(true);
  status->numVrfsIs(4);
  status->numVrfsIs(4);                // the present value: nothing travels
  status->inUseArpEntriesIs(0, 1200);  // a key travels alone
  exchange();
}
