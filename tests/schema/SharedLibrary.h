// SharedLibrary: what stands in a library file, read without loading it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class SharedLibrary {
 public:
  struct Section {
    std::string name;
    std::uint32_t type = 0;
    std::uint64_t flags = 0;
    std::uint64_t alignment = 0;
    std::string_view content;  // empty where the file holds none
    std::uint32_t link = 0;    // of a table of names: where they stand
  };

  /// Reads a library of this machine's kind. Throws std::runtime_error for any other file, or a damaged one.
  explicit SharedLibrary(std::filesystem::path const& path);

  /// The section of that name, the first if there are several.
  std::optional<Section> section(std::string_view name) const;
  /// The libraries that this one needs, by file name, in the order of the file.
  std::vector<std::string> needed() const;
  /// The names, as people write them, of what the library offers to others, sorted. Constructors and destructors
  /// stand there more than once.
  std::vector<std::string> exported() const;

 private:
  template <class Entry>
  std::vector<Entry> entries(std::uint32_t sectionType, std::string_view& names) const;

  std::string file_;
  std::vector<Section> sections_;
};
