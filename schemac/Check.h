// Check: whether well-formed schema files make sense.
//
// After a check without complaints, and only then, View may take every promise of Schema.h for granted: names are
// legal and unique, types known, shapes clean, numbers without a gap.
#pragma once

#include "schemac/Complaint.h"
#include "schemac/Schema.h"

#include <vector>

namespace Schemac {

constexpr std::size_t maxTypes = 256;         ///< in a file
constexpr std::size_t maxAttributes = 512;    ///< of a type, retired ones among them
constexpr std::size_t maxNameLength = 64;     ///< of a type, attribute or factory, or one part of a namespace
constexpr std::size_t maxNamespaceParts = 8;  ///< in a namespace
constexpr std::size_t maxDocLength = 200;     ///< bytes of a doc
constexpr std::size_t maxTextDefault = 200;   ///< bytes of the default of a text

/// Everything that is wrong in `files`, each by itself and all together (a name that two of them define), sorted.
/// What Read complained about already is not told again: a key that could not be read counts as right.
[[nodiscard]] Complaints check(std::vector<File> const& files);

/// What is wrong with the names of the files, which headers and the functions that register types take over: how they
/// are spelt, and that two are alike. One complaint a file at most.
[[nodiscard]] Complaints checkFileNames(std::vector<File> const& files);

}  // namespace Schemac
