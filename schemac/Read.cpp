#include "schemac/Read.h"

#include "dornl3/core/Nearest.h"
#include "schemac/Keys.h"
#include "schemac/Shapes.h"
#include "schemac/Suggest.h"

#include <fmt/format.h>
#include <toml++/toml.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <utility>
#include <vector>

namespace Schemac {

namespace {

SourcePosition positionOf(toml::source_region const& region) { return {region.begin.line, region.begin.column}; }

std::string_view kindOf(toml::node const& node) {
  switch (node.type()) {
  case toml::node_type::table: return "a table";
  case toml::node_type::array: return "an array";
  case toml::node_type::string: return "a string";
  case toml::node_type::integer: return "an integer";
  case toml::node_type::floating_point: return "a number with a fraction";
  case toml::node_type::boolean: return "true or false";
  case toml::node_type::date:
  case toml::node_type::time:
  case toml::node_type::date_time: return "a date or time";
  case toml::node_type::none: break;
  }
  return "nothing";
}

// One table of the file while it is read: takes its keys one by one, and complains about those nobody may write.
class TableReader {
 public:
  // `what` names the table in complaints: "an attribute", "a value".
  TableReader(toml::table const& table, Table& into, std::string_view what, std::vector<Key> const& known,
              Complainer const& complain)
      : table_(table), into_(into), what_(what), known_(known), complain_(complain) {
    into_.at = positionOf(table.source());
    for (auto const& [key, node] : table) {
      if (find(key.str()) != nullptr) {
        into_.keys.emplace(key.str(), positionOf(node.source()));
      } else {
        refuseKey(positionOf(key.source()), key.str());
      }
    }
  }

  void require(std::string_view key, std::string_view example) const {
    if (into_.has(key)) return;
    complain_(into_.at, fmt::format("{} has no '{}'; write {} = {}", what_, key, key, example));
  }

  // What `key`, one of the table's, may be given.
  [[nodiscard]] std::string const& takes(std::string_view key) const { return find(key)->takes; }

  [[nodiscard]] std::string text(std::string_view key) const {
    std::optional<std::string> const given = take<std::string>(key);
    if (!given) return {};
    if (given->find_first_not_of(' ') == std::string::npos) {
      complain_(into_.where(key), fmt::format("'{}' is empty; write a text, or leave it out", key));
      return {};
    }
    return *given;
  }

  // A flag that is only ever written to set it: `false` would claim the opposite of what its presence does.
  [[nodiscard]] bool mark(std::string_view key) const {
    std::optional<bool> const flag = take<bool>(key);
    if (flag && !*flag) complain_(into_.where(key), fmt::format("'{}' can only be true; leave it out", key));
    return flag.value_or(false);
  }

  [[nodiscard]] std::optional<std::int64_t> integer(std::string_view key) const { return take<std::int64_t>(key); }

  [[nodiscard]] std::optional<Literal> literal(std::string_view key) const {
    toml::node const* const node = table_.get(key);
    if (node == nullptr) return std::nullopt;
    if (auto const* flag = node->as_boolean()) return Literal{flag->get()};
    if (auto const* integer = node->as_integer()) return Literal{integer->get()};
    if (auto const* number = node->as_floating_point()) return Literal{number->get()};
    if (auto const* string = node->as_string()) return Literal{string->get()};
    refuseKind(key, *node);
    return std::nullopt;
  }

  // The tables of an array; `example` shows what to write where it holds anything else. An array that holds nothing
  // but mistakes counts as not given, so that nobody complains about its emptiness too.
  [[nodiscard]] std::vector<toml::table const*> tables(std::string_view key, std::string_view example) const {
    std::vector<toml::table const*> found;
    toml::node const* const node = table_.get(key);
    if (node == nullptr) return found;
    auto const refuse = [&](toml::node const& wrong, std::string_view wanted) {
      complain_(positionOf(wrong.source()),
                fmt::format("'{}' takes {}, not {}; write {}", key, wanted, kindOf(wrong), example));
    };
    toml::array const* const array = node->as_array();
    if (array == nullptr) {
      refuse(*node, "an array of tables");
    } else {
      for (toml::node const& element : *array) {
        if (toml::table const* const table = element.as_table()) {
          found.push_back(table);
        } else {
          refuse(element, "tables");
        }
      }
    }
    if (found.empty() && (array == nullptr || !array->empty())) into_.keys.erase(std::string(key));
    return found;
  }

 private:
  [[nodiscard]] Key const* find(std::string_view name) const {
    auto const found = std::find_if(known_.begin(), known_.end(), [&](Key const& k) { return k.name == name; });
    return found == known_.end() ? nullptr : &*found;
  }

  void refuseKey(SourcePosition at, std::string_view name) const {
    std::vector<std::string_view> names;
    for (Key const& key : known_) names.push_back(key.name);
    Key const* const meant = find(Vek::nearestWord(name, names));
    std::string const guess = meant == nullptr
                                  ? std::string{}
                                  : fmt::format("; did you mean '{}', which takes {}?", meant->name, meant->takes);
    complain_(at, fmt::format("unknown key '{}'; keys of {} are {}{}", name, what_, quotedList(names), guess));
  }

  void refuseKind(std::string_view key, toml::node const& given) const {
    complain_(into_.where(key), fmt::format("'{}' takes {}, not {}", key, takes(key), kindOf(given)));
  }

  // Exactly this kind: an integer is no string, and 1.0 is no integer.
  template <class T>
  std::optional<T> take(std::string_view key) const {
    toml::node const* const node = table_.get(key);
    if (node == nullptr) return std::nullopt;
    if (auto const* const value = node->as<T>()) return value->get();
    refuseKind(key, *node);
    return std::nullopt;
  }

