# What `cmake --install build --prefix PREFIX` puts where (GNU directories under PREFIX):
#   bin/velmoria                                   the program
#   lib/libvelmoria.a                              the core library (Velmoria::velmoria)
#   include/velmoria/velmoria.hpp, version.hpp     its public header, self-contained
#   lib/cmake/Velmoria/                            the CMake package: find_package(Velmoria)
#   lib/pkgconfig/velmoria.pc                      the pkg-config file
#   share/man/man1/velmoria.1.gz                   the manual page
#   share/doc/velmoria/examples/                   the example control files, and the README
#   lib/python3/dist-packages/velmoria/            the Python module, when it was built
# The JSON writer is not installed as a library: it is reached through `velmoria --json`, and
# its header needs the core's inner records.
include(CMakePackageConfigHelpers)

set(VELMORIA_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Velmoria)
set(VELMORIA_PYTHON_DIR lib/python3/dist-packages
    CACHE STRING "Folder under the prefix for the Python package (Debian's layout)")

# The core library, installed as libvelmoria.a and exported as Velmoria::velmoria.  A program
# built against it needs C++17 for the public header.
set_target_properties(velmoria_core PROPERTIES OUTPUT_NAME velmoria EXPORT_NAME velmoria)
target_compile_features(velmoria_core INTERFACE cxx_std_17)

install(TARGETS velmoria RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS velmoria_core EXPORT VelmoriaTargets
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES ${CMAKE_SOURCE_DIR}/include/velmoria/velmoria.hpp
              ${CMAKE_BINARY_DIR}/include/velmoria/version.hpp
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/velmoria)

# The CMake package.
install(EXPORT VelmoriaTargets NAMESPACE Velmoria:: DESTINATION ${VELMORIA_CMAKE_DIR})
configure_package_config_file(${CMAKE_SOURCE_DIR}/cmake/VelmoriaConfig.cmake.in
                              ${CMAKE_BINARY_DIR}/VelmoriaConfig.cmake
                              INSTALL_DESTINATION ${VELMORIA_CMAKE_DIR})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/VelmoriaConfigVersion.cmake
                                 VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/VelmoriaConfig.cmake ${CMAKE_BINARY_DIR}/VelmoriaConfigVersion.cmake
        DESTINATION ${VELMORIA_CMAKE_DIR})

# The pkg-config file finds the prefix from its own place, so that it stays right wherever
# `cmake --install --prefix` puts the tree.
file(RELATIVE_PATH VELMORIA_PC_TO_PREFIX /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(${CMAKE_SOURCE_DIR}/cmake/velmoria.pc.in ${CMAKE_BINARY_DIR}/velmoria.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/velmoria.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# The manual page, compressed as Debian keeps manual pages.
find_program(GZIP_PROGRAM gzip REQUIRED)
add_custom_command(OUTPUT ${CMAKE_BINARY_DIR}/velmoria.1.gz
                   COMMAND ${GZIP_PROGRAM} -9 -n -c ${CMAKE_SOURCE_DIR}/doc/velmoria.1 >
                           ${CMAKE_BINARY_DIR}/velmoria.1.gz
                   DEPENDS ${CMAKE_SOURCE_DIR}/doc/velmoria.1 VERBATIM)
add_custom_target(velmoria_manual ALL DEPENDS ${CMAKE_BINARY_DIR}/velmoria.1.gz)
install(FILES ${CMAKE_BINARY_DIR}/velmoria.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

install(DIRECTORY ${CMAKE_SOURCE_DIR}/examples/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples
        FILES_MATCHING PATTERN "*.vrn")
install(FILES ${CMAKE_SOURCE_DIR}/README.md DESTINATION ${CMAKE_INSTALL_DOCDIR})

# The Python module, when this build made it: the extension and the package's Python files in
# one folder velmoria/ on Debian's path of Python 3.
if(TARGET velmoria_python)
  install(TARGETS velmoria_python LIBRARY DESTINATION ${VELMORIA_PYTHON_DIR}/velmoria)
  install(DIRECTORY ${CMAKE_SOURCE_DIR}/python/velmoria/ DESTINATION ${VELMORIA_PYTHON_DIR}/velmoria
          FILES_MATCHING PATTERN "*.py" PATTERN "__pycache__" EXCLUDE)
endif()

# The tests of an installed tree and of the Debian package, in the release build only: they
# install what the build made, which the sanitizer builds would bring their runtimes into.
if(NOT VELMORIA_SANITIZE AND NOT VELMORIA_TSAN)
  foreach(test InstallTree DebianPackage)
    string(REGEX REPLACE "([a-z])([A-Z])" "\\1_\\2" script ${test})
    string(TOLOWER ${script} script)
    add_test(NAME ${test}
             COMMAND bash ${CMAKE_SOURCE_DIR}/tests/install/${script}.sh ${CMAKE_BINARY_DIR}
                     ${CMAKE_SOURCE_DIR} ${PROJECT_VERSION} $<TARGET_EXISTS:velmoria_python>)
    set_tests_properties(${test} PROPERTIES RESOURCE_LOCK velmoria_install)
  endforeach()
endif()
