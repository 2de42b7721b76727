# Hardening tests: every export with hostile arguments, hostile transport
# answers and failing saves. The list of every export is generated from the
# export list, so a new export is covered as soon as it is listed.
file(STRINGS "${KALVOR_EXPORT_LIST}" hostile_names REGEX "^[ \t]*[A-Za-z_]")
set(hostile_list "")
foreach(name ${hostile_names})
  string(STRIP "${name}" name)
  string(APPEND hostile_list " \\\n  X(${name})")
endforeach()
file(CONFIGURE OUTPUT "${CMAKE_CURRENT_BINARY_DIR}/hostile/every_export.h"
  CONTENT "// Generated from the export list: X(name) for every exported name.\n#pragma once\n#define KALVOR_EVERY_EXPORT(X)${hostile_list}\n")

file(GLOB hostile_sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/hostile/test_*.cpp")
kalvor_add_test_program(kalvor_tests_hostile recorder ${hostile_sources})
target_include_directories(kalvor_tests_hostile PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/hostile")
