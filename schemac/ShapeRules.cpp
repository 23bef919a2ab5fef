#include "schemac/Check.h"
#include "schemac/Cycle.h"
#include "schemac/Literal.h"
#include "schemac/Rules.h"
#include "schemac/Shapes.h"
#include "schemac/Suggest.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace Schemac {

namespace {

using Kind = AttributeType::Kind;

// The rules of one attribute. Each function is silent about what another one complains about.
class AttributeRules {
 public:
  AttributeRules(Subject const& subject, Type const& owner, Attribute const& attribute, WayBack& back)
      : subject_(subject), owner_(owner), a_(attribute), back_(back) {}

  void check() const {
    checkKeys();
    if (!owner_.isEntity() && a_.shape != Shape::scalar && a_.shape != Shape::text && !a_.retired()) {
      complain(a_.at, fmt::format("a value has scalars and texts, and never {}; make it an attribute of an entity",
                                  describe(a_.shape)));
      return;
    }
    AttributeType const* const type = a_.has("type") ? valueType() : nullptr;
    switch (a_.shape) {
    case Shape::scalar:
      if (type != nullptr) checkScalar(*type);
      break;
    case Shape::text: checkText(); break;
    case Shape::constant:
      if (type != nullptr) checkLiteral("constant", a_.constant, *type);
      break;
    case Shape::fixed:
      if (type != nullptr && type->kind != Kind::text) {
        complain(a_.where("type"), "constructor arguments are strings; write type = \"Vek::String\"");
      }
      break;
    case Shape::ordered: checkKey("ordered", orderedKeys()); break;
    case Shape::hashed: checkKey("hashed", hashedKeys()); break;
    case Shape::child:
    case Shape::childCollection: checkChild(); break;
    case Shape::retired: break;
    }
  }

 private:
  void complain(SourcePosition at, std::string text) const { subject_.complain(at, std::move(text)); }

  void checkKeys() const {
    std::vector<std::string_view> const& known = keysOf(a_.shape);
    for (auto const& [key, at] : a_.keys) {
      if (key == "number" || key == "name" || key == "doc") continue;
      if (std::find(known.begin(), known.end(), key) != known.end()) continue;
      if (key == "ordered" && a_.shape == Shape::childCollection) {
        complain(at, "'ordered' does not go with 'child': children are hashed; write hashed = \"name\", or the "
                     "name of their fixed attribute");
        continue;
      }
      complain(at, fmt::format("'{}' does not go with {}; beside number, name and doc it has {}", key,
                               describe(a_.shape), quotedList(known)));
    }
  }

  // The type of the attribute's value, known and defined above, or null after a complaint.
  [[nodiscard]] AttributeType const* valueType() const {
    SourcePosition const at = a_.where("type");
    if (a_.type.empty()) return nullptr;
    if (a_.type == "Vek::Name") {
      complain(at, "an attribute is never of type 'Vek::Name'; write \"Vek::String\" for a text");
      return nullptr;
    }
    if (Type const* const own = subject_.file.find(a_.type)) {
      if (own->isEntity()) {
        complain(at, fmt::format("'{0}' is an entity; write child = \"{0}\" instead of type", a_.type));
        return nullptr;
      }
      if (!isAbove(*own, at)) return nullptr;
    }
    AttributeType const* const type = subject_.types.find(a_.type);
    if (type == nullptr) {
      std::vector<std::string_view> names = attributeTypes();
      addNamesAbove(Type::Kind::value, names);
      complain(at,
               fmt::format("type '{}' is unknown; write one of {}, or define a value type of that name further up{}",
                           a_.type, quotedList(names), didYouMean(a_.type, names)));
    }
    return type;
  }

  void addNamesAbove(Type::Kind kind, std::vector<std::string_view>& names) const {
    for (Type const& t : subject_.file.types) {
      if (t.kind == kind && t.at < owner_.at) names.emplace_back(t.name);
    }
  }

  // Whether `held` is defined above the owner, as all must be that the owner holds.
  [[nodiscard]] bool isAbove(Type const& held, SourcePosition at) const {
    if (held.at < owner_.at) return true;
    if (std::string const cycle = back_.from(held); !cycle.empty()) {
      complain(at, fmt::format("a cycle: {}; a type is made of types above it: drop one of these attributes", cycle));
    } else {
      complain(at, fmt::format("'{}' is defined only in line {}; move it up, in front of '{}'", held.name, held.at.line,
                               owner_.name));
    }
    return false;
  }

  void checkScalar(AttributeType const& type) const {
    if (a_.has("increment") && !(type.isInteger() && owner_.isEntity())) {
      complain(a_.where("increment"), "only integers of entities have an incrementer; drop 'increment'");
    }
    checkRange(type);
    if (a_.has("default")) checkLiteral("default", a_.defaultValue, type);
    if (!a_.min || !a_.max || !type.isInteger() || *a_.min < 0 || *a_.min > *a_.max) return;
    // Without a default the value starts with 0, and a type must not refuse its own default.
    std::optional<std::uint64_t> start = a_.has("default") ? std::nullopt : std::optional<std::uint64_t>{0};
    if (a_.defaultValue) start = unsignedOf(*a_.defaultValue);
    auto const min = static_cast<std::uint64_t>(*a_.min);
    auto const max = static_cast<std::uint64_t>(*a_.max);
    if (!start || (*start >= min && *start <= max)) return;
    complain(a_.where("default"), fmt::format("default {} lies outside the range {} to {}; write default = {}", *start,
                                              min, max, *start < min ? min : max));
  }

