// Render: templates and data to text. The only file that knows mustache.
//
// The language is mustache, made strict:
// - `{{entity.name}}` is a string, taken over as it is: nothing is escaped.
// - `{{#entity.scalars}} ... {{/entity.scalars}}` repeats for each object of a list, or stands if a flag is set;
//   `{{^entity.scalars}} ... {{/entity.scalars}}` stands if the list is empty, or the flag not set.
// - `{{> Name}}` is the template `Name`; `{{! ... }}` is a comment. Nothing else is a tag.
// - Every name has a dot: it names a member of an object that the template calls by its own name. Its first part is
//   looked up from the innermost section outwards, the rest in what that gave, and there alone.
// - A name that the data does not have, a string as condition, a list or flag as text, a partial that does not exist
//   and a tag that is no tag end the rendering with a RenderError.
// - A line that holds tags of sections, partials or comments and nothing else leaves no line behind.
#pragma once

#include "schemac/Data.h"

#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace Schemac {

/// A fault of a template, or data that does not fit it: "template 'Entity', line 12: ...".
class RenderError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Gives the text of a template by name, alive while rendering; throws std::out_of_range for an unknown one.
using TemplateSource = std::function<std::string_view(std::string_view name)>;

/// The template `name` filled with `data`, an object. Throws RenderError. `source` is embeddedTemplate in the program.
[[nodiscard]] std::string render(std::string_view name, Data const& data, TemplateSource const& source);

}  // namespace Schemac
