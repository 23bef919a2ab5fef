#include "apps/attributes/Watch.h"

#include "apps/attributes/Misfit.h"

#include <fmt/format.h>

namespace Apps::Attributes {

namespace {

// What every entity has beside its own attributes changes untold, or never.
void needTold(TypedPath const& path) {
  Vek::VekType const* owner = path.root->fwkType();
  for (Step const& step : path.steps) {
    if (!isOwn(*owner, *step.attr)) {
      throw Misfit(fmt::format("{} is never told of: 'dornl3 get' reads it. What can be followed, 'dornl3 ls' lists.",
                               step.path));
    }
    owner = step.attr->valueType();
  }
}

}  // namespace

Watch::Watch(Vek::Dir const& roots, std::vector<std::string> const& paths, Look const& look, std::function<void()> wake)
    : look_{paths.empty() ? Depth::all : look.depth, look.records},
      following_{Vek::make<Vek::Activity>(std::move(wake))} {
  if (paths.size() > maxPaths) {
    throw Misfit(
        fmt::format("There are {} paths, more than {}. Name what holds several of them.", paths.size(), maxPaths));
  }
  selection_ = select(roots, paths, *look.filled);
  for (Selected const& selected : selection_.places) needTold(selected.path);
}

std::vector<Change> Watch::start() {
  std::vector<Change> changes;
  followed_.clear();
  for (auto const& [path, filled] : selection_.places) {
    Scope const scope{path.steps, {look_.depth, look_.records, filled}};
    auto const& followed =
        followed_.emplace_back(std::make_unique<FollowedEntity>(following_, followed_.size(), scope));
    followed->entityIs(std::string{path.root->fullName().view()}, *path.root, changes);
  }
  return changes;
}

std::vector<Change> Watch::changes() {
  std::vector<Change> changes;
  following_.activity->run();
  while (!following_.changed.empty()) following_.changed.extract(following_.changed.begin()).mapped()->tell(changes);
  return changes;
}

}  // namespace Apps::Attributes
