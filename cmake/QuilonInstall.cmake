# What goes into the install tree, and the package that finds it: find_package(Quilon), then Quilon::DbDataTools. Its
# contract symbols are undefined, so a program links siblings beside it: Quilon::Siblings where ours are bundled.
#
# Components: Runtime (shared libraries), Development (headers, CMake package, examples), Program (quilon),
# Documentation (licence, README, manual). Without --component all of them are installed.
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
  endif()
endif()

install(EXPORT QuilonTargets NAMESPACE Quilon:: DESTINATION ${quilon_package_dir} COMPONENT Development)
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/QuilonConfig.cmake
     CONTENT "include(\${CMAKE_CURRENT_LIST_DIR}/QuilonTargets.cmake)\n" @ONLY)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/QuilonConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/QuilonConfig.cmake ${PROJECT_BINARY_DIR}/QuilonConfigVersion.cmake
        DESTINATION ${quilon_package_dir} COMPONENT Development)

install(FILES LICENSE README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT Documentation)
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs COMPONENT Documentation
        FILES_MATCHING PATTERN *.md PATTERN *.json PATTERN *.png)
install(DIRECTORY examples/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples COMPONENT Development
        FILES_MATCHING PATTERN *.cpp)
