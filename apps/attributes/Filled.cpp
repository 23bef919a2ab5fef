#include "apps/attributes/Filled.h"

#include <algorithm>

namespace Apps::Attributes {

Filled::Filled(std::vector<std::string> const& paths) {
  for (std::string const& path : paths) add(path);
}

Filled const& Filled::everything() {
  static Filled const everything{"", true};
  return everything;
}

Filled const& Filled::at(std::string_view name) const {
  static Filled const nothing{"", false};
  if (isAll_) return everything();
  auto const part = std::find_if(parts_.begin(), parts_.end(), [name](Filled const& one) { return one.name_ == name; });
  return part == parts_.end() ? nothing : *part;
}

void Filled::add(std::string_view path) {
  if (isAll_) return;
  if (path.empty()) {
    isAll_ = true;
    parts_.clear();
    return;
  }
  std::size_t const length = std::min(path.find('.'), path.size());
  std::string_view const name = path.substr(0, length);
  auto part = std::find_if(parts_.begin(), parts_.end(), [name](Filled const& one) { return one.name_ == name; });
  if (part == parts_.end()) part = parts_.insert(part, Filled{name, false});
  part->add(path.substr(std::min(length + 1, path.size())));
}

}  // namespace Apps::Attributes
