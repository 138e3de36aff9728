# vcpkg install quilondbdatatools --overlay-ports=packaging/vcpkg. Not run in CI.
set(SOURCE_PATH "${CURRENT_PORT_DIR}/../..")
vcpkg_check_linkage(ONLY_DYNAMIC_LIBRARY)
vcpkg_check_features(OUT_FEATURE_OPTIONS features FEATURES program QUILON_BUILD_HOST)
vcpkg_cmake_configure(
  SOURCE_PATH "${SOURCE_PATH}"
  OPTIONS ${features} -DQUILON_BUILD_TESTS=OFF -DQUILON_BUILD_BENCH=OFF -DQUILON_BUILD_EXAMPLES=OFF)
vcpkg_cmake_install()
vcpkg_cmake_config_fixup(PACKAGE_NAME Quilon CONFIG_PATH lib/cmake/Quilon)
vcpkg_copy_tools(TOOL_NAMES quilon AUTO_CLEAN)
vcpkg_fixup_pkgconfig()
file(REMOVE_RECURSE "${CURRENT_PACKAGES_DIR}/debug/include" "${CURRENT_PACKAGES_DIR}/debug/share")
vcpkg_install_copyright(FILE_LIST "${SOURCE_PATH}/LICENSE")
