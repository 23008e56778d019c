# A port for use as an overlay, of the tree that it stands in: vcpkg install vynulib64 --overlay-ports=packaging/vcpkg
get_filename_component(SOURCE_PATH "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)

vcpkg_check_features(OUT_FEATURE_OPTIONS features FEATURES tools VYNULIB_BUILD_TOOLS)
vcpkg_cmake_configure(
  SOURCE_PATH "${SOURCE_PATH}"
  OPTIONS -DVYNULIB_BUILD_TESTS=OFF -DVYNULIB_BUILD_EXAMPLES=OFF -DVYNULIB_JAVA=OFF -DVYNULIB_WARNINGS=OFF ${features})
vcpkg_cmake_install()
vcpkg_cmake_config_fixup(CONFIG_PATH lib/cmake/vynulib64)
vcpkg_fixup_pkgconfig()
if("tools" IN_LIST FEATURES)
  vcpkg_copy_tools(TOOL_NAMES vynconv AUTO_CLEAN)
endif()
file(REMOVE_RECURSE "${CURRENT_PACKAGES_DIR}/debug/include" "${CURRENT_PACKAGES_DIR}/debug/share")

# The owner has stated no licence yet.
set(VCPKG_POLICY_SKIP_COPYRIGHT_CHECK enabled)
