# SPDX-FileCopyrightText: 2026 The Quillon developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Read by ctest when it starts, with `program` and `folder` set: adds one test <folder>.<suite> for every suite of a
# GoogleTest program. One process for each single test would spend more time on starting than on testing.
if(NOT EXISTS ${program})
  add_test(${folder}.NOT_BUILT ${program})
  return()
endif()
execute_process(COMMAND ${program} --gtest_list_tests OUTPUT_VARIABLE list COMMAND_ERROR_IS_FATAL ANY)
# A suite stands at the beginning of a line and ends in a full stop, which a type or a parameter may follow.
string(REGEX MATCHALL "\n[A-Za-z0-9_/]+\\.[ \n]" suites "\n${list}")
foreach(suite ${suites})
  string(REGEX REPLACE "[.\n ]" "" suite "${suite}")
  add_test(${folder}.${suite} ${program} --gtest_filter=${suite}.*)
  set_tests_properties(${folder}.${suite} PROPERTIES TIMEOUT 900
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8")
endforeach()
