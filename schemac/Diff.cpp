#include "schemac/Diff.h"

#include "schemac/Literal.h"
#include "schemac/Shapes.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <utility>

namespace Schemac {

namespace {

using Effect = Difference::Effect;

// What an attribute is on the log, apart from its number: "hashed collection of bool by U32".
std::string signature(Attribute const& a) {
  std::string text(describe(a.shape));
  std::string const& of = a.child.empty() ? a.type : a.child;
  if (!of.empty()) text += " of " + of;
  if (!a.key.empty()) text += " by " + a.key;
  if (a.constant) text += " " + schemaLiteral(*a.constant);
  return text;
}

std::string settings(Attribute const& a) {
  std::string text = a.defaultValue ? "default " + schemaLiteral(*a.defaultValue) : "no default";
  if (a.min && a.max) text += fmt::format(", {} to {}", *a.min, *a.max);
  return text;
}

Attribute const* withNumber(Type const& type, std::uint32_t number) {
  auto const found = std::find_if(type.attributes.begin(), type.attributes.end(),
                                  [&](Attribute const& a) { return a.number == number; });
  return found == type.attributes.end() ? nullptr : &*found;
}

Attribute const* liveWithName(Type const& type, std::string_view name) {
  auto const found = std::find_if(type.attributes.begin(), type.attributes.end(),
                                  [&](Attribute const& a) { return !a.retired() && a.name == name; });
  return found == type.attributes.end() ? nullptr : &*found;
}

bool sameAttributes(Type const& a, Type const& b) {
  return a.kind == b.kind && std::equal(a.attributes.begin(), a.attributes.end(), b.attributes.begin(),
                                        b.attributes.end(), [](Attribute const& x, Attribute const& y) {
                                          return x.number == y.number && x.name == y.name &&
                                                 signature(x) == signature(y);
                                        });
}

class Comparison {
 public:
  Comparison(File const& before, File const& after) : before_(before), after_(after) {}

  std::vector<Difference> run() {
    if (before_.nameSpace != after_.nameSpace) {
      inNew(Effect::breaks, after_.where("namespace"),
            fmt::format("all types move from namespace '{}' to '{}'; peers know them by their full names",
                        before_.nameSpace, after_.nameSpace));
    }
    std::set<Type const*> met;
    for (Type const& was : before_.types) {
      Type const* const is = partner(was);
      if (is == nullptr) {
        inOld(was.where("name"), fmt::format("type '{}' is gone", was.name));
      } else {
        met.insert(is);
        compareTypes(was, *is);
      }
    }
    for (Type const& is : after_.types) {
      if (!met.contains(&is)) inNew(Effect::note, is.where("name"), fmt::format("type '{}' is new", is.name));
    }
    return std::move(out_);
  }

 private:
  void inNew(Effect effect, SourcePosition at, std::string text) {
    out_.push_back({effect, after_.path, at, std::move(text)});
  }
  void inOld(SourcePosition at, std::string text) {
    out_.push_back({Effect::breaks, before_.path, at, std::move(text)});
  }

  [[nodiscard]] Type const* partner(Type const& was) const {
    if (Type const* const same = after_.find(was.name)) return same;
    auto const renamed = std::find_if(after_.types.begin(), after_.types.end(), [&](Type const& is) {
      return before_.find(is.name) == nullptr && sameAttributes(was, is);
    });
    return renamed == after_.types.end() ? nullptr : &*renamed;
  }

  void compareTypes(Type const& was, Type const& is) {
    if (was.name != is.name) {
      inNew(Effect::breaks, is.where("name"),
            fmt::format("type '{}' is called '{}' now; peers know it by its old name", was.name, is.name));
    }
    if (was.kind != is.kind) {
      inNew(Effect::breaks, is.where("name"),
            fmt::format("'{}' was {} and is {}", was.name, was.isEntity() ? "an entity" : "a value",
                        is.isEntity() ? "an entity" : "a value"));
      return;
    }
    if (was.bare != is.bare) {
      inNew(Effect::breaks, is.where("bare"),
            fmt::format("the text of '{}' has another form: 'bare' {}", is.name, is.bare ? "was added" : "is gone"));
    }
    for (Attribute const& a : was.attributes) {
      if (!a.retired()) compareAttribute(was, a, is);
    }
    for (Attribute const& a : is.attributes) {
      if (!a.retired()) judgeNew(was, a, is);
    }
  }

