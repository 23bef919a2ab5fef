// Emitted: what schemac makes of a schema file, for tests that look at it.
#pragma once

#include "schemac/Render.h"
#include "schemac/Templates.h"
#include "schemac/View.h"
#include "tests/schemac/Schemas.h"

#include <sstream>
#include <string>

namespace Schemac::Test {

struct Emitted {
  std::string header;
  std::string source;

  /// Without those that include other headers.
  [[nodiscard]] int lines() const {
    int count = 0;
    for (std::string const* text : {&header, &source}) {
      std::istringstream in(*text);
      for (std::string line; std::getline(in, line);) count += line.rfind("#include", 0) != 0 ? 1 : 0;
    }
    return count;
  }
};

inline Emitted emit(File const& file, std::string const& includePrefix) {
  Data const view = viewOf(file, includePrefix);
  return {render("Header", view, embeddedTemplate), render("Source", view, embeddedTemplate)};
}

/// One type or attribute of every shape: what is emitted for it is kept, as tests/frame/Toy.h and Toy.cpp.
inline File toyFile() { return *readFile(sourceDirectory() / "tests/frame/Toy.toml").file; }

/// All that the house emits: the four schema files of the library, and the toys.
inline std::vector<File> allFiles() {
  std::vector<File> files{toyFile()};
  for (std::string const& stem : houseStems()) files.push_back(houseFile(stem));
  return files;
}

}  // namespace Schemac::Test
