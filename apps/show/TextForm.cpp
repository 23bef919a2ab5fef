#include "apps/show/TextForm.h"

#include <fmt/format.h>

#include <iterator>

namespace Apps::Show {

std::string textForm(std::vector<Figure> const& figures) {
  std::string text;
  for (Figure const& figure : figures) {
    fmt::format_to(std::back_inserter(text), "{}.{} = {}\n", figure.entity, figure.attribute, figure.text);
  }
  return text;
}

}  // namespace Apps::Show
