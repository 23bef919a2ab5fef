#include "schemac/Data.h"

#include <algorithm>
#include <stdexcept>

namespace Schemac {

Data& Data::set(std::string name, Data value) {
  if (kind_ != Kind::object) throw std::logic_error("'" + name + "' is set on data that is no object");
  if (find(name) != nullptr) throw std::logic_error("'" + name + "' is set twice");
  names_.push_back(std::move(name));
  items_.push_back(std::move(value));
  return *this;
}

Data& Data::add(Data item) {
  if (kind_ != Kind::list) throw std::logic_error("an item is added to data that is no list");
  if (item.kind_ != Kind::object)
    throw std::logic_error("a list holds objects: the template calls their members by name");
  items_.push_back(std::move(item));
  return *this;
}

Data const* Data::find(std::string_view name) const noexcept {
  auto const found = std::find(names_.begin(), names_.end(), name);
  return found == names_.end() ? nullptr : &items_[static_cast<std::size_t>(found - names_.begin())];
}

}  // namespace Schemac