  // What became of `was`, an attribute of `oldType`, in `type`.
  void compareAttribute(Type const& oldType, Attribute const& was, Type const& type) {
    std::string const name = fmt::format("'{}.{}'", type.name, was.name);
    Attribute const* const sameName = liveWithName(type, was.name);
    if (sameName != nullptr && sameName->number != was.number) {
      inNew(Effect::breaks, sameName->where("number"),
            fmt::format("{} has number {} and had {}", name, sameName->number, was.number));
    }
    Attribute const* const is = sameName != nullptr ? sameName : withNumber(type, was.number);
    if (is == nullptr) {
      inOld(was.where("number"),
            fmt::format("{} is gone; hold its place: {{ number = {}, retired = true }}", name, was.number));
    } else if (sameName == nullptr && !is->retired() && liveWithName(oldType, is->name) != nullptr) {
      inNew(Effect::breaks, is->where("number"),
            fmt::format("{} is gone, and its number {} went to '{}'", name, was.number, is->name));
    } else if (is->retired()) {
      // A value's attributes follow one another on the log, so there the gap shifts all that come after.
      inNew(type.isEntity() ? Effect::note : Effect::breaks, is->where("number"), fmt::format("{} is retired", name));
    } else {
      compareForms(name, was, *is);
    }
  }

  void compareForms(std::string const& name, Attribute const& was, Attribute const& is) {
    if (was.name != is.name) {
      inNew(
          Effect::breaks, is.where("name"),
          fmt::format("{} is called '{}' now; texts and the generic interface know it by its old name", name, is.name));
    }
    if (signature(was) != signature(is)) {
      inNew(Effect::breaks, is.at, fmt::format("{} was {} and is {}", name, signature(was), signature(is)));
    } else if (settings(was) != settings(is)) {
      inNew(Effect::note, is.at, fmt::format("{} had {} and has {}", name, settings(was), settings(is)));
    }
  }

  // Speaks of `a` if no attribute of the old form became it.
  void judgeNew(Type const& was, Attribute const& a, Type const& type) {
    if (liveWithName(was, a.name) != nullptr) return;
    std::string const name = fmt::format("'{}.{}'", type.name, a.name);
    Attribute const* const sameNumber = withNumber(was, a.number);
    if (sameNumber != nullptr && sameNumber->retired()) {
      inNew(Effect::breaks, a.where("number"),
            fmt::format("{} takes number {}, which is retired; take a new one", name, a.number));
    } else if (sameNumber == nullptr || liveWithName(type, sameNumber->name) != nullptr) {
      bool const lengthens = !type.isEntity() || a.shape == Shape::fixed;
      inNew(lengthens ? Effect::breaks : Effect::note, a.where("name"),
            lengthens ? fmt::format("{} is new: peers know a shorter record", name) : fmt::format("{} is new", name));
    }
  }

  File const& before_;
  File const& after_;
  std::vector<Difference> out_;
};

}  // namespace

std::string toString(Difference const& d) {
  return fmt::format("{}:{}:{}: {}: {}", d.path, d.at.line, d.at.column, d.effect == Effect::breaks ? "breaks" : "note",
                     d.text);
}

std::vector<Difference> diff(File const& before, File const& after) { return Comparison(before, after).run(); }

bool breaks(std::vector<Difference> const& differences) {
  return std::any_of(differences.begin(), differences.end(),
                     [](Difference const& d) { return d.effect == Effect::breaks; });
}

}  // namespace Schemac
