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

// How a value is handed over where it is kept: strings by value, to be moved; wide records by reference.
std::string keptParameter(AttributeType const& type) {
  bool const byReference = type.byReference && !type.isInteger() && type.kind != AttributeType::Kind::seconds;
  return byReference ? type.cpp + " const&" : type.cpp;
}

// How an accessor gives a value: by reference where a copy is not free; good until the next change.
std::string accessorResult(AttributeType const& type) {
  return type.kind == AttributeType::Kind::text ? type.cpp + " const&" : keptParameter(type);
}

// A string that an integer is given holds a number too great for TOML.
std::string expression(Literal const& literal, AttributeType const& type) {
  auto const* const digits = std::get_if<std::string>(&literal);
  return digits != nullptr && type.isInteger() ? *digits + 'u' : cppLiteral(literal);
}

std::string initializer(Attribute const& attribute, AttributeType const& type) {
  if (attribute.defaultValue) return " = " + expression(*attribute.defaultValue, type);
  return type.defaultLiteral.empty() ? "" : " = " + type.defaultLiteral;
}

std::string moved(AttributeType const& type, std::string const& name) {
  return type.kind == AttributeType::Kind::text ? fmt::format("std::move({})", name) : name;
}

// The kinds of attribute that templates tell apart, from the shape alone.
struct Form {
  explicit Form(Attribute const& a)
      : field(a.shape == Shape::scalar || a.shape == Shape::text || a.shape == Shape::fixed),
        scalar(a.shape == Shape::scalar || a.shape == Shape::text),
        ordered(a.shape == Shape::ordered),
        collection(ordered || a.shape == Shape::hashed),
        child(a.shape == Shape::child),
        children(a.shape == Shape::childCollection) {}

  bool field;  // a value of its own, read as such
  bool scalar;
  bool ordered;
  bool collection;
  bool child;
  bool children;
};

std::string keyOf(Attribute const& a, Types const& types) {
  std::string const declared = keyType(a);
  return declared.empty() ? std::string() : types.at(declared).cpp;
}

std::string descriptor(std::string const& owner, Attribute const& a, Types const& types) {
  std::string const type = a.child.empty() ? types.at(a.type).cpp : a.child;
  std::string const key = keyOf(a, types);
  switch (a.shape) {
  case Shape::fixed: return fmt::format("Fixed<{}, {}, {}>", owner, type, a.number);
  case Shape::constant: return fmt::format("Constant<{}, {}, {}>", owner, type, a.number);
  case Shape::ordered:
  case Shape::hashed: return fmt::format("Collection<{}, {}, {}, {}>", owner, key, type, a.number);
  case Shape::child: return fmt::format("SingleChild<{}, {}, {}>", owner, type, a.number);
  case Shape::childCollection: return fmt::format("KeyedChildren<{}, {}, {}, {}>", owner, key, type, a.number);
  default: return fmt::format("Scalar<{}, {}, {}>", owner, type, a.number);
  }
}

// What the entity keeps for the attribute.
std::string storage(Attribute const& a, Types const& types) {
  switch (a.shape) {
  case Shape::ordered:
  case Shape::hashed: return elementClassName(a.name) + "::Map";
  case Shape::child: return fmt::format("Vek::Ptr<{}>", a.child);
  case Shape::childCollection: return a.child + "::Map";
  default: return types.at(a.type).cpp;
  }
}

