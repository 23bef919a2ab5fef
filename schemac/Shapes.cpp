#include "schemac/Shapes.h"

namespace Schemac {

using Keys = std::vector<std::string_view>;

Shape shapeOf(Attribute const& attribute) {
  if (attribute.has("retired")) return Shape::retired;
  if (attribute.has("child")) {
    return attribute.has("hashed") || attribute.has("ordered") ? Shape::childCollection : Shape::child;
  }
  if (attribute.has("ordered")) return Shape::ordered;
  if (attribute.has("hashed")) return Shape::hashed;
  if (attribute.has("constant")) return Shape::constant;
  if (attribute.has("fixed")) return Shape::fixed;
  return attribute.type == "Vek::String" ? Shape::text : Shape::scalar;
}

std::string_view describe(Shape shape) noexcept {
  switch (shape) {
  case Shape::scalar: return "a scalar";
  case Shape::text: return "a text";
  case Shape::constant: return "a constant";
  case Shape::fixed: return "a constructor argument";
  case Shape::ordered: return "an ordered collection";
  case Shape::hashed: return "a hashed collection";
  case Shape::child: return "a child";
  case Shape::childCollection: return "a collection of children";
  case Shape::retired: return "a retired attribute";
  }
  return "";
}

Keys const& keysOf(Shape shape) {
  static Keys const scalar = {"type", "increment", "default", "min", "max"};
  static Keys const text = {"type", "default"};
  static Keys const constant = {"type", "constant"};
  static Keys const fixed = {"type", "fixed"};
  static Keys const ordered = {"ordered", "type"};
  static Keys const hashed = {"hashed", "type"};
  static Keys const child = {"child"};
  static Keys const childCollection = {"child", "hashed"};
  static Keys const retired = {"retired"};
  switch (shape) {
  case Shape::scalar: return scalar;
  case Shape::text: return text;
  case Shape::constant: return constant;
  case Shape::fixed: return fixed;
  case Shape::ordered: return ordered;
  case Shape::hashed: return hashed;
  case Shape::child: return child;
  case Shape::childCollection: return childCollection;
  case Shape::retired: break;
  }
  return retired;
}

}  // namespace Schemac
