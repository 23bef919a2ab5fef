// The law of a watch, over whatever types there are: what it tells, put into effect on what it told first, is always
// what 'get' finds. No type is named: values are texts that some type accepts.
#include "apps/attributes/Misfit.h"
#include "apps/attributes/Watch.h"
#include "tests/apps/AttributeTest.h"
#include "tests/core/Property.h"

#include <algorithm>
#include <map>

namespace Apps::Attributes {
namespace {

using Lines = std::map<std::string, std::string>;  // by path

Look const look{Depth::all, Records::byField};

// The texts at hand of which a type makes a value; those of records differ from their default in one attribute.
std::vector<std::string> const& texts(Vek::VekType const& type) {
  static std::map<Vek::VekType const*, std::vector<std::string>> known;
  auto const [place, isNew] = known.try_emplace(&type);
  if (!isNew) return place->second;
  std::vector<std::string> const plain{"0",   "1",     "2",   "5",         "True",
                                       "0.5", "False", "'a'", "'.\\'\\n'", "'00000001:00000000:00000002:00000000'"};
  std::vector<std::string> tried = plain;
  for (auto const& attr : type.attributes()) {
    for (std::string const& text : plain) {
      tried.push_back("Value('" + std::string(type.fullName().view()) + "', ** {'" + std::string(attr->name().view()) +
                      "': " + text + "})");
    }
  }
  for (std::string const& text : tried) {
    try {
      static_cast<void>(fromText(type, text, ""));
      place->second.push_back(text);
    } catch (Misfit const&) {  // a text of another type
    }
  }
  return place->second;
}

struct Choice {  // numbers that pick, by what there is to pick from
  unsigned action, entity, attribute, key, value;
};

template <class T>
T const& pick(std::vector<T> const& from, unsigned number) {
  return from[number % from.size()];
}

Generic value(Vek::VekType const& type, unsigned number) { return fromText(type, pick(texts(type), number), ""); }

std::vector<Vek::VekAttr const*> ownAttributes(Vek::VekType const& type) {
  std::vector<Vek::VekAttr const*> own;
  for (auto const& attr : type.attributes()) {
    if (isOwn(type, *attr)) own.push_back(attr.ptr());
  }
  return own;
}

void collectEntities(Place const& entity, std::vector<Place>& all) {
  all.push_back(entity);
  for (Vek::VekAttr const* attr : ownAttributes(*entity.holder->type())) {
    if (!attr->flags().isInstantiating()) continue;
    auto const enter = [&all](Place const& child) {
      if (entityOf(*valueAt(child))) collectEntities({child.path, valueAt(child)}, all);
    };
    Place const place = attributeOf(entity, entity.holder, *attr);
    place.isCollection() ? forEachMember(place, enter) : enter(place);
  }
}

class World {
 public:
  World() {
    roots.forEach([this](Vek::Ptr<Vek::Entity> const& root) { directory->entryIs(root); });
  }

  // Changes something anywhere.
  void change(Choice const& choice) {
    std::vector<Place> entities;
    for (std::string const& name : names()) collectEntities(resolve(*directory, name), entities);
    Place const entity = pick(entities, choice.entity);
    auto attributes = ownAttributes(*entity.holder->type());
    auto const children = std::partition(attributes.begin(), attributes.end(),
                                         [](Vek::VekAttr const* attr) { return !attr->flags().isInstantiating(); });
    bool const isChild = children != attributes.end() && choice.value % 4 == 1;  // else they would be rare
    if (isChild) attributes.erase(attributes.begin(), children);
    Vek::VekAttr const& attr = *pick(attributes, choice.attribute);
    change(attributeOf(entity, entity.holder, attr), choice);
  }

  // Changes something on the way of a path.
  void change(std::string const& path, Choice const& choice) {
    auto const steps = readPath(*directory, path).steps;
    if (steps.empty()) return;
    try {
      change(resolve(*directory, pick(steps, choice.attribute).path, Missing::make), choice);
    } catch (Misfit const&) {  // the member in which it would be is not there
    }
  }

  // A path that its types allow, to something that may be there some time.
  std::string path(std::vector<Choice> const& choices) const {
    std::string path = pick(names(), choices.front().entity);
    Vek::VekType const* type = directory->entity(Vek::Name(std::string_view{path}))->fwkType();
    for (Choice const& choice : choices) {
      if (type->attributes().empty() || choice.action % 5 == 0) break;
      Vek::VekAttr const& attr = *pick(ownAttributes(*type), choice.attribute);
      path = attributePath(path, attr);
      if (attr.flags().isCollection()) {
        if (choice.action % 5 == 1) break;
        path = memberPath(path, keyText(*value(*attr.keyType(), choice.key)));
      }
      type = attr.valueType();
    }
    return path;
  }

