# Windows builds of the tests: the checks of the DLLs' export and import
# tables, and a C host that shows a Windows host gets the same command bytes
# as a Linux host. Programs and kalvor.dll share bin/ (see the top-level
# CMakeLists.txt); a test picks its LASER.DLL with WINEPATH.
set(KALVOR_WINDOWS_TESTS "${CMAKE_CURRENT_LIST_DIR}")

# A test program's LASER.DLL is the one in <transport folder>: Wine runs it
# with that folder on WINEPATH, for ctest's listing of its tests too. kalvor.dll
# shows its messages in message boxes; in test programs they are also written
# to standard error, as on Linux, so the same tests read them.
function(kalvor_windows_test_program target transport_folder)
  target_sources(${target} PRIVATE "${KALVOR_WINDOWS_TESTS}/message_box_hook.cpp")
  if(CMAKE_CROSSCOMPILING_EMULATOR)
    set_target_properties(${target} PROPERTIES
      CROSSCOMPILING_EMULATOR "${CMAKE_CROSSCOMPILING_EMULATOR};--dll-path=${transport_folder}")
  endif()
endfunction()

# The Wine prefix is made while building, not by the first test that runs.
if(CMAKE_CROSSCOMPILING_EMULATOR)
  add_custom_target(wine_prefix ALL COMMAND ${CMAKE_CROSSCOMPILING_EMULATOR} --prepare
    COMMENT "Preparing the Wine prefix" VERBATIM)
endif()

# ---- export and import tables ----------------------------------------------
# Run on the build machine with the cross binutils: nothing here needs Wine.
set(pe_check "${KALVOR_WINDOWS_TESTS}/check_pe.sh")
add_test(NAME windows.kalvor_exports
  COMMAND ${pe_check} exports ${CMAKE_OBJDUMP} $<TARGET_FILE:kalvor> ${KALVOR_EXPORT_LIST})
add_test(NAME windows.kalvor_imports
  COMMAND ${pe_check} imports ${CMAKE_OBJDUMP} $<TARGET_FILE:kalvor>)
foreach(transport recorder recorder-noprint)
  string(REPLACE "-" "_" target "transport_${transport}")
  add_test(NAME windows.${target}_exports
    COMMAND ${pe_check} exports ${CMAKE_OBJDUMP} $<TARGET_FILE:${target}>
      ${PROJECT_SOURCE_DIR}/transports/recorder/${transport}.def)
  add_test(NAME windows.${target}_imports
    COMMAND ${pe_check} imports ${CMAKE_OBJDUMP} $<TARGET_FILE:${target}>)
endforeach()
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  # 32-bit: every export is caller-cleans (no stdcall "name@n" in the DLL).
  add_test(NAME windows.kalvor_cdecl
    COMMAND ${pe_check} cdecl ${CMAKE_NM} $<TARGET_FILE:kalvor> ${KALVOR_EXPORT_LIST})
endif()

# ---- the Win32 platform file on its own -------------------------------------
add_executable(kalvor_tests_platform "${KALVOR_WINDOWS_TESTS}/test_platform_win32.cpp"
  ${PROJECT_SOURCE_DIR}/src/platform/platform_win32.cpp ${PROJECT_SOURCE_DIR}/src/platform/profile_parser.cpp
  ${PROJECT_SOURCE_DIR}/src/platform/windows_1252.cpp
  ${PROJECT_SOURCE_DIR}/src/platform/path_parts.cpp)
target_include_directories(kalvor_tests_platform PRIVATE ${PROJECT_SOURCE_DIR}/src)
target_link_libraries(kalvor_tests_platform PRIVATE GTest::gtest_main)
target_compile_options(kalvor_tests_platform PRIVATE ${KALVOR_WARNINGS})
if(CMAKE_CROSSCOMPILING_EMULATOR)
  gtest_discover_tests(kalvor_tests_platform DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT 120)
endif()

# ---- a C host: the command bytes it gets ------------------------------------
# host_bytes prints every command that its calls send. Its imports are checked
# here; where it can run (Wine), its output is compared with the same program
# built and run on Linux, when KALVOR_NATIVE_BUILD names a Linux build folder.
add_executable(host_bytes "${KALVOR_WINDOWS_TESTS}/host_bytes.c")
target_link_libraries(host_bytes PRIVATE kalvor)
target_compile_options(host_bytes PRIVATE ${KALVOR_WARNINGS})
add_dependencies(host_bytes transport_recorder)
add_test(NAME windows.host_bytes_imports
  COMMAND ${pe_check} host-imports ${CMAKE_OBJDUMP} $<TARGET_FILE:host_bytes>)
set(KALVOR_NATIVE_BUILD "" CACHE PATH "A Linux build folder of this tree, to compare host_bytes with")
if(CMAKE_CROSSCOMPILING_EMULATOR AND KALVOR_NATIVE_BUILD)
  add_test(NAME windows.host_bytes_match_linux
    COMMAND ${KALVOR_WINDOWS_TESTS}/compare_host_bytes.sh ${PROJECT_SOURCE_DIR} ${KALVOR_NATIVE_BUILD}
      ${CMAKE_CROSSCOMPILING_EMULATOR} --dll-path=${CMAKE_BINARY_DIR}/transports/recorder
      $<TARGET_FILE:host_bytes>)
endif()

# ---- profile files: read alike on Linux and Windows -------------------------
# profile_host reads generated profile files through kalvor; the same host
# built for Linux must print the same results, or the test shows the smallest
# file that differs. Wine's profile functions are the reference.
add_executable(profile_host "${PROJECT_SOURCE_DIR}/tests/profile/profile_host.c")
target_link_libraries(profile_host PRIVATE kalvor)
target_compile_options(profile_host PRIVATE ${KALVOR_WARNINGS})
add_dependencies(profile_host transport_recorder)
if(CMAKE_CROSSCOMPILING_EMULATOR AND KALVOR_NATIVE_BUILD)
  add_test(NAME windows.profiles_match_linux
    COMMAND ${PROJECT_SOURCE_DIR}/tests/profile/compare_profiles.py ${PROJECT_SOURCE_DIR} ${KALVOR_NATIVE_BUILD}
      ${CMAKE_CURRENT_BINARY_DIR}/profiles ${CMAKE_CROSSCOMPILING_EMULATOR}
      --dll-path=${CMAKE_BINARY_DIR}/transports/recorder $<TARGET_FILE:profile_host>)
  set_tests_properties(windows.profiles_match_linux PROPERTIES SKIP_RETURN_CODE 77 TIMEOUT 900)
endif()
