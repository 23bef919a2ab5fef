#include "schemac/Docs.h"

#include "schemac/Literal.h"
#include "schemac/Names.h"
#include "schemac/Shapes.h"

#include <fmt/format.h>

#include <vector>

namespace Schemac {

namespace {

std::string code(std::string_view text) { return text.empty() ? std::string{} : fmt::format("`{}`", text); }

// Text in a cell: what Markdown would take for the cell's end or for markup stays text.
std::string cell(std::string_view text) {
  std::string out;
  for (char const c : text) {
    if (c == '|' || c == '\\' || c == '`' || c == '*' || c == '_' || c == '<' || c == '[') out += '\\';
    out += c;
  }
  return out;
}

std::string typeOf(Attribute const& a) { return code(a.child.empty() ? a.type : a.child); }

std::string formOf(Attribute const& a) {
  switch (a.shape) {
  case Shape::ordered: return fmt::format("ordered by {}", code(a.key));
  case Shape::hashed: return fmt::format("hashed by {}", code(a.key));
  case Shape::childCollection: return fmt::format("children, hashed by their {}", code(a.key));
  case Shape::child: return "child";
  case Shape::fixed: return "given to the constructor";
  case Shape::constant: return fmt::format("constant {}", code(schemaLiteral(*a.constant)));
  case Shape::retired: return "retired";
  case Shape::scalar:
  case Shape::text: break;
  }
  std::vector<std::string> parts;
  if (a.min && a.max) parts.push_back(fmt::format("{} to {}", *a.min, *a.max));
  if (a.defaultValue) parts.push_back(fmt::format("default {}", code(schemaLiteral(*a.defaultValue))));
  if (a.increment) parts.emplace_back("incrementer");
  return fmt::format("{}", fmt::join(parts, ", "));
}

std::string headingOf(Type const& type) {
  std::string form = type.isEntity() ? "Entity" : type.bare ? "Value, written as its attribute" : "Value";
  if (!type.factory.empty()) form += fmt::format(", made by {}", code(type.factory));
  return fmt::format("## {}\n\n{}. {}\n\n", type.name, form, cell(type.doc));
}

}  // namespace

std::string docsOf(File const& file) {
  std::string out = fmt::format("# {}\n\n", file.stem);
  if (!file.doc.empty()) out += cell(file.doc) + "\n\n";
  out += fmt::format("All names are under `{}`.\n", file.nameSpace);
  for (Type const& type : file.types) {
    out += '\n' + headingOf(type);
    out += "| number | attribute | type | form | what |\n|---:|---|---|---|---|\n";
    for (Attribute const& a : type.attributes) {
      out += fmt::format("| {} | {} | {} | {} | {} |\n", a.number, code(a.name), typeOf(a), formOf(a), cell(a.doc));
    }
  }
  return out;
}

std::string docRowsOf(File const& file) {
  std::string rows;
  for (Type const& type : file.types) {
    std::string const owner = cppLiteral(fullName(file, type));
    rows += fmt::format("{{{}, \"\", {}}},\n", owner, cppLiteral(type.doc));
    for (Attribute const& a : type.attributes) {
      if (!a.retired()) rows += fmt::format("{{{}, {}, {}}},\n", owner, cppLiteral(a.name), cppLiteral(a.doc));
    }
  }
  return rows;
}

}  // namespace Schemac
