# The JDK for the bridge to Java. VYNULIB_JDK_FOUND tells charset/, which has the native half, and java/ to build it.

set(VYNULIB_JAVA AUTO CACHE STRING "Build the bridge to Java: ON, OFF, or AUTO where a JDK is found")
set_property(CACHE VYNULIB_JAVA PROPERTY STRINGS AUTO ON OFF)
set(VYNULIB_JDK_FOUND OFF)
if(NOT VYNULIB_JAVA)
  message(STATUS "Java bridge: not built, VYNULIB_JAVA is ${VYNULIB_JAVA}")
  return()
endif()

# Of JNI only the headers are used; a JDK without a desktop has no AWT, which is looked for unless components are named.
set(required)
if(NOT VYNULIB_JAVA STREQUAL "AUTO")
  set(required REQUIRED)
endif()
find_package(Java COMPONENTS Runtime Development ${required})
find_package(JNI COMPONENTS JVM ${required})
if(NOT Java_FOUND OR NOT JNI_FOUND)
  message(STATUS "Java bridge: not built, no JDK found (VYNULIB_JAVA is AUTO)")
  return()
endif()
message(STATUS "Java bridge: built with the JDK ${Java_VERSION_STRING}")
set(VYNULIB_JDK_FOUND ON)
