# What `cmake --install` puts where: headers, library, the CMake package and vynulib64.pc.
include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/vynulib64")
install(TARGETS vynulib64 EXPORT vynulib64-targets)
install(FILES ${VYNULIB_PUBLIC_HEADERS} DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/vynulib")
install(EXPORT vynulib64-targets NAMESPACE vynulib64:: DESTINATION "${package_dir}")
configure_file("${CMAKE_CURRENT_LIST_DIR}/vynulib64-config.cmake.in" "${PROJECT_BINARY_DIR}/vynulib64-config.cmake" @ONLY)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/vynulib64-config-version.cmake"
                                 COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/vynulib64-config.cmake" "${PROJECT_BINARY_DIR}/vynulib64-config-version.cmake"
        DESTINATION "${package_dir}")

# The prefix follows the place of the .pc file, so that an installed tree can be moved or staged; a folder that was given
# from the root stays where it is.
set(pkgconfig_dir "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
  set(pc_prefix "${CMAKE_INSTALL_PREFIX}")
else()
  file(RELATIVE_PATH pc_to_prefix "/prefix/${pkgconfig_dir}" "/prefix")
  set(pc_prefix "\${pcfiledir}/${pc_to_prefix}")
endif()
foreach(dir LIBDIR INCLUDEDIR)
  set(pc_${dir} "${CMAKE_INSTALL_${dir}}")
  if(NOT IS_ABSOLUTE "${pc_${dir}}")
    string(PREPEND pc_${dir} "\${prefix}/")
  endif()
endforeach()
set(pc_definition)
if(VYNULIB_LINKAGE STREQUAL "STATIC")
  set(pc_definition " -DVYNULIB_STATIC")
endif()
list(TRANSFORM CMAKE_DL_LIBS PREPEND -l OUTPUT_VARIABLE pc_private)
list(JOIN pc_private " " pc_private)
string(STRIP "${pc_private} ${CMAKE_THREAD_LIBS_INIT}" pc_private)
configure_file("${CMAKE_CURRENT_LIST_DIR}/vynulib64.pc.in" "${PROJECT_BINARY_DIR}/vynulib64.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/vynulib64.pc" DESTINATION "${pkgconfig_dir}")

install(FILES "${PROJECT_SOURCE_DIR}/docs/man/vynulib64.7" DESTINATION "${CMAKE_INSTALL_MANDIR}/man7")

# GDB looks in the data folder that it was built with, there under the name of the loaded file with its path.
if(VYNULIB_LINKAGE STREQUAL "SHARED")
  set(loaded_dir "\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}")
  if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
    set(loaded_dir "${CMAKE_INSTALL_LIBDIR}")
  endif()
  install(FILES "${PROJECT_SOURCE_DIR}/tools/gdb/vynulib64-gdb.py"
          DESTINATION "${CMAKE_INSTALL_DATADIR}/gdb/auto-load${loaded_dir}"
          RENAME "libvynulib64.so.${PROJECT_VERSION}-gdb.py")
endif()

if(PROJECT_IS_TOP_LEVEL)
  add_custom_target(uninstall COMMAND "${CMAKE_COMMAND}" -P "${CMAKE_CURRENT_LIST_DIR}/uninstall.cmake"
                              WORKING_DIRECTORY "${PROJECT_BINARY_DIR}" VERBATIM)
endif()