  toml::table const& table_;
  Table& into_;
  std::string_view what_;
  std::vector<Key> const& known_;
  Complainer const& complain_;
};

Attribute readAttribute(toml::table const& table, Complainer const& complain) {
  Attribute a;
  TableReader const in(table, a, "an attribute", attributeKeys(), complain);
  in.require("number", "N, one more than the attribute before it has");
  std::optional<std::int64_t> const number = in.integer("number");
  if (number && (*number < 0 || *number > 0xffffffff)) {
    complain(a.where("number"),
             fmt::format("number {} is no 32-bit number; values count from 2, entities from 258", *number));
  } else {
    a.number = static_cast<std::uint32_t>(number.value_or(0));
  }
  a.name = in.text("name");
  a.doc = in.text("doc");
  a.type = in.text("type");
  a.child = in.text("child");
  a.key = in.text(a.has("ordered") && !a.has("child") ? "ordered" : "hashed");
  a.increment = in.mark("increment");
  a.defaultValue = in.literal("default");
  a.constant = in.literal("constant");
  a.min = in.integer("min");
  a.max = in.integer("max");
  (void)in.mark("fixed");
  (void)in.mark("retired");
  a.shape = shapeOf(a);
  if (!a.retired()) {
    in.require("name", "\"numRoutes\", say");
    in.require("doc", "\"what it holds\"");
    if (!a.has("child")) in.require("type", fmt::format("\"U32\", say; it takes {}", in.takes("type")));
  }
  return a;
}

Type readType(toml::table const& table, Type::Kind kind, Complainer const& complain) {
  constexpr std::string_view example = "attributes = [ { number = ..., name = ..., type = ..., doc = ... }, ... ]";

  bool const isEntity = kind == Type::Kind::entity;
  Type type;
  type.kind = kind;
  TableReader const in(table, type, isEntity ? "an entity" : "a value", isEntity ? entityKeys() : valueKeys(),
                       complain);
  in.require("name", isEntity ? "\"Status\", say" : "\"RouteStats\", say");
  in.require("doc", "\"what it is\"");
  in.require("attributes", "[ { number = ..., name = ..., type = ..., doc = ... }, ... ]");
  type.name = in.text("name");
  type.doc = in.text("doc");
  if (isEntity) {
    type.factory = in.text("factory");
  } else {
    type.bare = in.mark("bare");
  }
  for (toml::table const* attribute : in.tables("attributes", example)) {
    type.attributes.push_back(readAttribute(*attribute, complain));
  }
  return type;
}

File readRoot(toml::table const& root, std::filesystem::path const& path, Complainer const& complain) {
  File file;
  file.path = path.string();
  file.stem = path.stem().string();
  TableReader const in(root, file, "a schema file", fileKeys(), complain);
  in.require("namespace", "\"Hardware::DornL3Unicast\", say, above the first type");
  file.nameSpace = in.text("namespace");
  file.doc = in.text("doc");
  for (toml::table const* value : in.tables("value", "[[value]]")) {
    file.types.push_back(readType(*value, Type::Kind::value, complain));
  }
  for (toml::table const* entity : in.tables("entity", "[[entity]]")) {
    file.types.push_back(readType(*entity, Type::Kind::entity, complain));
  }
  // TOML keeps two arrays; their tables may stand in any mixture.
  std::stable_sort(file.types.begin(), file.types.end(), [](Type const& a, Type const& b) { return a.at < b.at; });
  return file;
}

// The number of the first line that is too long, or 0.
std::uint32_t overlongLine(std::string_view text) {
  std::uint32_t line = 1;
  while (!text.empty()) {
    std::size_t const end = std::min(text.find('\n'), text.size());
    if (end > maxLineLength) return line;
    text.remove_prefix(std::min(end + 1, text.size()));
    ++line;
  }
  return 0;
}

// TOML stops at 2^63 - 1, half of what a U64 holds.
std::string_view hintFor(toml::parse_error const& error) {
  if (error.description().find("not representable in 64 bits") == std::string_view::npos) return {};
  return "; TOML counts to 9223372036854775807: as default or constant of a U64, write a greater number as a string of "
         "decimal digits, default = \"18446744073709551615\"";
}

}  // namespace

ReadResult readText(std::filesystem::path const& path, std::string_view text) {
  ReadResult result;
  std::string const name = path.string();
  Complainer const complain(name, result.complaints);
  if (text.size() > maxFileSize) {
    complain({1, 1}, fmt::format("the file is longer than {} bytes; split it", maxFileSize));
    return result;
  }
  if (std::uint32_t const line = overlongLine(text); line != 0) {
    complain({line, 1}, fmt::format("line is longer than {} bytes; break it", maxLineLength));
    return result;
  }
  try {
    toml::table const root = toml::parse(text, name);
    result.file = readRoot(root, path, complain);
  } catch (toml::parse_error const& error) {
    complain(positionOf(error.source()), fmt::format("no TOML: {}{}", error.description(), hintFor(error)));
  }
  return result;
}

ReadResult readFile(std::filesystem::path const& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw FileError(fmt::format("cannot read {}: {}", path.string(), std::strerror(errno)));
  std::string text(maxFileSize + 1, '\0');
  in.read(text.data(), static_cast<std::streamsize>(text.size()));
  if (in.bad() || (in.fail() && !in.eof())) {
    throw FileError(fmt::format("cannot read {}: {}", path.string(), std::strerror(errno)));
  }
  text.resize(static_cast<std::size_t>(in.gcount()));
  return readText(path, text);
}

}  // namespace Schemac
