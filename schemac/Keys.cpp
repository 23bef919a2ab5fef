#include "schemac/Keys.h"

#include "schemac/Suggest.h"
#include "schemac/Types.h"

namespace Schemac {

std::vector<Key> const& fileKeys() {
  static std::vector<Key> const keys = {
      {"namespace", "a string"}, {"doc", "a string"}, {"value", "[[value]] tables"}, {"entity", "[[entity]] tables"}};
  return keys;
}

std::vector<Key> const& valueKeys() {
  static std::vector<Key> const keys = {
      {"name", "a string"}, {"doc", "a string"}, {"bare", "true"}, {"attributes", "an array of tables"}};
  return keys;
}

std::vector<Key> const& entityKeys() {
  static std::vector<Key> const keys = {
      {"name", "a string"}, {"doc", "a string"}, {"factory", "a string"}, {"attributes", "an array of tables"}};
  return keys;
}

std::vector<Key> const& attributeKeys() {
  static std::vector<Key> const keys = {
      {"number", "an integer"},
      {"name", "a string"},
      {"type", "one of " + quotedList(attributeTypes()) + ", or a value type defined further up"},
      {"child", "the name of an entity defined further up"},
      {"ordered", "one of " + quotedList(orderedKeys())},
      {"hashed", "one of " + quotedList(hashedKeys()) + "; beside child 'name', or a fixed attribute of the child"},
      {"increment", "true"},
      {"default", "true, false, a number or a string"},
      {"min", "an integer"},
      {"max", "an integer"},
      {"constant", "true, false, a number or a string"},
      {"fixed", "true"},
      {"retired", "true"},
      {"doc", "a string"},
  };
  return keys;
}

}  // namespace Schemac
