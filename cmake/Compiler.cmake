# What every target of the project is compiled with.

option(DROVANE_SANITIZE "Build with the address and undefined behaviour sanitizers" OFF)
option(DROVANE_WERROR "Treat warnings as errors (the CI does)" OFF)
option(DROVANE_PCH "Use precompiled headers" ON)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  # The sloppiness lets ccache hit in spite of the precompiled headers.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
      CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE_PROGRAM})
endif()

add_library(drovane_warnings INTERFACE)
target_compile_options(drovane_warnings INTERFACE
  -Wall -Wextra -Wpedantic
  -Wshadow             # a hidden variable is nearly always a slip
  -Wconversion         # silent loss of digits is what this program must never do
  -Wsign-conversion
  -Wnon-virtual-dtor
  -Wold-style-cast
  -Woverloaded-virtual
  -Wformat=2           # format texts come from language files
  # GCC 12 reports these three in its own std::string code; the sanitizers find the real ones.
  $<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds;-Wno-restrict;-Wno-stringop-overflow>
  $<$<BOOL:${DROVANE_WERROR}>:-Werror>
  $<$<BOOL:${CCACHE_PROGRAM}>:-fpch-preprocess>)

if(DROVANE_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

# Scores must not depend on whether the compiler fuses a multiply with an add.
add_compile_options(-ffp-contract=off)
