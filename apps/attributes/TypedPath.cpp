#include "apps/attributes/TypedPath.h"

#include "apps/attributes/Misfit.h"
#include "dornl3/core/Nearest.h"
#include "dornl3/platform/vek/Path.h"
#include "dornl3/platform/vek/TextReader.h"

#include <fmt/format.h>

namespace Apps::Attributes {

using Vek::Name;
using Vek::VekAttr;
using Vek::VekType;

namespace {

constexpr std::size_t maxLength = 4096;
constexpr std::size_t maxSteps = 32;

std::string didYouMean(Name const& word, std::vector<Name> const& candidates) {
  std::string_view const best = Vek::nearestWord(word, {candidates.begin(), candidates.end()});
  return best.empty() ? ". " : fmt::format("; did you mean '{}'? ", best);
}

bool isParent(VekType const& owner, VekAttr const& attr) {
  return owner.isEntity() && attr.id() == Vek::Entity::parentAttrNumber;
}

// Reads a path from left to right.
class Reader {
 public:
  Reader(Vek::Dir const& roots, std::string_view path) : text_{path}, it_{text_}, end_{it_.end()} { root(roots); }

  TypedPath operator()() {
    while (!(it_ == end_)) {
      if (steps_.size() == maxSteps) {
        throw Misfit(fmt::format("The path has more than {} attributes. Shorten it.", maxSteps));
      }
      Vek::needString(it_, end_, ".");
      attribute();
      if (!(it_ == end_) && *it_ == '[') member();
    }
    return {root_, std::move(steps_)};
  }

 private:
  void root(Vek::Dir const& roots) {
    Name const name = Vek::readPathComponent(it_, end_);
    root_ = roots.entity(name);
    if (root_) {
      path_ = root_->fullName().view();
      types_.push_back(root_->fwkType());
      return;
    }
    std::string all;
    for (Name const& known : roots.names()) all += fmt::format("{}{}", all.empty() ? "" : ", ", known.view());
    throw Misfit(fmt::format("There is no root entity {}{}There are: {}.", inQuotes(name),
                             didYouMean(name, roots.names()), all));
  }

  void attribute() {
    Name const name = Vek::readPathComponent(it_, end_);
    if (isInCollection()) throw Misfit(fmt::format("{} is a collection: {}.", path_, keyHint(path_, *last().attr)));
    VekType const& type = *types_.back();
    VekAttr const& attr = named(type, name);
    path_ = attributePath(path_, attr);
    steps_.push_back({&attr, {}, path_});
    enter(type, attr);
  }

  // The parent's type is known by the way that led here; a root has none.
  void enter(VekType const& owner, VekAttr const& attr) {
    if (!isParent(owner, attr)) return types_.push_back(attr.valueType());
    types_.pop_back();
    if (types_.empty()) types_.push_back(Vek::PtrInterface::_fwkType());
  }

  VekAttr const& named(VekType const& type, Name const& name) const {
    std::vector<Name> names;
    for (auto const& attr : type.attributes()) {
      if (attr->name() == name) return *attr;
      names.push_back(attr->name());
    }
    if (names.empty()) {
      throw Misfit(
          fmt::format("{} is a {}, which has no attributes. End the path there.", path_, type.fullName().view()));
    }
    throw Misfit(fmt::format("{} has no attribute {}{}'dornl3 types {}' lists what it has.", path_, inQuotes(name),
                             didYouMean(name, names), type.fullName().view()));
  }

  void member() {
    if (!isInCollection()) throw Misfit(fmt::format("{} is no collection: leave out the key behind it.", path_));
    Vek::needString(it_, end_, "[");
    last().key = key(*last().attr->keyType());
    Vek::needString(it_, end_, "]");
    path_ = memberPath(path_, keyText(*last().key));
    last().path = path_;
  }

  GenericConst key(VekType const& type) {
    if (isText(type)) {
      Name const name = Vek::readPathComponent(it_, end_);
      if (&type == Name::_fwkType()) return type.genericIf(static_cast<void const*>(&name), false);
      Vek::String8 const text{name};
      return type.genericIf(static_cast<void const*>(&text), false);
    }
    std::string_view const rest = Vek::between(it_, end_);
    std::string_view const text = rest.substr(0, rest.find(']'));  // a number: neither quotes nor brackets
    it_ += static_cast<int>(text.size());
    return fromText(type, text, "The key of " + path_);
  }

  Step& last() { return steps_.back(); }
  bool isInCollection() { return !steps_.empty() && last().attr->flags().isCollection() && !last().key; }

  Vek::String8 const text_;
  Vek::String8::IteratorConst it_;
  Vek::String8::IteratorConst const end_;
  Vek::Ptr<Vek::Entity> root_;
  std::string path_;                   // as far as it has been read
  std::vector<Step> steps_;            // so far
  std::vector<VekType const*> types_;  // of what the path leads to, behind those of what holds it
};

}  // namespace

TypedPath readPath(Vek::Dir const& roots, std::string_view path) {
  if (path.size() > maxLength) throw Misfit(fmt::format("The path is longer than {} bytes. Shorten it.", maxLength));
  try {
    return Reader{roots, path}();
  } catch (Vek::RangeException const& complaint) {
    throw Misfit(fmt::format("{} is no path: {}. A path reads like root.attribute or root.attribute[key]; a name or "
                             "key with other characters than letters, digits and _ - : / stands in quotes.",
                             inQuotes(path), complaint.what()));
  }
}

std::string keyHint(std::string_view path, VekAttr const& collection) {
  VekType const& type = *collection.keyType();
  return fmt::format("name one member, as {}[KEY]. The key is {}", path, isText(type) ? "a text" : wanted(type));
}

}  // namespace Apps::Attributes
