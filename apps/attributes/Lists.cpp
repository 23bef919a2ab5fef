// The commands that tell what there is: ls and types.
#include "apps/Legend.h"
#include "apps/attributes/Commands.h"
#include "apps/attributes/Docs.h"
#include "apps/attributes/Misfit.h"
#include "dornl3/core/Nearest.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace Apps::Attributes {

namespace {

using Json = nlohmann::ordered_json;
using Vek::VekType;

// Rows of equal shape; the last column is not padded.
class Table {
 public:
  explicit Table(std::vector<std::string> columns) : columns_{std::move(columns)} {}

  void row(std::vector<Json> cells) { rows_.push_back(std::move(cells)); }

  [[nodiscard]] std::string print(Form form) const {
    if (form == Form::json) return json();
    std::string const lines = text();
    return lines + legendOf(lines);
  }

 private:
  static std::string textOf(Json const& cell) { return cell.is_string() ? cell.get<std::string>() : cell.dump(); }

  [[nodiscard]] std::string text() const {
    std::vector<std::size_t> widths(columns_.size());
    for (auto const& cells : rows_) {
      for (std::size_t i = 0; i < cells.size(); ++i) widths[i] = std::max(widths[i], textOf(cells[i]).size());
    }
    std::string lines;
    for (auto const& cells : rows_) {
      std::string line;
      for (std::size_t i = 0; i < cells.size(); ++i) {
        if (widths[i] != 0) line += fmt::format("{:<{}}  ", textOf(cells[i]), widths[i]);
      }
      line.erase(line.find_last_not_of(' ') + 1);
      lines += line + '\n';
    }
    return lines;
  }

  // An array of objects, in which what is empty does not stand.
  [[nodiscard]] std::string json() const {
    Json all = Json::array();
    for (auto const& cells : rows_) {
      Json object = Json::object();
      for (std::size_t i = 0; i < cells.size(); ++i) {
        if (!textOf(cells[i]).empty()) object[columns_[i]] = cells[i];
      }
      all.push_back(object);
    }
    return all.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
  }

  std::vector<std::string> columns_;
  std::vector<std::vector<Json>> rows_;
};

std::string fullName(VekType const* type) {
  return type == nullptr ? std::string{} : std::string{type->fullName().view()};
}

// As 'types' takes it, for people: the last part where only one type has it.
std::string shortName(VekType const* type) {
  if (type == nullptr) return {};
  std::vector<VekType*> const types = VekType::registered();
  auto const namesakes =
      std::count_if(types.begin(), types.end(), [type](VekType const* other) { return other->name() == type->name(); });
  return namesakes == 1 ? std::string{type->name().view()} : fullName(type);
}

std::string nameOf(VekType const* type, Form form) { return form == Form::json ? fullName(type) : shortName(type); }

std::string_view describe(Kind kind) {
  switch (kind) {
  case Kind::readOnly: return "read only";
  case Kind::scalar: return "value";
  case Kind::elements: return "values by key";
  case Kind::child: return "child";
  case Kind::children: return "children by key";
  }
  return "";
}

std::string_view describe(VekType const& type) { return type.isEntity() ? "entity" : "value"; }

Answer listRoots(Vek::Dir const& roots, Filled const& filled, Form form) {
  Table table{{"name", "type", "doc"}};
  std::size_t leftOut = 0;
  for (Vek::Name const& name : roots.names()) {
    if (filled.at(name.view()).isNone()) {
      ++leftOut;
    } else {
      VekType const* const type = roots.entity(name)->fwkType();
      table.row({std::string{name.view()}, nameOf(type, form), std::string{docOf(*type)}});
    }
  }
  Answer answer{table.print(form)};
  if (leftOut != 0) {
    answer.notes.push_back(fmt::format("{} root entities are not filled here; --all lists them.", leftOut));
  }
  return answer;
}

std::string listKeys(Place const& collection, Form form) {
  std::string lines;
  Json keys = Json::array();
  forEachMember(collection, [&](Place const& member) {
    lines += keyText(*member.key) + '\n';
    keys.push_back(keyName(*member.key));
  });
  return form == Form::text ? lines : keys.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

std::string listAttributes(VekType const& type, Filled const& filled, Form form, std::size_t& leftOut) {
  Table table{{"name", "type", "key", "kind", "doc"}};
  for (auto const& attr : type.attributes()) {
    if (!isOwn(type, *attr)) continue;
    if (filled.at(attr->name().view()).isNone()) {
      ++leftOut;
      continue;
    }
    std::string const key = nameOf(attr->keyType(), form);
    std::string const name{attr->name().view()};
    std::string const doc{docOf(type, *attr)};
    if (form == Form::json) {
      table.row({name, fullName(attr->valueType()), key, std::string{describe(kindOf(type, *attr))}, doc});
    } else {
      table.row({key.empty() ? name : fmt::format("{}[{}]", name, key), shortName(attr->valueType()), "", "", doc});
    }
  }
  return table.print(form);
}

std::string listTypes(Form form) {
  Table table{{"name", "kind", "doc"}};
  for (VekType const* type : VekType::registered()) {
    table.row({fullName(type), std::string{describe(*type)}, std::string{docOf(*type)}});
  }
  return table.print(form);
}

std::string listAttributesWhole(VekType const& type, Form form) {
  Table table{{"number", "name", "type", "key", "kind", "doc"}};
  for (auto const& attr : type.attributes()) {
    table.row({attr->id(), std::string{attr->name().view()}, nameOf(attr->valueType(), form),
               nameOf(attr->keyType(), form), std::string{describe(kindOf(type, *attr))},
               std::string{docOf(type, *attr)}});
  }
  return table.print(form);
}

VekType const& typeNamed(std::string const& name) {
  if (VekType const* const type = VekType::find(name)) return *type;
  std::vector<VekType*> found = VekType::registered();
  std::vector<std::string_view> names;
  for (VekType const* type : found) names.insert(names.end(), {type->name().view(), type->fullName().view()});
  found.erase(std::remove_if(found.begin(), found.end(), [&](VekType* t) { return t->name().view() != name; }),
              found.end());
  if (found.size() == 1) return *found.front();
  if (found.empty()) {
    std::string_view const near = Vek::nearestWord(name, names);
    throw Misfit(fmt::format("There is no type {}{} 'dornl3 types' lists all.", inQuotes(name),
                             near.empty() ? "." : fmt::format("; did you mean '{}'?", near)));
  }
  std::string all;
  for (VekType const* type : found) all += (all.empty() ? "" : ", ") + fullName(type);
  throw Misfit(fmt::format("Several types are named {}: give the full name, one of {}.", inQuotes(name), all));
}

}  // namespace

Answer ls(Vek::Dir const& roots, std::optional<std::string> const& path, Filled const& filled, Form form) {
  if (!path) return listRoots(roots, filled, form);
  Selection selection = select(roots, {*path}, filled);
  Selected const& selected = selection.places.front();
  Place const place = resolve(selected.path);
  if (place.isCollection()) return {listKeys(place, form), notesOf(selection)};
  VekType const& type = place.attr == nullptr ? *place.holder->type() : *place.attr->valueType();
  if (type.attributes().empty()) {
    throw Misfit(fmt::format("{} is a {}, which has nothing in it to list.", place.path, type.fullName().view()));
  }
  selection.leftOut = 0;
  std::string list = listAttributes(type, *selected.filled, form, selection.leftOut);
  return {std::move(list), notesOf(selection)};
}

std::string types(std::optional<std::string> const& name, Form form) {
  return name ? listAttributesWhole(typeNamed(*name), form) : listTypes(form);
}

}  // namespace Apps::Attributes
