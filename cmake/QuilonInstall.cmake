# What goes into the install tree, and the package that finds it: find_package(Quilon), then Quilon::DbDataTools. Its
# contract symbols are undefined, so a program links siblings beside it: Quilon::Siblings where ours are bundled.
include(CMakePackageConfigHelpers)

set(quilon_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Quilon)

set_target_properties(quilon_contract PROPERTIES EXPORT_NAME Contract)
set_target_properties(QuilonDbDataTools PROPERTIES EXPORT_NAME DbDataTools)
install(TARGETS quilon_contract QuilonDbDataTools EXPORT QuilonTargets
        FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/quilon)
install(DIRECTORY contract/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/quilon/contract FILES_MATCHING PATTERN *.h)

if(QUILON_SIBLINGS STREQUAL bundled)
  foreach(sibling Utilities OnfSpecification DbConnector OnfEngine)
    set_target_properties(Quilon${sibling} PROPERTIES EXPORT_NAME ${sibling})
    target_include_directories(
      Quilon${sibling} INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/quilon/siblings>)
    set_target_properties(Quilon${sibling} PROPERTIES INSTALL_RPATH "\$ORIGIN")
    install(TARGETS Quilon${sibling} EXPORT QuilonTargets)
    install(DIRECTORY siblings/Quilon${sibling}/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/quilon/siblings
            OPTIONAL FILES_MATCHING PATTERN *.h)
  endforeach()
  set_target_properties(quilon_siblings PROPERTIES EXPORT_NAME Siblings)
  install(TARGETS quilon_siblings EXPORT QuilonTargets)
  set_target_properties(quilon PROPERTIES INSTALL_RPATH "\$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
  install(TARGETS quilon)
endif()

install(EXPORT QuilonTargets NAMESPACE Quilon:: DESTINATION ${quilon_package_dir})
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/QuilonConfig.cmake
     CONTENT "include(\${CMAKE_CURRENT_LIST_DIR}/QuilonTargets.cmake)\n" @ONLY)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/QuilonConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/QuilonConfig.cmake ${PROJECT_BINARY_DIR}/QuilonConfigVersion.cmake
        DESTINATION ${quilon_package_dir})
