#include "apps/show/TextForm.h"

#include <fmt/format.h>

#include <iterator>

namespace Apps::Show {

std::string textForm(std::vector<Figure> const& figures) {
  std::string text;
  auto const end = std::back_inserter(text);
  for (Figure const& figure : figures) {
    if (auto const* members = std::get_if<std::vector<Member>>(&figure.value)) {
      for (Member const& member : *members) {
        fmt::format_to(end, "{}.{}[{}] = {}\n", figure.entity, figure.attribute, member.key, member.text);
      }
    } else {
      fmt::format_to(end, "{}.{} = {}\n", figure.entity, figure.attribute, figure.text);
    }
  }
  return text;
}

}  // namespace Apps::Show
