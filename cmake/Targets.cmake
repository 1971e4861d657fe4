# SPDX-FileCopyrightText: 2026 The Quillon developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Sources are found by folder, so that a new file needs no build change.

# quillon_library(<name> [RECURSE [EXCEPT <folders>...]] [DEPENDS <targets>...]): one static library of the .cpp files in
# the current folder; with RECURSE also of those below it, except in the named folders. A folder of headers alone becomes
# an interface library.
function(quillon_library name)
  cmake_parse_arguments(ARG "RECURSE" "" "EXCEPT;DEPENDS" ${ARGN})
  set(glob GLOB)
  if(ARG_RECURSE)
    set(glob GLOB_RECURSE)
  endif()
  file(${glob} sources CONFIGURE_DEPENDS *.cpp *.h *.qrc)
  foreach(folder ${ARG_EXCEPT})
    list(FILTER sources EXCLUDE REGEX "^${CMAKE_CURRENT_SOURCE_DIR}/${folder}/")
  endforeach()
  if("${sources}" MATCHES "\\.cpp(;|$)")
    add_library(${name} STATIC ${sources})
    target_link_libraries(${name} PUBLIC quillon_options ${ARG_DEPENDS})
    quillon_unity(${name})
    if(QUILLON_LINT AND CMAKE_AUTOMOC)
      file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/${name}_autogen/.clang-tidy "Checks: '-*,bugprone-terminating-continue'\n")
    endif()
  else()
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE quillon_options ${ARG_DEPENDS})
  endif()
endfunction()

# quillon_program(<name> <main file> [DEPENDS <targets>...]): one program of build/<preset>/bin.
function(quillon_program name main)
  cmake_parse_arguments(ARG "" "" "DEPENDS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${main})
  if(NOT sources)
    return()
  endif()
  add_executable(${name} ${sources})
  target_link_libraries(${name} PRIVATE ${ARG_DEPENDS})
  install(TARGETS ${name} RUNTIME)
endfunction()

# quillon_helper(<name> [NO_TWIN] [DEPENDS <targets>...]): the helper program of the current folder. It lies beside the
# programs as its twin <name>.dll, or as <name>.exe if it has no twin.
function(quillon_helper name)
  cmake_parse_arguments(ARG "NO_TWIN" "" "DEPENDS" ${ARGN})
  set(suffix .dll)
  if(ARG_NO_TWIN)
    set(suffix .exe)
  endif()
  file(GLOB sources CONFIGURE_DEPENDS *.cpp *.h)
  add_executable(helper_${name} ${sources})
  set_target_properties(helper_${name} PROPERTIES OUTPUT_NAME ${name} SUFFIX ${suffix})
  target_link_libraries(helper_${name} PRIVATE quillon_runtime ${ARG_DEPENDS})
  quillon_unity(helper_${name})
  install(TARGETS helper_${name} RUNTIME DESTINATION lib/quillon)
  add_dependencies(quillon_helpers helper_${name})
endfunction()

# quillon_test(<folder> [DEPENDS <targets>...]): one GoogleTest program of the .cpp files in tests/<folder> and below;
# ctest runs each of its suites as one test.
function(quillon_test folder)
  cmake_parse_arguments(ARG "" "" "DEPENDS" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${folder}/*.cpp ${folder}/*.h)
  if(NOT sources)
    return()
  endif()
  set(name test_${folder})
  add_executable(${name} ${sources})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests ${CMAKE_BINARY_DIR}/tests/generated)
  quillon_unity(${name})
  # Optimised test code would cost most of the build and save next to nothing of the run.
  target_compile_options(${name} PRIVATE -O0)
  target_link_libraries(${name} PRIVATE ${ARG_DEPENDS} GTest::gmock GTest::gtest GTest::gtest_main)
  if(QUILLON_THREAD_SANITIZE)
    target_sources(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests/hidden_locks.cpp)
    target_link_libraries(${name} PRIVATE ${CMAKE_DL_LIBS})
  endif()
  set(suites ${CMAKE_CURRENT_BINARY_DIR}/${name}_suites.cmake)
  file(GENERATE OUTPUT ${suites}
    CONTENT "set(program $<TARGET_FILE:${name}>)\nset(folder ${folder})\ninclude(${CMAKE_SOURCE_DIR}/cmake/ListSuites.cmake)\n")
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${suites})
endfunction()
