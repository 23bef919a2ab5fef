// The fixture of tests of paths and of the commands on them: the roots of a host, in a directory of their own.
#pragma once

#include "apps/attributes/Commands.h"
#include "apps/attributes/Misfit.h"
#include "apps/show/Roots.h"
#include "tests/core/LeakCheck.h"

#include <gmock/gmock.h>

#include <string>

namespace Apps::Attributes {

class AttributeTest : public LeakCheck {
 protected:
  AttributeTest() {
    roots_.forEach([this](Vek::Ptr<Vek::Entity> const& root) { directory_->entryIs(root); });
  }

  // What a command that must be refused says.
  template <class Command>
  static std::string refusal(Command const& command) {
    try {
      static_cast<void>(command());
    } catch (Misfit const& misfit) {
      return misfit.what();
    }
    return "accepted";
  }

  Show::Roots const roots_;
  Vek::Ptr<Vek::Dir> const directory_ = Vek::make<Vek::Dir>();
};

}  // namespace Apps::Attributes
