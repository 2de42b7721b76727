# The Debian package, made by CPack from the install rules:
#   cmake -S . -B build-package -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX=/usr
#   cmake --build build-package && (cd build-package && cpack -G DEB)
# One package holds the library, its header, CMake and pkg-config files, the
# tool and the virtual transport: kalvor is small and has no other users yet.

set(KALVOR_MAINTAINER "kalvor maintainers <maintainers@users.noreply.c-seed-4d5adeba.example>"
  CACHE STRING "Maintainer named in the Debian package")

# Debian wants a copyright file and the package's changelog in its doc folder.
# They are installed by every install, which does no harm elsewhere.
if(NOT WIN32)
  set(kalvor_docdir "${CMAKE_INSTALL_DATAROOTDIR}/doc/kalvor")
  install(FILES cmake/debian/copyright DESTINATION ${kalvor_docdir})
  find_program(KALVOR_GZIP gzip)
  if(KALVOR_GZIP)
    set(kalvor_changelog "${CMAKE_CURRENT_BINARY_DIR}/changelog.gz")
    # -n keeps the file name and time out of the archive, so the package is
    # reproducible.
    install(CODE "execute_process(COMMAND \"${KALVOR_GZIP}\" -9nc \"${CMAKE_CURRENT_SOURCE_DIR}/cmake/debian/changelog\"
      OUTPUT_FILE \"${kalvor_changelog}\" COMMAND_ERROR_IS_FATAL ANY)")
    install(FILES "${kalvor_changelog}" DESTINATION ${kalvor_docdir})
  endif()
endif()

set(CPACK_PACKAGE_NAME kalvor)
set(CPACK_PACKAGE_VENDOR "The kalvor authors")
set(CPACK_RESOURCE_FILE_LICENSE "${CMAKE_CURRENT_SOURCE_DIR}/LICENSE")
set(CPACK_PACKAGE_CONTACT "${KALVOR_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "command library for laser scanners")
set(CPACK_PACKAGE_DESCRIPTION "\
kalvor lets laser-show applications drive up to 20 laser projectors
(scanners) through flat C functions. It keeps each scanner's tracks,
transforms, colour buffers and palettes, turns the calls into command byte
strings for a transport library named LASER.DLL, and reads and writes laser
picture files (ILDA and others).

This package holds the shared library, its C header, CMake and pkg-config
files, the kalvor command-line tool, a virtual scanner transport and an
IDN transport that streams frames to laser projectors on the network.")
set(CPACK_STRIP_FILES ON)
if(WIN32)
  # The Windows release archive (cpack -G ZIP in a Windows build folder): one
  # folder per architecture, each a whole install prefix, so a host takes the
  # folder that matches it. KALVOR_WINDOWS_PAIR_BUILD names the other
  # architecture's build folder, built first; without it the archive holds
  # this build alone.
  install(FILES LICENSE DESTINATION .)
  install(FILES "${CMAKE_CURRENT_BINARY_DIR}/kalvor.def" DESTINATION ${CMAKE_INSTALL_LIBDIR})
  set(KALVOR_WINDOWS_PAIR_BUILD "" CACHE PATH "Build folder of the other Windows architecture, for the archive")
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    set(kalvor_windows_folders x64 x86)
  else()
    set(kalvor_windows_folders x86 x64)
  endif()
  list(GET kalvor_windows_folders 0 kalvor_own_folder)
  list(GET kalvor_windows_folders 1 kalvor_pair_folder)
  set(CPACK_INSTALL_CMAKE_PROJECTS "${CMAKE_BINARY_DIR};kalvor;ALL;/${kalvor_own_folder}")
  if(KALVOR_WINDOWS_PAIR_BUILD)
    list(APPEND CPACK_INSTALL_CMAKE_PROJECTS "${KALVOR_WINDOWS_PAIR_BUILD};kalvor;ALL;/${kalvor_pair_folder}")
  endif()
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME "kalvor-${PROJECT_VERSION}-windows")
  include(CPack)
  return()
endif()
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${KALVOR_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# Dependencies come from the binaries; the shlibs file and the ldconfig
# trigger make the library usable by other packages.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA "${CMAKE_CURRENT_SOURCE_DIR}/cmake/debian/triggers")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
