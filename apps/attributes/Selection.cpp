#include "apps/attributes/Selection.h"

#include <fmt/format.h>

namespace Apps::Attributes {

using Vek::VekType;

namespace {

Filled const& filledAt(TypedPath const& path, Filled const& all) {
  VekType const* owner = path.root->fwkType();
  Filled const* filled = &all.at(path.root->name().view());
  for (Step const& step : path.steps) {
    if (!isOwn(*owner, *step.attr)) return Filled::everything();  // the framework keeps it
    owner = step.attr->valueType();
    filled = &filled->at(step.attr->name().view());
  }
  return *filled;
}

// What of a type is not filled, counted by attributes and, where only some of its fields are filled, by fields.
std::size_t countUnfilled(VekType const& type, Filled const& filled) {
  std::size_t count = 0;
  if (filled.isAll()) return count;
  for (auto const& attr : type.attributes()) {
    if (!isOwn(type, *attr)) continue;
    Filled const& part = filled.at(attr->name().view());
    count += part.isNone() ? 1 : countUnfilled(*attr->valueType(), part);
  }
  return count;
}

VekType const& typeAt(TypedPath const& path) {
  return path.steps.empty() ? *path.root->fwkType() : *path.steps.back().attr->valueType();
}

}  // namespace

Selection select(Vek::Dir const& roots, std::vector<std::string> const& paths, Filled const& filled) {
  Selection selection;
  auto const take = [&](TypedPath path, Filled const& of) {
    selection.leftOut += countUnfilled(typeAt(path), of);
    selection.places.push_back({std::move(path), &of});
  };
  for (std::string const& text : paths) {
    TypedPath path = readPath(roots, text);
    Filled const& of = filledAt(path, filled);
    if (of.isNone()) selection.unfilled.push_back(text);
    take(std::move(path), of.isNone() ? Filled::everything() : of);
  }
  if (!paths.empty()) return selection;
  for (Vek::Name const& name : roots.names()) {
    TypedPath root{roots.entity(name), {}};
    if (Filled const& of = filled.at(name.view()); of.isNone()) {
      selection.leftOut += countUnfilled(typeAt(root), of);
    } else {
      take(std::move(root), of);
    }
  }
  return selection;
}

std::vector<std::string> notesOf(Selection const& selection) {
  std::vector<std::string> notes;
  for (std::string const& path : selection.unfilled) {
    notes.push_back(fmt::format("{} is not filled here: what it shows are defaults.", path));
  }
  if (selection.leftOut == 1) notes.emplace_back("1 attribute is not filled here; --all shows it.");
  if (selection.leftOut > 1) {
    notes.push_back(fmt::format(
        "{} attributes, such as those of forwarding chips, are not filled here; --all shows them.", selection.leftOut));
  }
  return notes;
}

}  // namespace Apps::Attributes