Data attributeView(std::string const& owner, Attribute const& a, Types const& types) {
  Form const form(a);
  Data view = Data::object();
  view.set("number", std::to_string(a.number))
      .set("name", a.name)
      .set("doc", a.doc)
      .set("child", a.child)
      .set("key", keyOf(a, types))
      .set("keyName", form.children ? a.key : std::string())
      .set("descriptor", descriptor(owner, a, types))
      .set("storage", storage(a, types))
      .set("member", form.collection ? elementClassName(a.name) : a.child)
      .set("map", form.ordered ? "RbTreeMap" : "HashMap")
      .set("elementBase", form.ordered ? "RbElement" : "HashElement")
      .set("order", form.ordered ? "by rising key" : "by the hashes of the keys")
      .set("field", fieldName(a.name))
      .set("setter", setterName(a.name))
      .set("incrementer", incrementerName(a.name))
      .set("remover", removerName(a.name))
      .set("allRemover", allRemoverName(a.name))
      .set("maker", makerName(a.name))
      .set("notifier", notifierName(a.name))
      .set("counter", counterName(a.name))
      .set("iterator", iteratorName(a.name))
      .set("constIterator", constIteratorName(a.name))
      .set("slot", slotName(a.name))
      .set("immediateSlot", immediateSlotName(a.name))
      .set("keySender", keySenderName(a.name))
      .set("walker", walkerName(a.name))
      .set("dirtySetter", dirtySetterName(a.name))
      .set("dirtyRemover", dirtyRemoverName(a.name))
      .set("dirtyMaker", dirtyMakerName(a.name))
      .set("dirtyField", dirtyFieldName(a.name))
      .set("dirtyMember", dirtyMemberName(a.name))
      .set("syncedSetter", syncedSetterName(a.name))
      .set("constant", a.constant ? expression(*a.constant, types.at(a.type)) : std::string())
      .set("isField", form.field)
      .set("isScalar", form.scalar)
      .set("isScalarRecord", form.scalar && a.shape != Shape::text)
      .set("isText", a.shape == Shape::text)
      .set("isLogged", a.shape != Shape::constant && a.shape != Shape::fixed)
      .set("holdsChildren", form.child || form.children)
      .set("textSender", textSenderName(a.name))
      .set("binder", binderName(a.name))
      .set("isConstant", a.shape == Shape::constant)
      .set("isStored", a.shape != Shape::constant)
      .set("isLookupInline", form.ordered || a.key != "U32")
      .set("isCollection", form.collection)
      .set("isChild", form.child)
      .set("isChildren", form.children)
      .set("isKeyed", form.collection || form.children)
      .set("hasSlot", form.scalar || form.child)
      .set("hasIncrementer", a.increment)
      .set("hasLimits", a.min.has_value());
  if (a.child.empty()) {
    AttributeType const& type = types.at(a.type);
    view.set("type", type.cpp)
        .set("result", accessorResult(type))
        .set("parameter", type.parameter())
        .set("kept", keptParameter(type))
        .set("moved", moved(type, "value"))
        .set("initializer", form.collection ? std::string() : initializer(a, type))
        .set("min", std::to_string(a.min.value_or(0)))
        .set("max", std::to_string(a.max.value_or(0)));
  } else {
    view.set("initializer", "");
  }
  return view;
}

std::vector<Attribute> standing(Type const& type) {
  std::vector<Attribute> attributes;
  std::copy_if(type.attributes.begin(), type.attributes.end(), std::back_inserter(attributes),
               [](Attribute const& a) { return !a.retired(); });
  return attributes;
}

void setEntity(Data& view, File const& file, Type const& type, Types const& types) {
  Attribute const* const holder = file.holderOf(type);
  bool const byName = holder != nullptr && holder->key == "name";
  bool const hasChildren = std::any_of(type.attributes.begin(), type.attributes.end(), [](Attribute const& a) {
    return a.shape == Shape::child || a.shape == Shape::childCollection;
  });
  bool const hasCollections = std::any_of(type.attributes.begin(), type.attributes.end(),
                                          [](Attribute const& a) { return Form(a).collection || Form(a).children; });
  bool const hasTransactions = std::any_of(type.attributes.begin(), type.attributes.end(), [](Attribute const& a) {
    Form const form(a);
    return form.collection || form.child || form.children || a.shape == Shape::text;
  });
  view.set("factory", type.factory)
      .set("isRoot", !type.factory.empty())
      .set("typeFrame", type.factory.empty() ? "GenericEntityType" : "GenericRootEntityType")
      .set("hasChildren", hasChildren)
      .set("hasCollections", hasCollections)
      .set("hasTransactions", hasTransactions)
      .set("isMember", holder != nullptr)
      .set("memberKey", holder != nullptr ? keyOf(*holder, types) : std::string())
      .set("memberKeyField", holder == nullptr ? std::string()
                             : byName          ? "name()"
                                               : fieldName(holder->key));
}

