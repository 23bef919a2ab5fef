// Uses the types of Fan.toml, which the build stamps; see CMakeLists.txt.
#include "chassis/Fan.h"

#include <iostream>

int main() {
  Vek::Ptr<Chassis::Fan> const fan = Chassis::fanFactory("left");
  fan->speedIs(4200);
  fan->rangeIs(Chassis::SpeedRange{800, 9000});
  fan->stallsInc(1);
  std::cout << fan->name().view() << ": " << fan->speed() << " rpm, " << fan->stalls() << " stall, " << fan->range()
            << '\n';
}
