// Write: files on disk, touched only where they change, so that a build does no work for what stayed the same.
#pragma once

#include <filesystem>
#include <string_view>

namespace Schemac {

enum class Written { unchanged, written };

/// Makes `path` hold `text`, with the folders above it. Readers see the old file or the new one, never a part: the text
/// goes into a file beside it, which then takes its name. Throws FileError.
Written writeIfChanged(std::filesystem::path const& path, std::string_view text);

}  // namespace Schemac
