// Hears of each change of an attribute, inside the setter that makes it.
#include <dornl3/schema/Status.h>

#include <iostream>

namespace L3 = Hardware::DornL3Unicast;

namespace {

class Watcher : public L3::Status::Notifiee {
 public:
  void onNumVrfs() override { std::cout << "VRFs: " << notifier()->numVrfs() << '\n'; }
  void onIpFecs() override { std::cout << "FECs of IP routes: " << notifier()->ipFecs() << '\n'; }
};

}  // namespace

int main() {
  Vek::Ptr<L3::Status> const status = L3::statusFactory("status");
  Vek::Ptr<Watcher> const watcher = Vek::make<Watcher>();
  watcher->notifierIs(status);
  watcher->isRegisteredNotifieeIs(true);

  status->numVrfsIs(3);
  status->numVrfsIs(3);  // the present value: nobody is told
  status->ipFecsIs(L3::FecCountStats{7, 2, 9});
}
