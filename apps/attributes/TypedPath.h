// TypedPath: a path as it is written, read against the types alone: what it names need not be there yet.
// "status.numVrfs", "status.inUseArpEntries[0]", "auditStatus.auditInfo[kernel].table[ipv4]". A path begins with a root
// entity. Behind it stand attributes, each with a key in brackets where it is a collection. Names, and keys that are
// texts, stand as they are or in quotes; other keys stand in the text form of their type.
#pragma once

#include "apps/attributes/Place.h"
#include "dornl3/platform/vek/Dir.h"

#include <string>
#include <string_view>
#include <vector>

namespace Apps::Attributes {

/// An attribute of what the path led to so far, or one member of it.
struct Step {
  Vek::VekAttr const* attr;
  GenericConst key = {};
  std::string path;  // up to here, as the entity itself would write it
};

struct TypedPath {
  Vek::Ptr<Vek::Entity> root;
  std::vector<Step> steps;
};

/// Paths are typed by people and programs: one of more than 4,096 bytes or 32 attributes is refused. Throws Misfit
/// where nothing of the path's form can ever be.
[[nodiscard]] TypedPath readPath(Vek::Dir const& roots, std::string_view path);

/// The key that a collection needs, as an example in a sentence. `path`: of the collection.
[[nodiscard]] std::string keyHint(std::string_view path, Vek::VekAttr const& collection);

}  // namespace Apps::Attributes
