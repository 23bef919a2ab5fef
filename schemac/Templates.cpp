#include "schemac/Templates.h"

#include "schemac/EmbeddedTemplates.h"

#include <fmt/format.h>

#include <stdexcept>

namespace Schemac {

std::string_view embeddedTemplate(std::string_view name) {
  for (EmbeddedTemplate const& t : embeddedTemplates()) {
    if (t.name == name) return t.text;
  }
  throw std::out_of_range(fmt::format("there is no template '{}'", name));
}

}  // namespace Schemac