  void checkRange(AttributeType const& type) const {
    for (std::string_view const bound : {"min", "max"}) {
      if (!a_.has(bound)) continue;
      SourcePosition const at = a_.where(bound);
      std::optional<std::int64_t> const& value = bound == "min" ? a_.min : a_.max;
      if (owner_.isEntity()) {
        complain(at, fmt::format("entities store every value of a type, so '{}' would promise what nobody checks; put "
                                 "the attribute into a value type",
                                 bound));
      } else if (!type.isInteger()) {
        complain(at, fmt::format("only integers have a range; drop '{}'", bound));
      } else if (value && (*value < 0 || static_cast<std::uint64_t>(*value) > type.max)) {
        complain(at, fmt::format("'{}' is {}, and a {} holds 0 to {}", bound, *value, type.declared, type.max));
      }
    }
    if (owner_.isEntity()) return;
    if (a_.has("min") != a_.has("max")) {
      complain(a_.at, "a range has two ends; write both 'min' and 'max'");
    } else if (a_.min && a_.max && *a_.min > *a_.max) {
      complain(a_.where("min"), fmt::format("'min' {} lies above 'max' {}; swap them", *a_.min, *a_.max));
    }
  }

  void checkText() const {
    if (!a_.defaultValue) return;
    auto const* const text = std::get_if<std::string>(&*a_.defaultValue);
    if (text == nullptr) {
      complain(a_.where("default"), "the default of a text is a string; write default = \"...\"");
    } else if (text->size() > maxTextDefault) {
      complain(a_.where("default"),
               fmt::format("default has {} bytes; write at most {}", text->size(), maxTextDefault));
    }
  }

  void checkLiteral(std::string_view key, std::optional<Literal> const& literal, AttributeType const& type) const {
    if (!literal) return;
    std::string wanted;
    if (type.kind == Kind::boolean && !std::holds_alternative<bool>(*literal)) wanted = "true or false";
    if (type.isInteger()) {
      std::optional<std::uint64_t> const number = unsignedOf(*literal);
      if (!number || *number > type.max) {
        wanted = fmt::format("an integer from 0 to {}", type.max);
        if (type.max > maxOfToml) wanted += fmt::format(", in quotes where it is above {}", maxOfToml);
      }
    }
    if (type.kind == Kind::seconds) {
      auto const* const number = std::get_if<double>(&*literal);
      bool const fits = number != nullptr ? std::isfinite(*number) : std::holds_alternative<std::int64_t>(*literal);
      if (!fits) wanted = "a finite number";
    }
    if (type.kind == Kind::text || type.kind == Kind::sibling || type.kind == Kind::value) {
      complain(a_.where(key), fmt::format("'{}' has no literal for {}; drop it: {} has a default of its own", key,
                                          type.declared, type.declared));
    } else if (!wanted.empty()) {
      complain(a_.where(key),
               fmt::format("'{}' of a {} is {}; {} is not", key, type.declared, wanted, schemaLiteral(*literal)));
    }
  }

  void checkKey(std::string_view collection, std::vector<std::string_view> const& keys) const {
    if (a_.key.empty() || std::find(keys.begin(), keys.end(), a_.key) != keys.end()) return;
    complain(a_.where(collection), fmt::format("'{}' is no key of {} collection; write one of {}", a_.key,
                                               collection == "ordered" ? "an ordered" : "a hashed", quotedList(keys)));
  }

  void checkChild() const {
    if (a_.child.empty()) return;
    SourcePosition const at = a_.where("child");
    Type const* const child = subject_.file.find(a_.child);
    if (child == nullptr) {
      std::vector<std::string_view> names;
      addNamesAbove(Type::Kind::entity, names);
      complain(at,
               fmt::format("'{}' is unknown; a child is an entity of the same file, defined further up: here {}{}",
                           a_.child, names.empty() ? "there is none" : quotedList(names), didYouMean(a_.child, names)));
    } else if (!child->isEntity()) {
      complain(at, fmt::format("'{0}' is a value; write type = \"{0}\" instead of child", a_.child));
    } else if (isAbove(*child, at)) {
      checkMakingOf(*child);
    }
  }

  // A parent makes a child from one text: its name, or in a collection its key, which serves as name too.
  void checkMakingOf(Type const& child) const {
    if (child.has("factory")) {
      complain(
          a_.where("child"),
          fmt::format("'{}' has a factory, and so stands by itself; a child is made by its parent: drop the factory",
                      a_.child));
      return;
    }
    bool const keyedByName = a_.shape == Shape::child || a_.key == "name";
    for (Attribute const& fixed : child.attributes) {
      if (fixed.shape != Shape::fixed || (!keyedByName && fixed.name == a_.key)) continue;
      complain(a_.where("child"),
               fmt::format("'{0}' also wants '{1}' when it is made; key it by that: hashed = \"{1}\"", child.name,
                           fixed.name));
      return;
    }
    if (keyedByName || a_.key.empty()) return;
    Attribute const* const key = child.find(a_.key);
    if (key == nullptr || key->shape != Shape::fixed) {
      complain(a_.where("hashed"), fmt::format("'{}' is no constructor argument of '{}'; key it by \"name\", or by an "
                                               "attribute with fixed = true",
                                               a_.key, child.name));
    }
  }

  Subject const& subject_;
  Type const& owner_;
  Attribute const& a_;
  WayBack& back_;
};

}  // namespace

void checkShapes(Subject const& subject, Type const& type) {
  WayBack back(subject.file, type);
  for (Attribute const& a : type.attributes) AttributeRules(subject, type, a, back).check();
}

}  // namespace Schemac
