# The JDK for the bridge to Java. VYNULIB_JDK_FOUND tells charset/, which has the native half, and java/ to build it.

set(VYNULIB_JDK_FOUND OFF)
function(vynulib_no_java why)
  if(VYNULIB_JAVA AND NOT VYNULIB_JAVA STREQUAL "AUTO")
    message(FATAL_ERROR "VYNULIB_JAVA is ${VYNULIB_JAVA}, but ${why}")
  endif()
  message(STATUS "Java bridge: not built, ${why} (VYNULIB_JAVA is ${VYNULIB_JAVA})")
endfunction()

if(NOT VYNULIB_JAVA)
  vynulib_no_java("as asked")
  return()
elseif(NOT VYNULIB_LINKAGE STREQUAL "SHARED")
  vynulib_no_java("a virtual machine loads shared libraries only")
  return()
endif()

# Of JNI only the headers are used: a JDK without a desktop has no AWT, without which FindJNI may find nothing at all.
find_package(Java COMPONENTS Runtime Development)
find_package(JNI QUIET COMPONENTS JVM)
if(NOT Java_FOUND OR NOT JAVA_INCLUDE_PATH OR NOT JAVA_INCLUDE_PATH2)
  vynulib_no_java("no JDK was found")
  return()
endif()
add_library(vynulib_jni INTERFACE)
target_include_directories(vynulib_jni SYSTEM INTERFACE "${JAVA_INCLUDE_PATH}" "${JAVA_INCLUDE_PATH2}")
message(STATUS "Java bridge: built with the JDK ${Java_VERSION_STRING}")
set(VYNULIB_JDK_FOUND ON)
