# Debian packages of the install components, made by `cpack -G DEB`; see scripts/check_packages.sh.
#
# The library's package has the SOVERSION in its name, so that two of them can be installed side by side; it changes
# whenever callers have to be compiled anew (see docs/packages.md).
set(version ${PROJECT_VERSION})

# What every package of Debian has: a licence and a changelog under its own name.
file(WRITE ${PROJECT_BINARY_DIR}/debian/changelog
     "quilon (${version}) unstable; urgency=medium\n\n  * See CHANGELOG.md.\n\n -- QuilonDbDataTools developers <quilon@localhost.invalid>  Thu, 01 Jan 2026 00:00:00 +0000\n")
execute_process(COMMAND gzip -9nf ${PROJECT_BINARY_DIR}/debian/changelog)
file(WRITE ${PROJECT_BINARY_DIR}/debian/triggers "activate-noawait ldconfig\n")
file(CHMOD ${PROJECT_BINARY_DIR}/debian/triggers PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quilon)
set(CPACK_PACKAGE_VERSION ${version})
set(CPACK_PACKAGE_CONTACT "QuilonDbDataTools developers <quilon@localhost.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ
                                                WORLD_EXECUTE)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
    ${PROJECT_BINARY_DIR}/src ${PROJECT_BINARY_DIR}/siblings/QuilonUtilities
    ${PROJECT_BINARY_DIR}/siblings/QuilonOnfSpecification ${PROJECT_BINARY_DIR}/siblings/QuilonDbConnector
    ${PROJECT_BINARY_DIR}/siblings/QuilonOnfEngine)

set(CPACK_COMPONENTS_ALL "")
# quilon_package(<component> <name> <section> <summary> <description> [<dependency>])
macro(quilon_package component name section summary description)
  string(TOUPPER ${component} upper)
  list(APPEND CPACK_COMPONENTS_ALL ${component})
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name})
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
  set(CPACK_COMPONENT_${upper}_DESCRIPTION "${summary}\n${description}")
  set(CPACK_DEBIAN_${upper}_PACKAGE_DEPENDS "${ARGN}")
  install(FILES ${PROJECT_BINARY_DIR}/debian/changelog.gz DESTINATION share/doc/${name} COMPONENT ${component})
  install(FILES packaging/debian/copyright DESTINATION share/doc/${name} COMPONENT ${component})
endmacro()

set(library libquilondbdatatools${QUILON_SOVERSION})
quilon_package(
  Runtime ${library} libs "data tools for finite-element results"
  "Averages element values at nodes, gathers internal forces, derives principal\nvalues, measures and compares result databases. With the database on disk."
  )
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/debian/triggers)
quilon_package(
  Development libquilondbdatatools-dev libdevel "data tools for finite-element results, development files"
  "Headers, the CMake package Quilon, files of pkg-config and examples."
  "${library} (= ${version})")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
quilon_package(
  Program quilon science "finite-element results: import, compare, query"
  "The program quilon imports the results of finite-element calculations, lists,\nshows and compares them, and checks decks."
  "${library} (= ${version})")
quilon_package(
  Documentation libquilondbdatatools-doc doc "data tools for finite-element results, manual"
  "The manual of the library, the program and the Python package.")
set(CMAKE_INSTALL_DOCDIR share/doc/libquilondbdatatools-doc)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_ARCHITECTURE all)
if(TARGET quilon-mpi)
  quilon_package(
    Mpi quilon-mpi science "finite-element results: quilon in several processes"
    "The program quilon-mpi runs commands of quilon in processes of an MPI program,\non one machine or many, which share the work."
    "quilon (= ${version})")
endif()
if(TARGET quilon_python)
  # The module is one of this minor version of Python.
  find_package(Python REQUIRED COMPONENTS Interpreter)
  math(EXPR quilon_next_python "${Python_VERSION_MINOR} + 1")
  quilon_package(
    Python python3-quilon python "data tools for finite-element results, Python package"
    "Result databases as NumPy arrays: read, write, average, compare."
    "${library} (= ${version}), python3 (>= ${Python_VERSION_MAJOR}.${Python_VERSION_MINOR}), python3 (<< ${Python_VERSION_MAJOR}.${quilon_next_python}), python3-numpy")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_RECOMMENDS python3-pandas)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/debian/python/postinst
                                                ${PROJECT_SOURCE_DIR}/packaging/debian/python/prerm)
endif()
include(CPack)
