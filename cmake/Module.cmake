# Headers that most files include are compiled once for the product and once for the tests, and shared by all targets of
# each: compiling them costs as much as ten files of ours.
function(larkspan_precompiled name)
  cmake_parse_arguments(arg "" "" "HEADERS;LINKS" ${ARGN})
  file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/${name}.cpp" CONTENT "// Owns the precompiled headers of ${name}.\n")
  add_library(${name} OBJECT "${PROJECT_BINARY_DIR}/${name}.cpp")
  target_link_libraries(${name} PRIVATE ${arg_LINKS})
  target_precompile_headers(${name} PRIVATE ${arg_HEADERS})
endfunction()
larkspan_precompiled(larkspan_precompiled
  HEADERS "${PROJECT_SOURCE_DIR}/cmake/precompiled.h"
  LINKS Qt6::Core Qt6::Gui)
# The product is optimized and checked for undefined behaviour in every build; the tests' own code would take twice as
# long to compile that way. It keeps the address sanitizer.
set(larkspan_test_options $<$<CONFIG:Debug>:-O0;-fno-sanitize=undefined>)
# CMake compiles programs with -fPIE, and the compiler refuses them a header that was precompiled with -fPIC. A Qt that
# was built to save relocations, as Debian 12's, brings -fPIC to all that link it; another one doesn't.
get_target_property(qt_options Qt6::Core INTERFACE_COMPILE_OPTIONS)
if(NOT "-fPIC" IN_LIST qt_options)
  list(APPEND larkspan_test_options -fPIC)
endif()
larkspan_precompiled(larkspan_test_precompiled
  HEADERS "${PROJECT_SOURCE_DIR}/cmake/precompiled.h" <gmock/gmock.h> <gtest/gtest.h>
    "${PROJECT_SOURCE_DIR}/tests/support/QtPrinters.h"
  LINKS Qt6::Core Qt6::Gui GTest::gmock)
target_compile_options(larkspan_test_precompiled PRIVATE ${larkspan_test_options})

# larkspan_module(NAME [QOBJECTS] SOURCES … LINKS …): the static library of one folder.
# Headers are included by their folder ("core/clips/MediaClip.h"), so that a line says where it reaches.
function(larkspan_module name)
  cmake_parse_arguments(arg "QOBJECTS" "" "SOURCES;LINKS" ${ARGN})
  add_library(larkspan_${name} STATIC ${arg_SOURCES})
  target_include_directories(larkspan_${name} PUBLIC "${PROJECT_SOURCE_DIR}")
  target_link_libraries(larkspan_${name} PUBLIC ${arg_LINKS})
  target_precompile_headers(larkspan_${name} REUSE_FROM larkspan_precompiled)
  if(arg_QOBJECTS)
    set_target_properties(larkspan_${name} PROPERTIES AUTOMOC ON)
  endif()
  set_property(GLOBAL APPEND PROPERTY LARKSPAN_MODULES larkspan_${name})
endfunction()

# larkspan_write_arrows(FILE): which folder links which, for script/arrows.py. To be called once all modules are there.
function(larkspan_write_arrows file)
  get_property(modules GLOBAL PROPERTY LARKSPAN_MODULES)
  foreach(module IN LISTS modules)
    get_target_property(folder ${module} SOURCE_DIR)
    cmake_path(RELATIVE_PATH folder BASE_DIRECTORY "${PROJECT_SOURCE_DIR}" OUTPUT_VARIABLE folder_of_${module})
  endforeach()
  set(lines "")
  foreach(module IN LISTS modules)
    string(APPEND lines "${folder_of_${module}}:")
    get_target_property(links ${module} LINK_LIBRARIES)
    foreach(link IN LISTS links)
      if(link IN_LIST modules)
        string(APPEND lines " ${folder_of_${link}}")
      endif()
    endforeach()
    string(APPEND lines "\n")
  endforeach()
  file(CONFIGURE OUTPUT "${file}" CONTENT "${lines}" @ONLY)
endfunction()

