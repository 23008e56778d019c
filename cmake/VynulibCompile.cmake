# How the project's own targets are compiled.

# Language level, private include path and warnings: every target of the project. In C++20 but where an older one is named.
function(vynulib_compile target)
  set(standards 20 ${ARGN})
  list(GET standards -1 standard)
  target_compile_features(${target} PRIVATE cxx_std_${standard})
  # Sources have names of their own in anonymous namespaces: never compiled as one.
  set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF UNITY_BUILD OFF)
  # -iquote, not an include directory: the folder string/ must not hide <string>.
  target_compile_options(${target} PRIVATE "-iquote${PROJECT_SOURCE_DIR}")
  if(VYNULIB_WARNINGS)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
  endif()
  if(VYNULIB_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=${VYNULIB_SANITIZE} -fno-sanitize-recover=all
                                             -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=${VYNULIB_SANITIZE})
  endif()
endfunction()

# What is shipped: optimised builds stop at an overrun instead of going on with it, as far as compiler and linker can.
include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)
foreach(flag -fstack-protector-strong -fcf-protection)
  string(MAKE_C_IDENTIFIER "VYNULIB_HAS${flag}" has)
  check_cxx_compiler_flag(${flag} ${has})
  if(${has})
    list(APPEND VYNULIB_HARDENING ${flag})
  endif()
endforeach()
# A level that the caller's flags name stays theirs; one that the compiler brings is replaced.
if(NOT CMAKE_CXX_FLAGS MATCHES "_FORTIFY_SOURCE")
  list(APPEND VYNULIB_HARDENING -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3)
endif()
check_linker_flag(CXX -Wl,-z,relro,-z,now VYNULIB_HAS_RELRO)

function(vynulib_harden target)
  if(NOT VYNULIB_HARDENED OR VYNULIB_SANITIZE) # sanitizers see more, and less where others check before them
    return()
  endif()
  set(optimised "$<CONFIG:Release,RelWithDebInfo,MinSizeRel>")
  target_compile_definitions(${target} PRIVATE $<${optimised}:_GLIBCXX_ASSERTIONS>)
  target_compile_options(${target} PRIVATE "$<${optimised}:${VYNULIB_HARDENING}>")
  if(VYNULIB_HAS_RELRO)
    target_link_options(${target} PRIVATE $<${optimised}:-Wl,-z,relro,-z,now>)
  endif()
endfunction()

# What goes into the library: only what is exported by name is visible, and it can be unloaded.
function(vynulib_compile_as_library target)
  vynulib_compile(${target})
  vynulib_harden(${target})
  set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON CXX_VISIBILITY_PRESET hidden
                                             VISIBILITY_INLINES_HIDDEN ON)
  target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
                                              $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  if(VYNULIB_LINKAGE STREQUAL "STATIC")
    target_compile_definitions(${target} PUBLIC VYNULIB_STATIC)
  endif()
  # A unique symbol pins the library in memory: dlclose could never unload it.
  target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>)
  # Nobody replaces single functions of this library from outside, so that it may inline and call them directly.
  target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fno-semantic-interposition>)
endfunction()
