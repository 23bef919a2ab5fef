// Schemas: schema texts for tests, and what reading and checking them gives.
#pragma once

#include "schemac/Check.h"
#include "schemac/Read.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace Schemac::Test {

inline std::filesystem::path sourceDirectory() { return DORNL3_SOURCE_DIR; }

inline std::string const acme = "namespace = \"Acme\"\n";

/// A type with attributes, each a table with a comma behind it.
inline std::string typed(std::string const& kind, std::string const& name, std::string const& attributes) {
  return "[[" + kind + "]]\nname = \"" + name + "\"\ndoc = \"d\"\nattributes = [\n" + attributes + "\n]\n";
}

/// Everything that is wrong with `text`, as the program tells it.
inline Complaints complaintsOf(std::string const& path, std::string_view text) {
  ReadResult const result = readText(path, text);
  Complaints all = result.complaints;
  if (result.file) {
    Complaints const found = check({*result.file});
    all.insert(all.end(), found.begin(), found.end());
  }
  sort(all);
  return all;
}

/// The file that `text` describes; a complaint ends the test.
inline File good(std::string_view text, std::string const& path = "Toy.toml") {
  for (Complaint const& complaint : complaintsOf(path, text)) throw std::runtime_error(toString(complaint));
  return *readText(path, text).file;
}

/// One schema file of the house, read and not checked.
inline File houseFile(std::string const& stem) {
  return *readFile(sourceDirectory() / "dornl3/schema" / (stem + ".toml")).file;
}

inline std::vector<std::string> const& houseStems() {
  static std::vector<std::string> const stems = {"Status", "AuditStatus", "DornL3CliConfig", "AclIntf"};
  return stems;
}

}  // namespace Schemac::Test
