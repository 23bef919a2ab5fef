# dornl3_add_schema(TARGET [INCLUDE_PREFIX folder] [OUTPUT_DIR dir] files...)
#
# Generates types from schema files: each X.toml becomes X.h and X.cpp, which TARGET compiles and finds as
# "INCLUDE_PREFIX/X.h". INCLUDE_PREFIX may have several parts and is the project's name by default. The files lie under
# OUTPUT_DIR, by default generated/TARGET in the current build folder. The sources join TARGET in the order of the files,
# which is the order in which their types register when the program loads. Records of types live until the process ends:
# a library that holds types stays mapped when it is closed.
# TARGET must link DornL3Unicast::Vek or DornL3Unicast::Types.
function(dornl3_add_schema target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "OUTPUT_DIR;INCLUDE_PREFIX" "")
  if(NOT arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "dornl3_add_schema(${target} ...) names no schema file. Give one or more .toml files.")
  endif()
  if(NOT arg_OUTPUT_DIR)
    set(arg_OUTPUT_DIR ${CMAKE_CURRENT_BINARY_DIR}/generated/${target})
  endif()

  if(NOT arg_INCLUDE_PREFIX)
    set(arg_INCLUDE_PREFIX ${PROJECT_NAME})
  endif()

  set(schemas "")
  set(outputs "")
  foreach(file IN LISTS arg_UNPARSED_ARGUMENTS)
    cmake_path(ABSOLUTE_PATH file NORMALIZE OUTPUT_VARIABLE schema)
    cmake_path(GET file STEM LAST_ONLY stem)
    list(APPEND schemas ${schema})
    list(APPEND outputs ${arg_OUTPUT_DIR}/${arg_INCLUDE_PREFIX}/${stem}.h ${arg_OUTPUT_DIR}/${arg_INCLUDE_PREFIX}/${stem}.cpp)
  endforeach()

  add_custom_command(
    OUTPUT ${outputs}
    COMMAND DornL3Unicast::schemac compile --out ${arg_OUTPUT_DIR} --include-prefix ${arg_INCLUDE_PREFIX} ${schemas}
    DEPENDS DornL3Unicast::schemac ${schemas}
    COMMENT "Generating types of ${target}"
    VERBATIM)
  target_sources(${target} PRIVATE ${outputs})
  set_property(TARGET ${target} APPEND PROPERTY DORNL3_SCHEMAS ${schemas})
  target_include_directories(${target} BEFORE PUBLIC $<BUILD_INTERFACE:${arg_OUTPUT_DIR}>)
  get_target_property(kind ${target} TYPE)
  if(kind MATCHES "STATIC|OBJECT")
    target_link_options(${target} INTERFACE -Wl,-z,nodelete)  # of whatever they become part of
  else()
    target_link_options(${target} PRIVATE -Wl,-z,nodelete)
  endif()
  # Whoever includes the headers needs them before it compiles, and linting needs them without a full build.
  add_custom_target(${target}_schema DEPENDS ${outputs})
  add_dependencies(${target} ${target}_schema)
endfunction()
