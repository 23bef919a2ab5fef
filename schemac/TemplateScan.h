// TemplateScan: the tags of a template, found and judged before anything is rendered.
//
// Partials are put in place, comments and lines that hold nothing but tags are taken out. What remains is text and
// tags of three kinds, each of which knows the template and line it came from.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace Schemac {

struct TemplateTag {
  enum class Kind { variable, section, invertedSection, sectionEnd, partial, comment };

  Kind kind = Kind::variable;
  std::string name;        ///< "entity.name"
  std::string inTemplate;  ///< where it stands, for complaints
  std::size_t line = 0;
};

/// A stretch of text, or a tag.
struct TemplatePiece {
  bool isTag = false;
  std::string text;  ///< of text: at most one line, with its end
  TemplateTag tag;
};

/// "template 'Entity', line 12"
[[nodiscard]] std::string placeOf(TemplateTag const& tag);

/// The pieces of the template `name`, with all its partials. Sections are closed in the order they were opened, in the
/// template that opened them; every name has a dot. Throws RenderError where that is not so, where a partial is missing
/// or includes itself.
[[nodiscard]] std::vector<TemplatePiece>
scanTemplate(std::string_view name, std::function<std::string_view(std::string_view name)> const& source);

}  // namespace Schemac
