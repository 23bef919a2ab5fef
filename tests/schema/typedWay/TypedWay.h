// TypedWay: what the attributes of every type do by their typed operations, in a table by full name and number, with
// texts for values and keys. TypedWay.mustache fills it with calls by name, so that what goes by number can be held
// against what goes by type, for every attribute that there is.
#pragma once

#include "dornl3/platform/vek/Entity.h"
#include "dornl3/platform/vek/PlainGeneric.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace TypedWay {

using Text = std::string;
using Child = Vek::Ptr<Vek::Entity>;
using Vek::Entity;

/// What one attribute of an entity does. Operations that it does not have are empty. An attribute that holds one child
/// takes an empty key where it reads or removes, and the name of the child where it makes.
struct Operations {
  std::function<Text(Entity const&)> get;
  std::function<void(Entity&, Text const& value)> set;

  std::function<Text(Entity const&, Text const& key)> getAt;
  std::function<void(Entity&, Text const& key, Text const& value)> setAt;
  std::function<Text(Entity&, Text const& key)> delAt;
  std::function<std::vector<std::pair<Text, Text>>(Entity const&)> walk;

  std::function<Child(Entity const&, Text const& key)> child;
  std::function<Child(Entity&, Text const& key)> makeChild;
  std::function<Child(Entity&, Text const& key)> delChild;
  std::function<std::vector<std::pair<Text, Child>>(Entity const&)> walkChildren;

  std::function<Vek::U32(Entity const&)> count;
};

/// What one attribute of a value does: both take the text of a value; the second gives that of the changed one.
struct Field {
  std::function<Text(Text const& value)> get;
  std::function<Text(Text const& value, Text const& field)> set;
};

struct Value {
  std::map<Vek::AttributeId, Field> fields;
  Text byDefault;
  std::function<Text(Text const& value)> again;  // read, and written
  std::function<bool(Text const& a, Text const& b)> equal;
};

struct Table {
  std::map<std::string, std::map<Vek::AttributeId, Operations>, std::less<>> entities;
  std::map<std::string, Value, std::less<>> values;
};

/// The one table; it is full when main begins.
Table& table();

// What the filled-in template calls.

template <class T>
T read(Text const& text) {
  Vek::String8 const bytes{std::string_view(text)};
  Vek::String8::IteratorConst it{bytes};
  Vek::String8::IteratorConst const end = it.end();
  T value = Vek::readPlain<T>(it, end);
  Vek::needEnd(it, end);
  return value;
}

template <class T>
Text write(T const& value) {
  return Text(std::string_view(Vek::plainText(value)));
}

template <class X, class Get>
Operations constant(Get get) {
  Operations all;
  all.get = [get](Entity const& e) { return write(get(static_cast<X const&>(e))); };
  return all;
}

template <class X, class T, class Get, class Set>
Operations scalar(Get get, Set set) {
  Operations all = constant<X>(get);
  all.set = [set](Entity& e, Text const& value) { set(static_cast<X&>(e), read<T>(value)); };
  return all;
}

template <class X, class K, class T, class Get, class Set, class Del, class Count, class Iterator>
Operations collection(Get get, Set set, Del del, Count count, Iterator iterator) {
  Operations all;
  all.getAt = [get](Entity const& e, Text const& key) { return write<T>(get(static_cast<X const&>(e), read<K>(key))); };
  all.setAt = [set](Entity& e, Text const& key, Text const& value) {
    set(static_cast<X&>(e), read<K>(key), read<T>(value));
  };
  all.delAt = [del](Entity& e, Text const& key) { return write<T>(del(static_cast<X&>(e), read<K>(key))); };
  all.count = [count](Entity const& e) { return count(static_cast<X const&>(e)); };
  all.walk = [iterator](Entity const& e) {
    std::vector<std::pair<Text, Text>> members;
    for (auto it = iterator(static_cast<X const&>(e)); it; ++it) {
      members.emplace_back(write<K>(it->key()), write<T>(it->value()));
    }
    return members;
  };
  return all;
}

template <class X, class Get, class Make, class Del>
Operations child(Get get, Make make, Del del) {
  Operations all;
  all.child = [get](Entity const& e, Text const&) { return Child(get(static_cast<X const&>(e)).ptr()); };
  all.makeChild = [make](Entity& e, Text const& name) {
    return Child(make(static_cast<X&>(e), read<Vek::Name>(name)).ptr());
  };
  all.delChild = [del](Entity& e, Text const&) { return Child(del(static_cast<X&>(e)).ptr()); };
  return all;
}

template <class X, class K, class Get, class Make, class Del, class Count, class Iterator>
Operations children(Get get, Make make, Del del, Count count, Iterator iterator) {
  Operations all;
  all.child = [get](Entity const& e, Text const& key) {
    return Child(get(static_cast<X const&>(e), read<K>(key)).ptr());
  };
  all.makeChild = [make](Entity& e, Text const& key) { return Child(make(static_cast<X&>(e), read<K>(key)).ptr()); };
  all.delChild = [del](Entity& e, Text const& key) { return Child(del(static_cast<X&>(e), read<K>(key)).ptr()); };
  all.count = [count](Entity const& e) { return count(static_cast<X const&>(e)); };
  all.walkChildren = [iterator](Entity const& e) {
    std::vector<std::pair<Text, Child>> members;
    for (auto it = iterator(const_cast<X&>(static_cast<X const&>(e))); it; ++it) {
      members.emplace_back(write<K>(it->key()), Child(it.ptr()));
    }
    return members;
  };
  return all;
}

template <class X>
Value value() {
  Value all;
  all.byDefault = write(X());
  all.again = [](Text const& text) { return write(read<X>(text)); };
  all.equal = [](Text const& a, Text const& b) { return read<X>(a) == read<X>(b) && !(read<X>(a) != read<X>(b)); };
  return all;
}

template <class X, class T, class Get, class Set>
Field field(Get get, Set set) {
  return {[get](Text const& text) { return write<T>(get(read<X>(text))); },
          [set](Text const& text, Text const& field) {
            X changed = read<X>(text);
            set(changed, read<T>(field));
            return write(changed);
          }};
}

}  // namespace TypedWay
