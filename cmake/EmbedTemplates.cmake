# Writes OUTPUT, a C++ source that holds every template of TEMPLATES (a comma-separated list of files) by name.
# Run with cmake -P at build time; see schemac/CMakeLists.txt.
string(REPLACE "," ";" templates "${TEMPLATES}")
list(SORT templates)

set(entries "")
foreach(file IN LISTS templates)
  cmake_path(GET file STEM LAST_ONLY name)
  file(READ "${file}" text)
  string(APPEND entries "    {\"${name}\", R\"mustache(${text})mustache\"},\n")
endforeach()

file(WRITE "${OUTPUT}.new" "// Made from schemac/templates at build time.
#include \"schemac/EmbeddedTemplates.h\"

namespace Schemac {

namespace {
constexpr EmbeddedTemplate all[] = {
${entries}};
}

std::span<EmbeddedTemplate const> embeddedTemplates() noexcept { return all; }

}  // namespace Schemac
")
file(COPY_FILE "${OUTPUT}.new" "${OUTPUT}" ONLY_IF_DIFFERENT)
file(REMOVE "${OUTPUT}.new")
