// Uses the types of Fan.toml, which the build generates (see CMakeLists.txt), and holds what docs/using-types.md says
// of their members: the page quotes it.
#undef NDEBUG  // the assertions tell what holds, in every build
#include "chassis/Fan.h"

#include <dornl3/text/ValueText.h>

#include <cassert>
#include <iostream>
#include <utility>

using Chassis::Fan;
using Chassis::FanTray;
using Chassis::SpeedRange;

namespace {

void whatIsNotThere(Vek::Ptr<FanTray> const& tray) {
  assert(tray->temperatures(7) == 0);     // no such key: the default of the value's type
  assert(!tray->fans("left"));            // no such child: null
  assert(tray->temperaturesDel(7) == 0);  // nothing to remove: the default, and nothing happens
  assert(!tray->fansDel("left"));
  assert(tray->writeCount() == 0);
}

void settersAndMakers(Vek::Ptr<FanTray> const& tray) {
  tray->temperaturesIs(1, 41);
  tray->temperaturesIs(1, 41);  // the present value: no count, no call
  assert(tray->writeCount() == 1);

  auto const left = tray->fansIs("left");  // made, counted, told
  assert(tray->fansIs("left") == left);    // the present child
  assert(left->parent() == tray);

  auto const other = tray->newFans("left");  // takes the place of the first, and nobody is told
  assert(tray->fans("left") == other && !left->parent());

  auto const filter = tray->newFilter("mesh");  // without a key: the tray is its parent, and does not hold it
  assert(!tray->filter());
}

void increments(Fan& fan) {
  Vek::U32 const writes = fan.writeCount();
  assert(fan.stallsInc(2) == 2);  // adds, and gives the sum
  assert(fan.writeCount() == writes);
}

void ranges(Fan& fan) {
  fan.rangeIs(SpeedRange{800, 99999});  // stored as it is, though the schema says max = 20000
  try {
    fan.rangeIs(Vek::valueFromText<SpeedRange>("Value('Chassis::SpeedRange', ** {'lowest': 800, 'highest': 99999})"));
    assert(false);
  } catch (Vek::RangeException const& refused) {
    assert(refused.message() == "SpeedRange::highest < 0 or > 20000 not allowed");
  }
}

void whoOwnsWhat(Vek::Ptr<FanTray> const& tray) {
  Vek::Ptr<Fan> const fan = tray->fansIs("spare");
  SpeedRange const copy = fan->range();       // to keep
  SpeedRange const& borrowed = fan->range();  // good until the attribute is set again, or the fan goes
  fan->rangeIs(SpeedRange{1000, 9000});
  assert(copy != fan->range() && borrowed == fan->range());

  assert(tray->fansDel("spare") == fan);  // out of the tray, and alive as long as somebody holds it
  assert(!fan->parent() && fan->speed() == 0);
}

void walks(Vek::Ptr<FanTray> const& tray) {
  // Values and children read alike: key() and value(), which for a child is the child itself.
  for (auto it = tray->temperaturesIteratorConst(); it; ++it) {
    std::cout << "sensor " << it->key() << ": " << it->value() << " degrees\n";
  }
  for (auto it = tray->fansIteratorConst(); it; ++it) {
    std::cout << "fan " << it->key() << ": " << it->value().speed() << " rpm\n";
  }

  // What is walked over may change meanwhile, through the iterator or by key.
  for (auto it = tray->temperaturesIterator(); it; ++it) {
    if (it->value() > 90) tray->temperaturesDel(it);  // the iterator keeps its place: ++ goes on behind it
    if (it->key() == 1) tray->temperaturesIs(8, 95);  // further on: this walk comes there
  }
  assert(tray->temperaturesCount() == 1 && tray->temperatures(8) == 0);
}

// Spins up the fans when a sensor gets hot.
class Guard : public FanTray::Notifiee {
 public:
  void onTemperatures(Vek::U32 sensor) override {
    if (notifier()->temperatures(sensor) < 80) return;  // it may also have gone: then this reads 0
    for (auto it = notifier()->fansIterator(); it; ++it) it->speedIs(12000);
  }
};

void reactors(Vek::Ptr<FanTray> const& tray) {
  Vek::Ptr<Guard> guard = Vek::make<Guard>();  // whoever makes a reactor keeps it: the tray does not
  guard->notifierIs(tray);                     // it holds the tray from now on
  guard->isRegisteredNotifieeIs(true);         // and is called from now on

  tray->temperaturesIs(1, 85);
  assert(tray->fans("left")->speed() == 12000);  // the guard has run before the setter returned

  guard = nullptr;  // its end takes it off the list
  tray->temperaturesIs(1, 40);
}

}  // namespace

int main() {
  Vek::Ptr<FanTray> const tray = Chassis::fanTrayFactory("tray");
  whatIsNotThere(tray);
  settersAndMakers(tray);
  increments(*tray->fans("left"));
  ranges(*tray->fans("left"));
  whoOwnsWhat(tray);
  reactors(tray);
  walks(tray);
}
