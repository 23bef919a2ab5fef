// Watch: follows what is at paths, through the registry and the generic interface alone: entities, attributes,
// collections, members, fields of a record, also those that are not there yet.
// Owner: whoever made it; it holds the entities that it follows. Thread: the entities'. Nothing is told by itself: the
// owner's loop asks, and what happened in between counts once. Asking costs by what was heard of, not by what is there.
#pragma once

#include "apps/attributes/FollowedEntity.h"

#include <memory>
#include <string>
#include <vector>

namespace Apps::Attributes {

class Watch {
 public:
  static constexpr std::size_t maxPaths = 1000;

  /// Throws Misfit where nothing can ever be at a path, or it is never told of, and for more than maxPaths.
  Watch(Vek::Dir const& roots, std::vector<std::string> const& paths, Depth depth);
  Watch(Watch const&) = delete;
  Watch& operator=(Watch const&) = delete;

  /// What there is now, path by path; the following begins. An entity tells its attributes and their members; with
  /// Depth::all also all that is in its children.
  [[nodiscard]] std::vector<Change> start();
  /// How what there is differs from what was told last, path by path. What two paths cover is told for each. Nothing
  /// before start().
  [[nodiscard]] std::vector<Change> changes();

 private:
  std::vector<TypedPath> paths_;
  Depth const depth_;
  Following following_;
  std::vector<std::unique_ptr<FollowedEntity>> followed_;  // one a path
};

}  // namespace Apps::Attributes
