# SPDX-FileCopyrightText: 2026 The Quillon developers
# SPDX-License-Identifier: GPL-3.0-or-later
# One place for what every target is compiled with. Records are filled by the members that differ from their defaults,
# which is what -Wmissing-field-initializers objects to.
add_library(quillon_options INTERFACE)
target_compile_options(quillon_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-qual -Wformat=2
  -Wno-missing-field-initializers -Werror)
# GCC 12 wrongly warns of overlapping copies (its bug 105651) and uninitialised reads in inlined strings, most of all at
# -O3 and under the sanitizers. clang-tidy's analyzer checks for both.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(quillon_options INTERFACE -Wno-restrict -Wno-maybe-uninitialized)
endif()
# In a unity build every source is an included file among others. GCC then treats its classes like those of a header,
# which must not have members of an anonymous namespace, and its local names may be global ones of another source. The
# builds without unity look for both mistakes.
target_compile_options(quillon_options INTERFACE
  $<$<BOOL:$<TARGET_PROPERTY:UNITY_BUILD>>:-Wno-shadow;-Wno-subobject-linkage>)
target_include_directories(quillon_options INTERFACE ${CMAKE_SOURCE_DIR}/src)
target_compile_definitions(quillon_options INTERFACE QUILLON_VERSION="${PROJECT_VERSION}")

if(QUILLON_SANITIZE)
  target_compile_options(quillon_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=undefined
    -fno-omit-frame-pointer)
  target_link_options(quillon_options INTERFACE -fsanitize=address,undefined)
endif()
if(QUILLON_THREAD_SANITIZE)
  target_compile_options(quillon_options INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
  target_link_options(quillon_options INTERFACE -fsanitize=thread)
  # GCC warns about every fence of the standard library, because the sanitizer does not follow fences.
  target_compile_options(quillon_options INTERFACE -Wno-tsan)
endif()
if(QUILLON_COVERAGE)
  target_compile_options(quillon_options INTERFACE --coverage)
  target_compile_definitions(quillon_options INTERFACE QUILLON_COVERAGE)
  target_link_options(quillon_options INTERFACE --coverage)
endif()
if(QUILLON_FUZZ)
  target_compile_options(quillon_options INTERFACE -fsanitize=fuzzer-no-link,address,undefined)
  target_link_options(quillon_options INTERFACE -fsanitize=address,undefined)
endif()

# A library that a program does not call is not loaded. Helpers start for every file, and the libraries of libvips would
# be most of their start.
target_link_options(quillon_options INTERFACE -Wl,--as-needed)
find_program(QUILLON_LINKER mold)
if(QUILLON_LINKER AND NOT QUILLON_FUZZ)
  target_link_options(quillon_options INTERFACE -fuse-ld=mold)
endif()
find_program(QUILLON_CCACHE ccache)
if(QUILLON_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${QUILLON_CCACHE})
  set(CMAKE_C_COMPILER_LAUNCHER ${QUILLON_CCACHE})
endif()

if(QUILLON_LINT)
  find_program(QUILLON_CLANG_TIDY clang-tidy REQUIRED)
  # The sources of a unity build include .cpp files; nothing else that is generated is checked.
  file(WRITE ${CMAKE_BINARY_DIR}/.clang-tidy "InheritParentConfig: true\nChecks: '-bugprone-suspicious-include'\n")
  # Some of the warning options above are known to GCC alone.
  set(CMAKE_CXX_CLANG_TIDY ${QUILLON_CLANG_TIDY} --quiet --extra-arg=-Wno-unknown-warning-option)
  if(QUILLON_UNITY STREQUAL ALL)
    # A tenth of the analyzer's default. A few functions with very many paths would take most of the time.
    list(APPEND CMAKE_CXX_CLANG_TIDY --extra-arg=-Xclang --extra-arg=-analyzer-config --extra-arg=-Xclang
      --extra-arg=max-nodes=22500)
  endif()
endif()
