#include <dornl3/schema/Status.h>

#include <iostream>

namespace L3 = Hardware::DornL3Unicast;

class Watcher : public L3::Status::Notifiee {
 public:
  void onNumVrfs() override { std::cout << "VRFs: " << notifier()->numVrfs() << '\n'; }
  void onInUseArpEntries(Hardware::Dorn::FapId fap) override {
    std::cout << "ARP entries of FAP " << fap.value() << ": " << notifier()->inUseArpEntries(fap) << '\n';
  }
};

int main() {
  Vek::Ptr<L3::Status> const status = L3::statusFactory("status");
  Vek::Ptr<Watcher> const watcher = Vek::make<Watcher>();
  watcher->notifierIs(status);
  watcher->isRegisteredNotifieeIs(true);

  status->numVrfsIs(3);                // prints "VRFs: 3"
  status->numVrfsIs(3);                // the present value: nothing happens
  status->inUseArpEntriesIs(0, 1200);  // a collection, by key: prints "ARP entries of FAP 0: 1200"

  auto const v4 = status->lemV4RouteStatsIs("v4");  // a child, made where it is not there
  v4->routeCountIs(24, 700);
  v4->routeCountIs(16, 3);
  for (auto it = v4->routeCountIterator(); it; ++it) {  // prints "/16: 3", then "/24: 700"
    std::cout << '/' << it->key() << ": " << it->value() << '\n';
  }
}