Data typeView(File const& file, Type const& type, Types const& types) {
  Data list = Data::list();
  std::vector<std::string> names;
  std::vector<std::string> parameters;
  std::vector<std::string> initializers;
  if (type.isEntity()) {
    parameters.emplace_back("Vek::Name name");
    initializers.emplace_back("Vek::Entity(std::move(name))");
  }
  int logSlot = 0;  // bit 0 is never used
  for (Attribute const& a : standing(type)) {
    bool const isLogged = a.shape != Shape::constant && a.shape != Shape::fixed;
    if (isLogged) ++logSlot;
    list.add(Data::object().set("attr", attributeView(type.name, a, types).set("logSlot", std::to_string(logSlot))));
    names.push_back(a.name);
    if (type.isEntity() && a.shape != Shape::fixed) continue;
    AttributeType const& attributeType = types.at(a.type);
    parameters.push_back(keptParameter(attributeType) + " " + a.name);
    initializers.push_back(fmt::format("{}({})", fieldName(a.name), moved(attributeType, a.name)));
  }
  Data view = Data::object();
  view.set("name", type.name)
      .set("fullName", fullName(file, type))
      .set("doc", type.doc)
      .set("bare", type.bare ? "true" : "false")
      .set("explicit", parameters.size() == 1 ? "explicit " : "")
      .set("parameters", fmt::format("{}", fmt::join(parameters, ", ")))
      .set("initializers", fmt::format("{}", fmt::join(initializers, ", ")))
      .set("attributeList", fmt::format("{}", fmt::join(names, ", ")))
      .set("attributes", std::move(list));
  if (type.isEntity()) {
    setEntity(view, file, type, types);
    view.set("dirtyWords", std::to_string(logSlot / 32 + 1));
  } else {
    view.set("parameter", types.at(type.name).byReference ? type.name + " const&" : type.name);
  }
  return view;
}

// The arguments of a template, one a line: what ends the last line ends the list.
Data argumentList(std::vector<Type const*> const& types) {
  Data list = Data::list();
  for (Type const* type : types) {
    list.add(Data::object().set("type",
                                Data::object().set("name", type->name).set("end", type == types.back() ? ">;" : ",")));
  }
  return list;
}

Data includesOf(File const& file, Types const& types) {
  std::set<std::string> headers = {"dornl3/core/String8.h", "dornl3/platform/vek/VekType.h"};
  for (Type const& type : file.types) {
    if (type.isEntity())
      headers.insert({"dornl3/attrlog/FlowOutFrame.h", "dornl3/core/ListRaw.h", "dornl3/frame/EntityFrame.h",
                      "dornl3/platform/attrlog/EntityAdapter.h", "dornl3/platform/vek/GenericIfEntity.h"});
    if (!type.isEntity()) headers.insert({"dornl3/generic/ValueGeneric.h", "dornl3/platform/attrlog/In.h"});
    for (Attribute const& a : standing(type)) {
      Form const form(a);
      if (form.collection)
        headers.insert(
            {form.ordered ? "dornl3/core/RbTreeMap.h" : "dornl3/core/HashMap.h", "dornl3/frame/CollectionFrame.h"});
      if (form.child || form.children) headers.insert("dornl3/frame/ChildFrame.h");
      if (form.children) headers.insert("dornl3/core/HashMap.h");
      if (!a.type.empty()) headers.insert(types.at(a.type).header);
      if (std::string const key = keyType(a); !key.empty()) headers.insert(types.at(key).header);
    }
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
  for (Type const& type : file.types) defined.push_back(&type);
  std::vector<Type const*> alphabetical = defined;
  std::sort(alphabetical.begin(), alphabetical.end(), [](Type const* a, Type const* b) { return a->name < b->name; });

  Data views = Data::list();
  for (Type const* type : defined) {
    Data item = Data::object();
    item.set("type", Data::object().set("isEntity", type->isEntity()).set("isValue", !type->isEntity()));
    item.set(type->isEntity() ? "entity" : "value", typeView(file, *type, types));
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
      .set("includes", includesOf(file, types))
      .set("types", std::move(views))
      .set("defined", argumentList(defined))
      .set("alphabetical", argumentList(alphabetical));
  return Data::object().set("file", std::move(view));
}

}  // namespace Schemac
