#include "apps/attributes/Resolve.h"

#include "apps/attributes/Misfit.h"
#include "core/Nearest.h"
#include "platform/vek/Builtin.h"
#include "platform/vek/Path.h"
#include "platform/vek/TextReader.h"

#include <fmt/format.h>

#include <vector>

namespace Apps::Attributes {

using Vek::Name;
using Vek::VekAttr;
using Vek::VekType;

namespace {

constexpr std::size_t maxLength = 4096;
constexpr int maxSteps = 32;

std::string didYouMean(Name const& word, std::vector<Name> const& candidates) {
  std::string_view const best = Vek::nearestWord(word, {candidates.begin(), candidates.end()});
  return best.empty() ? ". " : fmt::format("; did you mean '{}'? ", best);
}

bool isText(VekType const* type) { return type == Name::_fwkType() || type == Vek::Builtin<Vek::String8>::_fwkType(); }

// Reads a path from left to right.
class Walk {
 public:
  Walk(Vek::Dir const& roots, std::string_view path, Missing missing)
      : roots_{roots}, text_{path}, it_{text_}, end_{it_.end()}, missing_{missing} {}

  Place operator()() {
    Place place = root();
    for (int steps = 0; !(it_ == end_); ++steps) {
      if (steps == maxSteps) throw Misfit(fmt::format("The path has more than {} attributes. Shorten it.", maxSteps));
      Vek::needString(it_, end_, ".");
      place = attribute(place);
      if (!(it_ == end_) && *it_ == '[') place = member(place);
    }
    return place;
  }

 private:
  Place root() {
    Name const name = Vek::readPathComponent(it_, end_);
    Vek::Ptr<Vek::Entity> const entity = roots_.entry(name);
    if (entity) return {std::string{entity->fullName().view()}, VekType::genericIf(entity.ptr(), false)};
    std::string all;
    for (Name const& root : roots_.names()) all += fmt::format("{}{}", all.empty() ? "" : ", ", root.view());
    throw Misfit(fmt::format("There is no root entity {}{}There are: {}.", inQuotes(name),
                             didYouMean(name, roots_.names()), all));
  }

  Place attribute(Place const& owner) {
    Name const name = Vek::readPathComponent(it_, end_);
    Generic const holder = inside(owner);
    VekType const* const type = holder->type();
    VekAttr const* const attr = type->attribute(holder->attributeId(Vek::String8(name)));
    if (attr != nullptr) return attributeOf(owner, holder, *attr);
    std::vector<Name> names;
    for (auto const& known : type->attributes()) names.push_back(known->name());
    if (names.empty()) {
      throw Misfit(
          fmt::format("{} is a {}, which has no attributes. End the path there.", owner.path, type->fullName().view()));
    }
    throw Misfit(fmt::format("{} has no attribute {}{}'dornl3 types {}' lists what it has.", owner.path, inQuotes(name),
                             didYouMean(name, names), type->fullName().view()));
  }

  // What has the attributes at a place.
  Generic inside(Place const& place) const {
    if (place.isCollection()) throw Misfit(fmt::format("{} is a collection: {}.", place.path, keyHint(place)));
    if (place.attr == nullptr) return place.holder;
    bool const isChild = place.attr->flags().isInstantiating();
    if (isChild && !isPresent(place)) {
      if (missing_ == Missing::make) return makeChild(place, std::nullopt);
      throw Misfit(fmt::format("{} is not there. Make it first: set it without a value, or set what is in it with "
                               "--parents.",
                               place.path));
    }
    return valueAt(place);
  }

  static bool isPresent(Place const& child) {
    return child.isMember() ? isThere(child) : static_cast<bool>(entityOf(*valueAt(child)));
  }

  Place member(Place const& collection) {
    if (!collection.isCollection()) {
      throw Misfit(fmt::format("{} is no collection: leave out the key behind it.", collection.path));
    }
    Vek::needString(it_, end_, "[");
    GenericConst const key = readKey(*collection.attr->keyType(), collection.path);
    Vek::needString(it_, end_, "]");
    return memberOf(collection, key);
  }

  GenericConst readKey(VekType const& type, std::string const& path) {
    if (isText(&type)) {
      Name const name = Vek::readPathComponent(it_, end_);
      if (&type == Name::_fwkType()) return type.genericIf(static_cast<void const*>(&name), false);
      Vek::String8 const text{name};
      return type.genericIf(static_cast<void const*>(&text), false);
    }
    std::size_t const length = keyLength(Vek::between(it_, end_));
    std::string_view const text = Vek::between(it_, end_).substr(0, length);
    it_ += static_cast<int>(length);
    return fromText(type, text, "The key of " + path);
  }

  // Up to the bracket that closes the key; quotes and brackets inside it count.
  static std::size_t keyLength(std::string_view text) {
    std::size_t open = 0;
    char quote = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
      char const c = text[i];
      if (quote != 0) {
        if (c == '\\') ++i;
        if (c == quote) quote = 0;
      } else if (c == '\'' || c == '"') {
        quote = c;
      } else if (c == '[') {
        ++open;
      } else if (c == ']' && open-- == 0) {
        return i;
      }
    }
    return text.size();
  }

  Vek::Dir const& roots_;
  Vek::String8 const text_;
  Vek::String8::IteratorConst it_;
  Vek::String8::IteratorConst const end_;
  Missing missing_;
};

}  // namespace

Place resolve(Vek::Dir const& roots, std::string_view path, Missing missing) {
  if (path.size() > maxLength) throw Misfit(fmt::format("The path is longer than {} bytes. Shorten it.", maxLength));
  try {
    return Walk{roots, path, missing}();
  } catch (Vek::RangeException const& complaint) {
    throw Misfit(fmt::format("{} is no path: {}. A path reads like root.attribute or root.attribute[key]; a name or "
                             "key with other characters than letters, digits and _ - : / stands in quotes.",
                             inQuotes(path), complaint.what()));
  }
}

std::string keyHint(Place const& collection) {
  VekType const& type = *collection.attr->keyType();
  return fmt::format("name one member, as {}[KEY]. The key is {}", collection.path,
                     isText(&type) ? "a text" : wanted(type));
}

}  // namespace Apps::Attributes
