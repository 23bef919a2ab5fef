// Read: the text of a schema file to the structs of Schema.h. The only file that knows toml++.
//
// Reading judges form alone: TOML, known keys, the kind of each value, keys that must not be missing. What a well
// formed file says is Check's to judge.
#pragma once

#include "schemac/Complaint.h"
#include "schemac/Schema.h"

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace Schemac {

/// A file that cannot be read or written; `what()` says which, and why.
class FileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What reading gave: the file as far as it could be read, none where it is no TOML at all, and what is wrong.
struct ReadResult {
  std::optional<File> file;
  Complaints complaints;
};

/// Longest schema file and longest line that are read, in bytes. The second bounds how deep tables can nest.
constexpr std::size_t maxFileSize = 1024 * 1024;
constexpr std::size_t maxLineLength = 2000;

/// Reads a schema file, and of an endless one no more than tells that it is too long. Throws FileError where it cannot
/// be read.
[[nodiscard]] ReadResult readFile(std::filesystem::path const& path);

/// Reads a schema from `text`; `path` is what complaints call it, and gives the stem.
[[nodiscard]] ReadResult readText(std::filesystem::path const& path, std::string_view text);

}  // namespace Schemac