  std::vector<std::string> names() const {
    std::vector<std::string> names;
    for (Vek::Name const& name : directory->names()) names.emplace_back(name.view());
    return names;
  }

  Show::Roots const roots;
  Vek::Ptr<Vek::Dir> const directory = Vek::make<Vek::Dir>();

 private:
  static void change(Place place, Choice const& choice) {
    if (place.isCollection()) place = memberOf(place, value(*place.attr->keyType(), choice.key));
    if (place.attr == nullptr || place.kind() == Kind::readOnly) return;
    Kind const kind = place.kind();
    bool const removes = choice.action % 3 == 0;
    if (removes && kind != Kind::scalar) return remove(place);
    if (kind == Kind::scalar || kind == Kind::elements) {
      return assign(place, value(*place.attr->valueType(), choice.value));
    }
    makeChild(place, kind == Kind::child ? std::optional<Vek::Name>{choice.key % 2 == 0 ? "a" : "b"} : std::nullopt);
  }
};

bool isInside(std::string const& path, std::string const& outer) {
  return path.size() > outer.size() && path.starts_with(outer) && path[outer.size()] == '.';
}

void putIntoEffect(std::vector<Change> const& changes, Lines& lines) {
  for (Change const& change : changes) {
    std::string const text = change.value ? std::string(change.value->strRep().view()) : "gone";
    auto const known = lines.find(change.path);
    bool const isNew = known == lines.end() || known->second != text;
    RC_ASSERT(isNew);
    auto const before = lines.size();
    for (auto it = lines.begin(); it != lines.end();) {
      bool const falls = it->first == change.path || isInside(it->first, change.path) ||
                         (change.value && isInside(change.path, it->first));
      it = falls ? lines.erase(it) : std::next(it);
    }
    if (change.value) {
      lines[change.path] = text;
    } else {
      RC_ASSERT(lines.size() < before);
    }
  }
}

void collectLines(Reading const& reading, Lines& lines) {
  if (reading.value) lines[reading.path] = std::string(reading.value->strRep().view());
  for (Reading const& part : reading.parts) collectLines(part, lines);
}

Lines found(Vek::Dir const& directory, std::vector<std::string> const& paths) {
  Lines lines;
  for (std::string const& path : paths) {
    try {
      collectLines(read(resolve(directory, path), look), lines);
    } catch (Misfit const&) {  // it is not there
    }
  }
  return lines;
}

using WatchLaw = LeakCheck;

TEST_F(WatchLaw, WhatIsToldLeadsToWhatIsThere) {
  expectLaw(600, [] {
    auto const anyChoice =
        rc::gen::construct<Choice>(rc::gen::inRange(0U, 60U), rc::gen::inRange(0U, 40U), rc::gen::inRange(0U, 61U),
                                   rc::gen::inRange(0U, 4U), rc::gen::inRange(0U, 40U));
    World world;
    std::string const narrow = world.path(*rc::gen::container<std::vector<Choice>>(6, anyChoice));
    auto const history = *rc::gen::container<std::vector<Choice>>(anyChoice);
    struct Follower {
      std::vector<std::string> paths;
      Watch watch;
      Lines lines = {};
    };
    Follower followers[] = {{world.names(), Watch{*world.directory, {}, look}},
                            {{narrow}, Watch{*world.directory, {narrow}, look}}};
    auto const change = [&](Choice const& choice) {
      choice.action % 2 == 0 ? world.change(choice) : world.change(narrow, choice);
    };
    auto const half = history.size() / 2;
    for (std::size_t i = 0; i < half; ++i) change(history[i]);
    for (Follower& follower : followers) putIntoEffect(follower.watch.start(), follower.lines);
    for (std::size_t i = half; i <= history.size(); ++i) {
      bool const looks = i == history.size() || history[i].action % 4 == 0;
      for (Follower& follower : followers) {
        if (!looks) continue;
        putIntoEffect(follower.watch.changes(), follower.lines);
        RC_ASSERT(follower.lines == found(*world.directory, follower.paths));
      }
      if (i < history.size()) change(history[i]);
    }
  });
}

}  // namespace
}  // namespace Apps::Attributes
