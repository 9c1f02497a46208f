# Language level, warnings, sanitizers and the compiler cache, for every target alike.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

# Line tables are enough for a stack trace; full debug information doubles the time of a clean build.
set(CMAKE_CXX_FLAGS_DEBUG "-Og -g1")

# Some libraries ask for it; precompiled headers that all targets share need the same answer everywhere.
add_compile_options(-pthread)
add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor)
# Of the compiler that everybody builds with; clang, which builds the fuzzers, has warnings of its own.
add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Werror>)
# A designated initializer names what it sets; what it leaves out has a default on purpose.
add_compile_options(-Wno-missing-field-initializers)
# GCC 12 takes any "text" + std::string for an overlap when it optimizes.
add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
add_compile_definitions(QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_DISABLE_DEPRECATED_BEFORE=0x060400)

set(LARKSPAN_SANITIZER "" CACHE STRING "What -fsanitize= gets; empty for none")
if(LARKSPAN_SANITIZER)
  add_compile_options(-fsanitize=${LARKSPAN_SANITIZER} -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${LARKSPAN_SANITIZER})
  # GCC 12 takes what the sanitizers add for reads of uninitialized memory; the release build keeps the warning.
  add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  if(LARKSPAN_SANITIZER MATCHES "undefined")
    add_compile_options(-fno-sanitize-recover=undefined)
    # vptr checks need every library's type information; Qt's hides some.
    add_compile_options(-fno-sanitize=vptr)
  endif()
endif()

find_program(CCACHE ccache)
if(CCACHE)
  # Precompiled headers need both: the cache must see through them, and GCC must keep them in what it preprocesses.
  set(CMAKE_CXX_COMPILER_LAUNCHER env CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${CCACHE})
  add_compile_options($<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
endif()
