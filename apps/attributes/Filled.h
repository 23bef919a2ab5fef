// Filled: which attributes somebody fills. The others are at their defaults for good, which read like figures.
// Owner: whoever shows attributes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Apps::Attributes {

class Filled {
 public:
  /// What is at these paths, and all that is in it. Keys do not stand in them: "status.inUseArpEntries",
  /// "status.timingMarkers.lastRouteUpdateTime".
  explicit Filled(std::vector<std::string> const& paths);
  /// Where everything is filled, or it does not matter.
  [[nodiscard]] static Filled const& everything();

  [[nodiscard]] bool isAll() const noexcept { return isAll_; }
  [[nodiscard]] bool isNone() const noexcept { return !isAll_ && parts_.empty(); }
  /// Of what has that name in here: a root, an attribute, a field. Holds as long as this.
  [[nodiscard]] Filled const& at(std::string_view name) const;

 private:
  Filled(std::string_view name, bool isAll) : name_{name}, isAll_{isAll} {}
  void add(std::string_view path);

  std::string name_;
  bool isAll_ = false;
  std::vector<Filled> parts_;  // of which something is filled; none where all is
};

}  // namespace Apps::Attributes
