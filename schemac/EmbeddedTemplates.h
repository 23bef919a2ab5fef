// EmbeddedTemplates: the templates as the build puts them into the program. Its source is made at build time.
#pragma once

#include <span>
#include <string_view>

namespace Schemac {

struct EmbeddedTemplate {
  std::string_view name;  ///< "Entity" for templates/Entity.mustache
  std::string_view text;
};

/// All of them, by rising name. They live as long as the program.
[[nodiscard]] std::span<EmbeddedTemplate const> embeddedTemplates() noexcept;

}  // namespace Schemac