# larkspan_qml_module(NAME URI SOURCES … QML … [IMPORTS …] LINKS …): the static library and QML module of one folder.
# Whoever shows its views links larkspan_NAMEplugin as well and imports that with Q_IMPORT_QML_PLUGIN.
# Headers are among the SOURCES: the types that QML sees are collected from them.
# Files may be in subfolders. The module is flat all the same: its types find each other without an import, and a file's
# address is qrc:/qt/qml/URI/FILE.qml wherever it is.
function(larkspan_qml_module name uri)
  cmake_parse_arguments(arg "" "" "SOURCES;QML;IMPORTS;LINKS" ${ARGN})
  larkspan_module(${name} QOBJECTS SOURCES ${arg_SOURCES} LINKS ${arg_LINKS})
  # The generated registration includes headers by their bare names.
  foreach(source IN LISTS arg_SOURCES)
    cmake_path(GET source PARENT_PATH subfolder)
    target_include_directories(larkspan_${name} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}/${subfolder}")
  endforeach()
  foreach(file IN LISTS arg_QML)
    cmake_path(GET file FILENAME bare_name)
    set_source_files_properties(${file} PROPERTIES QT_RESOURCE_ALIAS ${bare_name})
  endforeach()
  string(REPLACE "." "/" folder ${uri})
  # Compiled QML is for the program that ships; a debug build has no use for the minutes that it takes.
  set(cache "")
  if(NOT CMAKE_BUILD_TYPE STREQUAL "Release")
    set(cache NO_CACHEGEN)
  endif()
  qt_add_qml_module(larkspan_${name}
    URI ${uri}
    VERSION 1.0
    ${cache}
    RESOURCE_PREFIX /qt/qml
    OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/qml/${folder}"
    IMPORT_PATH "${PROJECT_BINARY_DIR}/qml"
    DEPENDENCIES QtQuick ${arg_IMPORTS}
    QML_FILES ${arg_QML}
  )
  # What Qt's compiler makes of the QML isn't ours to warn about.
  get_target_property(sources larkspan_${name} SOURCES)
  list(FILTER sources INCLUDE REGEX "/qmlcache/")
  set_source_files_properties(${sources} PROPERTIES COMPILE_OPTIONS "-w;-g0")
  # Registration runs once per start and is all generated.
  get_target_property(sources larkspan_${name} SOURCES)
  list(FILTER sources INCLUDE REGEX "_qmltyperegistrations\\.cpp$")
  set_source_files_properties(${sources} PROPERTIES COMPILE_OPTIONS "-g0;-fno-sanitize=undefined")
endfunction()

# larkspan_test(NAME LABEL folder [TIMEOUT seconds] [PARTS count] [QOBJECTS] SOURCES … LINKS …): one test program, one
# ctest; or with PARTS so many that share its tests, NAME_1 and so on, which can run at the same time.
function(larkspan_test name)
  cmake_parse_arguments(arg "QOBJECTS" "LABEL;TIMEOUT;PARTS" "SOURCES;LINKS;COMMAND" ${ARGN})
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 300)
  endif()
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE ${arg_LINKS} larkspan_test_support GTest::gmock rapidcheck)
  target_precompile_headers(${name} REUSE_FROM larkspan_test_precompiled)
  # Neighbouring tests instantiate the same templates, so compiling several at once takes half the time.
  set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 8)
  # GCC takes a source that another one includes for a header.
  target_compile_options(${name} PRIVATE ${larkspan_test_options} $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
  if(arg_QOBJECTS)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
  endif()
  set(environment "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/cmake/leaks.supp:print_suppressions=0")
  set(tests ${name})
  if(arg_PARTS)
    list(TRANSFORM tests APPEND _1)
    foreach(part RANGE 2 ${arg_PARTS})
      list(APPEND tests ${name}_${part})
    endforeach()
  endif()
  set(part 0)
  foreach(test IN LISTS tests)
    add_test(NAME ${test} COMMAND ${arg_COMMAND} $<TARGET_FILE:${name}>)
    # The longest ones start first, so that none runs alone at the end.
    set_tests_properties(${test} PROPERTIES LABELS "${arg_LABEL}" TIMEOUT ${arg_TIMEOUT} COST ${arg_TIMEOUT}
      ENVIRONMENT "${environment}")
    if(arg_PARTS)
      set_property(TEST ${test} APPEND PROPERTY ENVIRONMENT GTEST_TOTAL_SHARDS=${arg_PARTS} GTEST_SHARD_INDEX=${part})
    endif()
    math(EXPR part "${part} + 1")
  endforeach()
  set_target_properties(${name} PROPERTIES larkspan_tests "${tests}")
endfunction()

# larkspan_gui_test(NAME LABEL folder [TIMEOUT seconds] [PARTS count] SOURCES … [LINKS …] [COMMAND …]): the same for what
# is shown. Draws into memory, unless a COMMAND brings a display.
function(larkspan_gui_test name)
  cmake_parse_arguments(arg "" "LABEL;TIMEOUT;PARTS" "SOURCES;LINKS;COMMAND" ${ARGN})
  larkspan_test(${name} LABEL "${arg_LABEL}" TIMEOUT "${arg_TIMEOUT}" PARTS "${arg_PARTS}" COMMAND ${arg_COMMAND}
    SOURCES ${arg_SOURCES} "${PROJECT_SOURCE_DIR}/tests/support/GuiTestMain.cpp"
    LINKS larkspan_gui_test_support ${arg_LINKS})
  get_target_property(tests ${name} larkspan_tests)
  if(arg_COMMAND)
    # The display's GL driver leaks, and is gone from memory before the leak check could name it.
    set_property(TEST ${tests} APPEND PROPERTY ENVIRONMENT ASAN_OPTIONS=detect_leaks=0)
  else()
    set_property(TEST ${tests} APPEND PROPERTY ENVIRONMENT QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software)
  endif()
endfunction()
