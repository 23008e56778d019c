# What `cmake --install` puts where: headers, library, the CMake package and vynulib64.pc.
include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/vynulib64")

install(TARGETS vynulib64 EXPORT vynulib64-targets FILE_SET HEADERS)
install(EXPORT vynulib64-targets NAMESPACE vynulib64:: FILE vynulib64-config.cmake DESTINATION "${package_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/vynulib64-config-version.cmake"
                                 COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/vynulib64-config-version.cmake" DESTINATION "${package_dir}")

# The prefix follows the place of the .pc file, so that an installed tree can be moved or staged.
set(pkgconfig_dir "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
file(RELATIVE_PATH pc_to_prefix "/prefix/${pkgconfig_dir}" "/prefix")
configure_file("${CMAKE_CURRENT_LIST_DIR}/vynulib64.pc.in" "${PROJECT_BINARY_DIR}/vynulib64.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/vynulib64.pc" DESTINATION "${pkgconfig_dir}")

install(FILES "${PROJECT_SOURCE_DIR}/docs/man/vynulib64.7" DESTINATION "${CMAKE_INSTALL_MANDIR}/man7")
