# GoogleTest for the suite: where it is missing, and VYNULIB_BUILD_TESTS is AUTO, that is off from here on.

set(VYNULIB_GOOGLETEST_SOURCE "" CACHE PATH "GoogleTest's sources, to build them along; empty: its library is found")
if(NOT VYNULIB_BUILD_TESTS)
  return()
endif()

if(VYNULIB_GOOGLETEST_SOURCE)
  add_subdirectory("${VYNULIB_GOOGLETEST_SOURCE}" googletest EXCLUDE_FROM_ALL)
elseif(VYNULIB_BUILD_TESTS STREQUAL "AUTO")
  find_package(GTest QUIET)
  if(NOT GTest_FOUND)
    message(NOTICE "Tests: not built, GoogleTest was not found (VYNULIB_BUILD_TESTS is AUTO)")
    set(VYNULIB_BUILD_TESTS OFF)
  endif()
else()
  find_package(GTest REQUIRED)
endif()
