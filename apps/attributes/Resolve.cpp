#include "apps/attributes/Resolve.h"

#include "apps/attributes/Misfit.h"

#include <fmt/format.h>

namespace Apps::Attributes {

namespace {

bool isPresent(Place const& child) {
  return child.isMember() ? isThere(child) : static_cast<bool>(entityOf(*valueAt(child)));
}

// What has the attributes at a place.
Generic inside(Place const& place, Missing missing) {
  if (place.attr == nullptr) return place.holder;
  bool const isChild = place.attr->flags().isInstantiating();
  if (isChild && !isPresent(place)) {
    if (missing == Missing::make) return makeChild(place, std::nullopt);
    throw Misfit(fmt::format("{} is not there. Make it first: set it without a value, or set what is in it with "
                             "--parents.",
                             place.path));
  }
  return valueAt(place);
}

}  // namespace

Place resolve(Vek::Dir const& roots, std::string_view path, Missing missing) {
  return resolve(readPath(roots, path), missing);
}

Place resolve(TypedPath const& typed, Missing missing) {
  Place place{std::string{typed.root->fullName().view()}, Vek::VekType::genericIf(typed.root.ptr(), false)};
  for (Step const& step : typed.steps) {
    place = attributeOf(place, inside(place, missing), *step.attr);
    if (step.key) place = memberOf(place, step.key);
  }
  return place;
}

}  // namespace Apps::Attributes
