// Cycle: whether a type would come to hold itself, by way of the values and children that its attributes name.
#pragma once

#include "schemac/Schema.h"

#include <set>
#include <string>
#include <vector>

namespace Schemac {

/// Finds the ways that lead back to one type. Keeps references to both arguments.
class WayBack {
 public:
  WayBack(File const& file, Type const& owner) : file_(file), owner_(owner) {}

  /// "Agent holds Fap holds Agent" for an attribute of the owner that names `held`; empty where `held` does not come
  /// back to the owner.
  [[nodiscard]] std::string from(Type const& held);

 private:
  bool leads(Type const& from);

  File const& file_;
  Type const& owner_;
  std::set<Type const*> seen_;    // do not lead back, or are being looked at
  std::vector<std::string> way_;  // from the owner on
};

}  // namespace Schemac
