#include "schemac/Cycle.h"

#include <fmt/format.h>

namespace Schemac {

std::string WayBack::from(Type const& held) {
  way_ = {owner_.name};
  return leads(held) ? fmt::format("{}", fmt::join(way_, " holds ")) : std::string{};
}

bool WayBack::leads(Type const& from) {
  way_.push_back(from.name);
  if (&from == &owner_) return true;
  if (seen_.insert(&from).second) {
    for (Attribute const& a : from.attributes) {
      Type const* const next = file_.find(a.child.empty() ? a.type : a.child);
      if (next == nullptr || !leads(*next)) continue;
      seen_.erase(&from);
      return true;
    }
  }
  way_.pop_back();
  return false;
}

}  // namespace Schemac
