#include "schemac/Diff.h"

#include "schemac/Literal.h"
#include "schemac/Shapes.h"
#include "schemac/Types.h"

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
  if (a.constant) text += " = " + schemaLiteral(*a.constant);
  return text;
}

std::string defaultOf(Attribute const& a) {
  return a.defaultValue ? "default " + schemaLiteral(*a.defaultValue) : "no default";
}

// The numbers that texts may give an integer: those of its range, or all of its type.
struct Range {
  Range(Attribute const& a, std::uint64_t maxOfType)
      : min(static_cast<std::uint64_t>(a.min.value_or(0))),
        max(a.max ? static_cast<std::uint64_t>(*a.max) : maxOfType) {}

  [[nodiscard]] bool holds(Range const& other) const { return min <= other.min && other.max <= max; }
  [[nodiscard]] std::string text() const { return fmt::format("{} to {}", min, max); }

  std::uint64_t min;
  std::uint64_t max;
};

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

// What the coming or going of `a` does to the attributes beside it. Those of a value follow one another on the log, and
// so do the arguments that make an entity: there all that come after are shifted.
Effect effectOnOthers(Type const& owner, Attribute const& a) {
  return owner.isEntity() && a.shape != Shape::fixed ? Effect::note : Effect::breaks;
}

class Comparison {
 public:
  Comparison(File const& before, File const& after) : before_(before), after_(after), types_(after) {}

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
      inNew(effectOnOthers(type, was), is->where("number"), fmt::format("{} is retired", name));
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
      return;
    }
    if (defaultOf(was) != defaultOf(is)) {
      inNew(Effect::note, is.at, fmt::format("{} had {} and has {}", name, defaultOf(was), defaultOf(is)));
    }
    if (was.child.empty()) compareRanges(name, was, is);
  }

  void compareRanges(std::string const& name, Attribute const& was, Attribute const& is) {
    std::uint64_t const maxOfType = types_.at(is.type).max;
    Range const before(was, maxOfType);
    Range const now(is, maxOfType);
    SourcePosition const at = is.where("min");
    if (!now.holds(before)) {
      inNew(Effect::breaks, at,
            fmt::format("the range of {} is {}, {} before and {} now: texts of peers that go beyond it are refused",
                        name, before.holds(now) ? "narrowed" : "moved", before.text(), now.text()));
    } else if (!before.holds(now)) {
      inNew(Effect::note, at,
            fmt::format("the range of {} is widened, {} before and {} now: peers refuse texts that go beyond theirs",
                        name, before.text(), now.text()));
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
      std::string_view const why = !type.isEntity()          ? ": peers know a shorter record"
                                   : a.shape == Shape::fixed ? ": peers make the entity without it"
                                                             : "";
      inNew(effectOnOthers(type, a), a.where("name"), fmt::format("{} is new{}", name, why));
    }
  }

  File const& before_;
  File const& after_;
  Types const types_;
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
