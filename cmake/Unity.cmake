# SPDX-FileCopyrightText: 2026 The Quillon developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Unity builds (QUILLON_UNITY is TESTS or ALL): sources of a library are compiled together, so that the headers they share
# are read once. Files may use the same name for something of their own, such as kName in an anonymous namespace. Such
# files are put into different groups, so nobody has to think of the names of other files.

# Sources of one group. More would not save much, and take long after an edit of one.
set(QUILLON_UNITY_SIZE 16)

# quillon_file_names(<result> <source>): the names that a source defines in its namespaces, as enumerators of plain enums
# and as macros. clang-format keeps definitions in the first column. Members (Class::Name) and the macros of the tests are
# left out.
function(quillon_file_names result source)
  file(READ ${source} text)
  string(REGEX MATCHALL "\n#define +[A-Za-z0-9_]+|\n(struct|class|union|enum class|enum|using) +[A-Za-z0-9_]+ |\n[A-Za-z][A-Za-z0-9_:<>,&* ]*"
    definitions "${text}")
  set(names)
  foreach(definition ${definitions})
    string(STRIP "${definition}" definition)
    if(NOT definition MATCHES "^(namespace|template|using namespace)( |$)" AND definition MATCHES "(^| |\\*|&)([A-Za-z0-9_]+)$")
      list(APPEND names ${CMAKE_MATCH_2})
    endif()
  endforeach()
  string(REGEX MATCHALL "\nenum +[A-Z][^{;]*{[^}]*" enums "${text}")
  string(REGEX MATCHALL "k[A-Z][A-Za-z0-9]*" enumerators "${enums}")
  list(APPEND names ${enumerators})
  list(REMOVE_DUPLICATES names)
  list(FILTER names EXCLUDE REGEX "^(TEST.*|TYPED_TEST.*|INSTANTIATE_.*|Q_[A-Z]+|extern)$")
  set(${result} ${names} PARENT_SCOPE)
endfunction()

# quillon_unity(<target>): if QUILLON_UNITY includes the target, puts each of its sources into the first group that is not
# full and in which no other source defines the same name.
function(quillon_unity target)
  if(QUILLON_UNITY STREQUAL NONE OR (QUILLON_UNITY STREQUAL TESTS AND NOT target MATCHES "^test_"))
    return()
  endif()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
  get_target_property(sources ${target} SOURCES)
  list(FILTER sources INCLUDE REGEX "\\.cpp$")
  foreach(source ${sources})
    quillon_file_names(names ${source})
    set(number 0)
    while(TRUE)
      math(EXPR number "${number} + 1")
      # In a file of this name clang-tidy analyses the paths of included .cpp files like those of the file itself.
      set(group UnifiedSource_${target}_${number})
      list(LENGTH sources_of_${group} size)
      set(together ${names_of_${group}} ${names})
      list(LENGTH together count)
      list(REMOVE_DUPLICATES together)
      list(LENGTH together different)
      if(count EQUAL different AND size LESS QUILLON_UNITY_SIZE)
        break()
      endif()
    endwhile()
    set(names_of_${group} ${together})
    list(APPEND sources_of_${group} ${source})
    set_source_files_properties(${source} PROPERTIES UNITY_GROUP ${group})
  endforeach()
endfunction()
