# SPDX-FileCopyrightText: 2026 The Quillon developers
# SPDX-License-Identifier: GPL-3.0-or-later
# One place for what every target is compiled with. Records are filled by the members that differ from their defaults,
# which is what -Wmissing-field-initializers objects to.
add_library(quillon_options INTERFACE)
target_compile_options(quillon_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-qual -Wformat=2
  -Wno-missing-field-initializers -Werror)
# GCC 12 sees overlapping copies (its bug 105651) and uninitialised reads in inlined strings where there are none, the
# more so at -O3 and under the sanitizers; clang-tidy's analyzer looks for both.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT QUILLON_LINT)
  target_compile_options(quillon_options INTERFACE -Wno-restrict -Wno-maybe-uninitialized)
endif()
target_include_directories(quillon_options INTERFACE ${CMAKE_SOURCE_DIR}/src)
target_compile_definitions(quillon_options INTERFACE QUILLON_VERSION="${PROJECT_VERSION}")

if(QUILLON_SANITIZE)
  target_compile_options(quillon_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=undefined
    -fno-omit-frame-pointer)
  target_link_options(quillon_options INTERFACE -fsanitize=address,undefined)
endif()
if(QUILLON_COVERAGE)
  target_compile_options(quillon_options INTERFACE --coverage)
  target_link_options(quillon_options INTERFACE --coverage)
endif()
if(QUILLON_FUZZ)
  target_compile_options(quillon_options INTERFACE -fsanitize=fuzzer-no-link,address,undefined)
  target_link_options(quillon_options INTERFACE -fsanitize=address,undefined)
endif()

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
  # Sources that moc writes into the build folder are not ours to mend.
  file(WRITE ${CMAKE_BINARY_DIR}/.clang-tidy "Checks: '-*,bugprone-terminating-continue'\n")
  set(CMAKE_CXX_CLANG_TIDY ${QUILLON_CLANG_TIDY} --quiet)
endif()
