// Emitted: what schemac makes of a schema file, for tests that look at it.
#pragma once

#include "schemac/Render.h"
#include "schemac/Templates.h"
#include "schemac/View.h"
#include "tests/schemac/Schemas.h"

#include <string>

namespace Schemac::Test {

struct Emitted {
  std::string header;
  std::string source;
};

inline Emitted emit(File const& file, std::string const& includePrefix) {
  Data const view = viewOf(file, includePrefix);
  return {render("Header", view, embeddedTemplate), render("Source", view, embeddedTemplate)};
}

/// One type or attribute of every shape.
inline File toyFile() { return *readFile(sourceDirectory() / "tests/frame/Toy.toml").file; }

}  // namespace Schemac::Test
