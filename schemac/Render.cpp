#include "schemac/Render.h"

#include "schemac/TemplateScan.h"

#include <fmt/format.h>
#include <kainjow/mustache.hpp>

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace Schemac {

namespace {

namespace Mustache = kainjow::mustache;
using Kind = TemplateTag::Kind;

// mustache drops a line in which a section left nothing but blanks, and keeps an empty one where a section did not
// stand at all. The scan has settled which lines stay; so mustache is shown no line at all.
constexpr char lineEnd = '\x1e';

Mustache::data convert(Data const& data) {
  switch (data.kind()) {
  case Data::Kind::string: return Mustache::data(data.text());
  case Data::Kind::flag: return Mustache::data(data.flag());
  case Data::Kind::list: {
    Mustache::data list(Mustache::data::type::list);
    for (Data const& item : data.items()) list.push_back(convert(item));
    return list;
  }
  case Data::Kind::object: break;
  }
  Mustache::data object(Mustache::data::type::object);
  for (std::size_t i = 0; i < data.names().size(); ++i) object.set(data.names()[i], convert(data.items()[i]));
  return object;
}

std::string_view kindOf(Mustache::data const& data) {
  return data.is_string() ? "a string" : data.is_bool() ? "a flag" : data.is_list() ? "a list" : "an object";
}

// Finds what a tag names, or ends the rendering. mustache calls the tags by their places in `tags`: so each lookup
// knows which tag asks, what it wants, and where it stands.
class StrictContext : public Mustache::basic_context<std::string> {
 public:
  StrictContext(Mustache::data const& root, std::vector<TemplateTag> const& tags) : tags_(tags), sections_{&root} {}

  void push(Mustache::data const* data) override { sections_.push_back(data); }
  void pop() override { sections_.pop_back(); }

  [[nodiscard]] Mustache::data const* get(std::string const& place) const override {
    TemplateTag const& tag = tags_.at(std::stoul(place));
    Mustache::data const& found = resolve(tag);
    bool const fits = tag.kind == Kind::variable ? found.is_string() : found.is_list() || found.is_bool();
    if (!fits) {
      fail(tag, fmt::format("'{}' is {}, and {} is wanted", tag.name, kindOf(found),
                            tag.kind == Kind::variable ? "a string" : "a list or a flag"));
    }
    return &found;
  }

  // The scan leaves no partial.
  [[nodiscard]] Mustache::data const* get_partial(std::string const&) const override { return nullptr; }

 private:
  [[noreturn]] static void fail(TemplateTag const& tag, std::string const& what) {
    throw RenderError(fmt::format("{}: {}", placeOf(tag), what));
  }

  [[nodiscard]] Mustache::data const& resolve(TemplateTag const& tag) const {
    std::size_t dot = tag.name.find('.');
    std::string part = tag.name.substr(0, dot);
    auto const owner =
        std::find_if(sections_.rbegin(), sections_.rend(), [&](auto const* s) { return s->get(part) != nullptr; });
    if (owner == sections_.rend()) fail(tag, fmt::format("'{}' is unknown: there is no '{}' here", tag.name, part));
    Mustache::data const* found = (*owner)->get(part);
    while (dot != std::string::npos) {
      std::size_t const begin = dot + 1;
      dot = tag.name.find('.', begin);
      part = tag.name.substr(begin, dot == std::string::npos ? dot : dot - begin);
      found = found->get(part);
      if (found == nullptr) {
        fail(tag, fmt::format("'{}' is unknown: '{}' has no '{}'", tag.name, tag.name.substr(0, begin - 1), part));
      }
    }
    return *found;
  }

  std::vector<TemplateTag> const& tags_;
  std::vector<Mustache::data const*> sections_;
};

std::string_view signOf(Kind kind) {
  switch (kind) {
  case Kind::section: return "#";
  case Kind::invertedSection: return "^";
  case Kind::sectionEnd: return "/";
  default: return "";
  }
}

// The template as mustache gets it: names replaced by the places of their tags in `tags`.
std::string numbered(std::vector<TemplatePiece> const& pieces, std::vector<TemplateTag>& tags) {
  std::string text;
  std::vector<std::size_t> open;
  for (TemplatePiece const& piece : pieces) {
    if (!piece.isTag) {
      text += piece.text;
      continue;
    }
    std::size_t place = tags.size();
    if (piece.tag.kind == Kind::sectionEnd) {
      place = open.back();
      open.pop_back();
    } else {
      if (piece.tag.kind != Kind::variable) open.push_back(place);
      tags.push_back(piece.tag);
    }
    text += fmt::format("{{{{{}{}}}}}", signOf(piece.tag.kind), place);
  }
  std::replace(text.begin(), text.end(), '\n', lineEnd);
  return text;
}

}  // namespace

std::string render(std::string_view name, Data const& data, TemplateSource const& source) {
  std::vector<TemplateTag> tags;
  std::string const text = numbered(scanTemplate(name, source), tags);
  Mustache::mustache engine(text);
  engine.set_custom_escape([](std::string const& s) { return s; });
  if (!engine.is_valid()) throw RenderError(fmt::format("template '{}': {}", name, engine.error_message()));
  Mustache::data const root = convert(data);
  StrictContext context(root, tags);
  std::string out = engine.render(context);
  std::replace(out.begin(), out.end(), lineEnd, '\n');
  return out;
}

}  // namespace Schemac
