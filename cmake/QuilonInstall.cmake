# What goes into the install tree, and the package that finds it: find_package(Quilon), then Quilon::DbDataTools. Its
# contract symbols are undefined, so a program links siblings beside it: Quilon::Siblings where ours are bundled.
#
# Components: Runtime (shared libraries), Development (headers, CMake package, files of pkg-config, examples), Program (quilon,
# man pages, completions), Mpi (quilon-mpi, where it is built), Documentation (licence, README, manual), Python (where it is
# built). Without --component all of them are installed.
include(CMakePackageConfigHelpers)

set(quilon_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Quilon)

set_target_properties(quilon_contract PROPERTIES EXPORT_NAME Contract)
set_target_properties(QuilonDbDataTools PROPERTIES EXPORT_NAME DbDataTools)
set(quilon_libraries LIBRARY COMPONENT Runtime NAMELINK_COMPONENT Development RUNTIME COMPONENT Runtime
                     ARCHIVE COMPONENT Development)
install(TARGETS quilon_contract QuilonDbDataTools EXPORT QuilonTargets ${quilon_libraries}
        FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/quilon COMPONENT Development)
install(DIRECTORY contract/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/quilon/contract COMPONENT Development
        FILES_MATCHING PATTERN *.h)

if(QUILON_SIBLINGS STREQUAL bundled)
  foreach(sibling Utilities OnfSpecification DbConnector OnfEngine)
    set_target_properties(Quilon${sibling} PROPERTIES EXPORT_NAME ${sibling})
    target_include_directories(
      Quilon${sibling} INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/quilon/siblings>)
    set_target_properties(Quilon${sibling} PROPERTIES INSTALL_RPATH "\$ORIGIN")
    install(TARGETS Quilon${sibling} EXPORT QuilonTargets ${quilon_libraries})
    install(DIRECTORY siblings/Quilon${sibling}/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/quilon/siblings
            COMPONENT Development OPTIONAL FILES_MATCHING PATTERN *.h)
  endforeach()
  set_target_properties(quilon_siblings PROPERTIES EXPORT_NAME Siblings)
  install(TARGETS quilon_siblings EXPORT QuilonTargets)
  if(TARGET quilon)
    set_target_properties(quilon PROPERTIES INSTALL_RPATH "\$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
    install(TARGETS quilon RUNTIME COMPONENT Program)
    install(DIRECTORY ${PROJECT_BINARY_DIR}/host/man/ DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT Program OPTIONAL
            FILES_MATCHING PATTERN *.1 PATTERN quilon-mpi.1 EXCLUDE)
    if(QUILON_PACKAGES)
      install(CODE "file(GLOB pages \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_MANDIR}/man1/quilon*.1\")
                    execute_process(COMMAND gzip -9nf \${pages} COMMAND_ERROR_IS_FATAL ANY)" COMPONENT Program)
    endif()
    install(FILES packaging/completions/quilon.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
            RENAME quilon COMPONENT Program)
    install(FILES packaging/completions/_quilon DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions COMPONENT Program)
    install(FILES packaging/completions/quilon.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d
            COMPONENT Program)
  endif()
  if(TARGET quilon-mpi)
    set_target_properties(quilon-mpi PROPERTIES INSTALL_RPATH "\$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
    install(TARGETS quilon-mpi RUNTIME COMPONENT Mpi)
    install(FILES ${PROJECT_BINARY_DIR}/host/man/quilon-mpi.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT Mpi OPTIONAL)
    if(QUILON_PACKAGES)
      install(CODE "execute_process(COMMAND gzip -9nf \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_MANDIR}/man1/quilon-mpi.1\"
                                    COMMAND_ERROR_IS_FATAL ANY)" COMPONENT Mpi)
    endif()
  endif()
endif()

install(EXPORT QuilonTargets NAMESPACE Quilon:: DESTINATION ${quilon_package_dir} COMPONENT Development)
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/QuilonConfig.cmake
     CONTENT "include(\${CMAKE_CURRENT_LIST_DIR}/QuilonTargets.cmake)\n" @ONLY)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/QuilonConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/QuilonConfig.cmake ${PROJECT_BINARY_DIR}/QuilonConfigVersion.cmake
        DESTINATION ${quilon_package_dir} COMPONENT Development)

# Packages of a system name its folders, which pkg-config then leaves out of the flags; other trees may be moved.
file(RELATIVE_PATH quilon_from_pc /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
set(QUILON_PC_PREFIX "\${pcfiledir}/${quilon_from_pc}")
if(QUILON_PACKAGES)
  set(QUILON_PC_PREFIX /usr)
endif()
set(quilon_pc_names QuilonDbDataTools)
if(QUILON_SIBLINGS STREQUAL bundled)
  list(APPEND quilon_pc_names quilon)
endif()
foreach(name IN LISTS quilon_pc_names)
  configure_file(cmake/${name}.pc.in ${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT Development)
endforeach()

set(quilon_examples_dir ${CMAKE_INSTALL_DOCDIR}/examples)
if(QUILON_PACKAGES)
  include(QuilonPackages)
  set(quilon_examples_dir share/doc/libquilondbdatatools-dev/examples)
endif()

install(FILES LICENSE README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT Documentation)
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs COMPONENT Documentation
        FILES_MATCHING PATTERN *.md PATTERN *.json PATTERN *.png)
install(DIRECTORY examples/ DESTINATION ${quilon_examples_dir} COMPONENT Development
        FILES_MATCHING PATTERN *.cpp)
