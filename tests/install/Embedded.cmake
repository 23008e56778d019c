# The library as part of an application.

set(embedded "-DVYNULIB_SOURCE_DIR=${PROJECT_SOURCE_DIR}" -DCMAKE_CXX_FLAGS=-O0 -DCMAKE_UNITY_BUILD=ON)
vynulib_add_consumer_test(embedded.shared add_subdirectory "${CMAKE_CXX_COMPILER}" ${embedded})
vynulib_add_consumer_test(embedded.static add_subdirectory "${CMAKE_CXX_COMPILER}" ${embedded}
                          -DBUILD_SHARED_LIBS=OFF -DVYNULIB_INSTALL=ON)
set_tests_properties(install.embedded.shared install.embedded.static PROPERTIES PROCESSORS 2 TIMEOUT 600)
set_tests_properties(install.embedded.shared PROPERTIES FIXTURES_SETUP embedded)
set_tests_properties(install.embedded.static PROPERTIES FIXTURES_SETUP static_built)

# The application is installed with the library that it runs with, and with nothing else of it.
add_test(NAME install.application COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/application.sh" "${CMAKE_COMMAND}"
                                          "${CMAKE_CURRENT_BINARY_DIR}/embedded.shared" "${CMAKE_CURRENT_BINARY_DIR}/application")
set_tests_properties(install.application PROPERTIES FIXTURES_REQUIRED embedded)

# The static library as it was installed by the application, into a program that needs no shared library at all.
set(static_stage "${CMAKE_CURRENT_BINARY_DIR}/static-stage")
add_test(NAME install.static.stage
         COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/stage.sh" "${CMAKE_COMMAND}" "${CMAKE_CURRENT_BINARY_DIR}/embedded.static"
                 "${PROJECT_SOURCE_DIR}" "${static_stage}")
set_tests_properties(install.static.stage PROPERTIES FIXTURES_REQUIRED static_built FIXTURES_SETUP static_staged)
foreach(use IN LISTS package_tools)
  vynulib_add_consumer_test(static.${use} ${use} "${CMAKE_CXX_COMPILER}" "-DCMAKE_PREFIX_PATH=${static_stage}"
                            -DCMAKE_EXE_LINKER_FLAGS=-static)
  set_tests_properties(install.static.${use} PROPERTIES FIXTURES_REQUIRED static_staged)
endforeach()
