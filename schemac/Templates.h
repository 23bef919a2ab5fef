// Templates: the templates that the program carries, by name.
#pragma once

#include <string_view>

namespace Schemac {

/// Text of the template `name`: "Entity" for templates/Entity.mustache. Throws std::out_of_range for an unknown one.
[[nodiscard]] std::string_view embeddedTemplate(std::string_view name);

}  // namespace Schemac
