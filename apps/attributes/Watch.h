// Watch: follows what is at paths, through the registry and the generic interface alone: entities, attributes,
// collections, members, fields of a record, also those that are not there yet.
// Owner: whoever made it; it holds the entities that it follows. Thread: the entities'. Nothing is told by itself: the
// owner's loop asks, and what happened in between counts once. Asking costs by what was heard of, not by what is there.
#pragma once

#include "apps/attributes/FollowedEntity.h"
#include "apps/attributes/Selection.h"

#include <memory>
#include <string>
#include <vector>

namespace Apps::Attributes {

class Watch {
 public:
  static constexpr std::size_t maxPaths = 1000;

  /// Without paths it follows everything, as with Depth::all. Of all this, what `look.filled` has, which must outlive
  /// it. `wake` is called, inside whatever changes something, when changes() has something to look at. Throws Misfit
  /// where nothing can ever be at a path, or it is never told of, and for more than maxPaths.
  Watch(Vek::Dir const& roots, std::vector<std::string> const& paths, Look const& look,
        std::function<void()> wake = {});
  Watch(Watch const&) = delete;
  Watch& operator=(Watch const&) = delete;

  /// What is not filled: sentences.
  [[nodiscard]] std::vector<std::string> notes() const { return notesOf(selection_); }

  /// What there is now, path by path; the following begins. An entity tells its attributes and their members; with
  /// Depth::all also all that is in its children; with Records::byField a record tells each field by itself.
  [[nodiscard]] std::vector<Change> start();
  /// How what there is differs from what was told last, path by path. What two paths cover is told for each. Nothing
  /// before start().
  [[nodiscard]] std::vector<Change> changes();

 private:
  Selection selection_;
  Look const look_;  // but for what is filled, of which each place has its own
  Following following_;
  std::vector<std::unique_ptr<FollowedEntity>> followed_;  // one a path
};

}  // namespace Apps::Attributes
