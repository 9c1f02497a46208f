# larkspan_module(NAME [QOBJECTS] SOURCES … LINKS …): the static library of one folder.
# Headers are included by their folder ("core/MediaClip.h"), so that a line says where it reaches.
function(larkspan_module name)
  cmake_parse_arguments(arg "QOBJECTS" "" "SOURCES;LINKS" ${ARGN})
  add_library(larkspan_${name} STATIC ${arg_SOURCES})
  target_include_directories(larkspan_${name} PUBLIC "${PROJECT_SOURCE_DIR}")
  target_link_libraries(larkspan_${name} PUBLIC ${arg_LINKS})
  target_precompile_headers(larkspan_${name} PRIVATE "${PROJECT_SOURCE_DIR}/cmake/precompiled.h")
  if(arg_QOBJECTS)
    set_target_properties(larkspan_${name} PROPERTIES AUTOMOC ON)
  endif()
endfunction()

# larkspan_test(NAME LABEL folder [TIMEOUT seconds] [QOBJECTS] SOURCES … LINKS …): one test program, one ctest.
function(larkspan_test name)
  cmake_parse_arguments(arg "QOBJECTS" "LABEL;TIMEOUT" "SOURCES;LINKS;COMMAND" ${ARGN})
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 120)
  endif()
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE ${arg_LINKS} larkspan_test_support GTest::gmock rapidcheck)
  target_precompile_headers(${name} PRIVATE "${PROJECT_SOURCE_DIR}/cmake/precompiled.h" <gmock/gmock.h> <gtest/gtest.h>
    "${PROJECT_SOURCE_DIR}/tests/support/QtPrinters.h")
  if(arg_QOBJECTS)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
  endif()
  add_test(NAME ${name} COMMAND ${arg_COMMAND} ${name})
  set_tests_properties(${name} PROPERTIES LABELS "${arg_LABEL}" TIMEOUT ${arg_TIMEOUT}
    ENVIRONMENT "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/cmake/leaks.supp:print_suppressions=0")
endfunction()
