# Instrumentation holds for the whole build or not at all: mixed objects would miss faults or invent them.
set(DORNL3_SANITIZE "" CACHE STRING "Sanitizers to build with: 'address,undefined' or 'thread'; empty for none")
option(DORNL3_COVERAGE "Count executed lines" OFF)

if(DORNL3_SANITIZE)
  add_compile_options(-fsanitize=${DORNL3_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -O1)
  add_link_options(-fsanitize=${DORNL3_SANITIZE})
else()
  # A layer that needs a symbol nobody gives is told at link time. (Sanitizers resolve theirs from the program.)
  string(APPEND CMAKE_SHARED_LINKER_FLAGS " -Wl,-z,defs")
endif()

if(DORNL3_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)  # libFuzzer steers by what the libraries execute
endif()

if(DORNL3_COVERAGE)
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
endif()

if(CMAKE_BUILD_TYPE STREQUAL "Debug")
  add_compile_definitions(_GLIBCXX_ASSERTIONS)
endif()
