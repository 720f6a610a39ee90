# The Debian package: `cpack -G DEB` in the build folder writes velmoria_<version>_<arch>.deb,
# holding what `cmake --install` installs, under /usr.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME velmoria)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "Velmoria developers")
set(CPACK_PACKAGE_CONTACT "Velmoria developers <developers@velmoria.invalid>")
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Velmoria developers <developers@velmoria.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
    "representation analysis of magnetic and displacive structures")
set(CPACK_PACKAGE_DESCRIPTION
    "Velmoria works out, for a space group, a propagation vector k and the atom sites that \
carry magnetic moments or displacements, the little group of k, the star of k and the \
irreducible representations of the little group, decomposes the magnetic or mechanical \
representation of every site, projects out the basis functions and writes the Fourier \
coefficients and a block of lines for the control file of the refinement program Tarnweld. \
The package holds the program, its manual page and examples, and the library with a C++ \
header, a CMake package and a pkg-config file for programs that call it.")
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)  # velmoria_5.0_amd64.deb

# The shared libraries that the program uses, each from the package that holds it.
# dpkg-shlibdeps works out the least versions where it is at hand (Debian's dpkg-dev);
# otherwise the versions of the toolchain this is built with stand.
find_program(DPKG_SHLIBDEPS dpkg-shlibdeps)
if(DPKG_SHLIBDEPS)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
else()
  set(CPACK_DEBIAN_PACKAGE_DEPENDS "libc6 (>= 2.34), libgcc-s1 (>= 3.0), libstdc++6 (>= 12)")
endif()
if(TARGET velmoria_python)
  set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "python3, python3-numpy")
endif()

include(CPack)
