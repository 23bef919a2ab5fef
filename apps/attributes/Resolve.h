// Paths to places: "status.numVrfs", "status.inUseArpEntries[0]", "auditStatus.auditInfo[kernel].table[ipv4]".
// A path begins with a root entity. Behind it stand attributes, each with a key in brackets where it is a collection.
// Names, and keys that are texts, stand as they are or in quotes; other keys stand in the text form of their type.
#pragma once

#include "apps/attributes/Place.h"
#include "platform/vek/Dir.h"

#include <string_view>

namespace Apps::Attributes {

/// What to do about a child on the way that is not there.
enum class Missing { refuse, make };

/// The place of a path; what is at its end need not be there. Paths are typed by people and programs: one of more than
/// 4,096 bytes or 32 attributes is refused. Throws Misfit.
[[nodiscard]] Place resolve(Vek::Dir const& roots, std::string_view path, Missing missing = Missing::refuse);

/// The key that a collection needs, as an example in a sentence.
[[nodiscard]] std::string keyHint(Place const& collection);

}  // namespace Apps::Attributes
