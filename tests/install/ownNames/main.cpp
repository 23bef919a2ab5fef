#include "core/Ptr.h"
#include "schema/Status.h"
#include "text/Text.h"

#ifdef WITH_FAN
#include "OwnNames/Fan.h"
#endif
#include <dornl3/core/Ptr.h>
#include <dornl3/schema/Status.h>

#include <iostream>

int main() {
  auto const status = Hardware::DornL3Unicast::statusFactory("status");
  status->numVrfsIs(3);
#ifdef WITH_FAN
  status->numVrfsIs(Chassis::fanTrayFactory("tray")->fansCount() + 3);
#endif
  std::cout << ownPtr << ", " << ownStatus << ", " << ownText << ", " << status->numVrfs() << " VRFs\n";
}
