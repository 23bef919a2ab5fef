#include "schemac/View.h"

#include "schemac/Literal.h"
#include "schemac/Names.h"
#include "schemac/Types.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

namespace Schemac {

namespace {

bool stands(Attribute const& attribute) {
  switch (attribute.shape) {
    case Shape::scalar:
    case Shape::text:
    case Shape::constant:
    case Shape::fixed: return true;
    default: return false;
  }
}

bool stands(Type const& type) { return !type.isEntity() || !type.factory.empty(); }

// How a value is handed over where it is kept: strings by value, to be moved; wide records by reference.
std::string keptParameter(AttributeType const& type) {
  bool const byReference = type.byReference && !type.isInteger() && type.kind != AttributeType::Kind::seconds;
  return byReference ? type.cpp + " const&" : type.cpp;
}

// How an accessor gives a value: by reference where a copy is not free; good until the next change.
std::string accessorResult(AttributeType const& type) {
  return type.kind == AttributeType::Kind::text ? type.cpp + " const&" : keptParameter(type);
}

std::string initializer(Attribute const& attribute, AttributeType const& type) {
  if (attribute.defaultValue) return " = " + cppLiteral(*attribute.defaultValue);
  return type.defaultLiteral.empty() ? "" : " = " + type.defaultLiteral;
}

std::string moved(AttributeType const& type, std::string const& name) {
  return type.kind == AttributeType::Kind::text ? fmt::format("std::move({})", name) : name;
}

Data attributeView(Attribute const& a, Types const& types) {
  AttributeType const& type = types.at(a.type);
  Data view = Data::object();
  view.set("number", std::to_string(a.number))
      .set("name", a.name)
      .set("doc", a.doc)
      .set("type", type.cpp)
      .set("result", accessorResult(type))
      .set("parameter", type.parameter())
      .set("kept", keptParameter(type))
      .set("moved", moved(type, "value"))
      .set("field", fieldName(a.name))
      .set("initializer", initializer(a, type))
      .set("setter", setterName(a.name))
      .set("incrementer", incrementerName(a.name))
      .set("slot", slotName(a.name))
      .set("constant", a.constant ? cppLiteral(*a.constant) : std::string())
      .set("min", std::to_string(a.min.value_or(0)))
      .set("max", std::to_string(a.max.value_or(type.max)))
      .set("isScalar", a.shape == Shape::scalar || a.shape == Shape::text)
      .set("isConstant", a.shape == Shape::constant)
      .set("isFixed", a.shape == Shape::fixed)
      .set("isStored", a.shape != Shape::constant)
      .set("hasIncrementer", a.increment)
      .set("hasLimits", a.min.has_value() || a.max.has_value());
  return view;
}

std::vector<Attribute> standing(Type const& type) {
  std::vector<Attribute> attributes;
  std::copy_if(type.attributes.begin(), type.attributes.end(), std::back_inserter(attributes),
               [](Attribute const& a) { return stands(a); });
  return attributes;
}

Data typeView(File const& file, Type const& type, Types const& types) {
  std::vector<Attribute> const attributes = standing(type);
  Data list = Data::list();
  std::vector<std::string> names;
  std::vector<std::string> parameters;
  std::vector<std::string> initializers;
  for (Attribute const& a : attributes) {
    list.add(Data::object().set("attr", attributeView(a, types)));
    names.push_back(a.name);
    if (type.isEntity() && a.shape != Shape::fixed) continue;
    AttributeType const& attributeType = types.at(a.type);
    parameters.push_back(keptParameter(attributeType) + " " + a.name);
    initializers.push_back(fmt::format("{}({})", fieldName(a.name), moved(attributeType, a.name)));
  }
  bool const alone = parameters.size() == 1;
  if (type.isEntity()) {
    parameters.insert(parameters.begin(), "Vek::Name name");
    initializers.insert(initializers.begin(), "Vek::Entity(std::move(name))");
  }
  Data view = Data::object();
  view.set("name", type.name)
      .set("fullName", fullName(file, type))
      .set("doc", type.doc)
      .set("isBare", type.bare)
      .set("bare", type.bare ? "true" : "false")
      .set("explicit", alone ? "explicit " : "")
      .set("factory", type.factory)
      .set("parameters", fmt::format("{}", fmt::join(parameters, ", ")))
      .set("initializers", fmt::format("{}", fmt::join(initializers, ", ")))
      .set("attributeList", fmt::format("{}", fmt::join(names, ", ")))
      .set("attributes", std::move(list));
  if (!type.isEntity()) {
    bool const byReference = types.at(type.name).byReference;
    view.set("parameter", byReference ? type.name + " const&" : type.name);
  }
  return view;
}

// The arguments of a template, one a line: what ends the last line ends the list.
Data argumentList(std::vector<Type const*> const& types) {
  Data list = Data::list();
  for (Type const* type : types) {
    list.add(Data::object().set(
        "type", Data::object().set("name", type->name).set("end", type == types.back() ? ">;" : ",")));
  }
  return list;
}

Data includesOf(std::vector<Type const*> const& standingTypes, Types const& types) {
  std::set<std::string> headers = {"core/String8.h", "platform/vek/VekType.h"};
  for (Type const* type : standingTypes) {
    if (type->isEntity()) headers.insert({"core/ListRaw.h", "frame/EntityFrame.h", "platform/vek/Entity.h"});
    for (Attribute const& a : standing(*type)) headers.insert(types.at(a.type).header);
  }
  headers.erase("");
  Data list = Data::list();
  for (std::string const& header : headers) list.add(Data::object().set("include", Data::object().set("path", header)));
  return list;
}

}  // namespace

Data viewOf(File const& file, std::string_view includePrefix) {
  Types const types(file);
  std::vector<Type const*> defined;
  for (Type const& type : file.types) {
    if (stands(type)) defined.push_back(&type);
  }
  std::vector<Type const*> alphabetical = defined;
  std::sort(alphabetical.begin(), alphabetical.end(), [](Type const* a, Type const* b) { return a->name < b->name; });

  Data views = Data::list();
  bool hasValues = false;
  bool hasEntities = false;
  for (Type const* type : defined) {
    Data item = Data::object();
    item.set("type", Data::object().set("isEntity", type->isEntity()).set("isValue", !type->isEntity()));
    item.set(type->isEntity() ? "entity" : "value", typeView(file, *type, types));
    (type->isEntity() ? hasEntities : hasValues) = true;
    views.add(std::move(item));
  }
  std::vector<std::string> quoted;
  for (std::string const& part : namespaceParts(file.nameSpace)) quoted.push_back(fmt::format("\"{}\"", part));

  Data view = Data::object();
  view.set("source", file.stem + ".toml")
      .set("doc", file.doc)
      .set("header", fmt::format("{}{}{}.h", includePrefix, includePrefix.empty() ? "" : "/", file.stem))
      .set("nameSpace", file.nameSpace)
      .set("nameSpaceParts", fmt::format("{{{}}}", fmt::join(quoted, ", ")))
      .set("initFunction", initFunctionName(file.stem))
      .set("hasDoc", !file.doc.empty())
      .set("hasValues", hasValues)
      .set("hasEntities", hasEntities)
      .set("includes", includesOf(defined, types))
      .set("types", std::move(views))
      .set("defined", argumentList(defined))
      .set("alphabetical", argumentList(alphabetical));
  return Data::object().set("file", std::move(view));
}

}  // namespace Schemac
