# What every target of this project has in common.

# Compiles strictly, sees headers from the project's root, and shows only the symbols that are exported on purpose.
function(morvane_target name)
  target_include_directories(${name} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
  if(MSVC)
    # Texts are UTF-8, the system's headers have no macros min and max, and fopen's kin are no fault.
    target_compile_options(${name} PRIVATE /utf-8 /W4 $<$<BOOL:${MORVANE_WERROR}>:/WX>)
    target_compile_definitions(${name} PRIVATE NOMINMAX _CRT_SECURE_NO_WARNINGS)
  else()
    target_compile_options(${name} PRIVATE
      -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wnon-virtual-dtor
      -Wold-style-cast $<$<BOOL:${MORVANE_WERROR}>:-Werror>)
    # Every processor writes the same bytes: no multiplication and addition become one with a rounding less.
    target_compile_options(${name} PRIVATE -ffp-contract=off)
  endif()
endfunction()

# One test program a folder: morvane_tests(psd libraries... SOURCES files...).
function(morvane_tests folder)
  cmake_parse_arguments(ARG "" "" "SOURCES" ${ARGN})
  add_executable(${folder}_tests ${ARG_SOURCES})
  morvane_target(${folder}_tests)
  # An EXPECT below an `if` is one statement, but its macro ends in an `else` of its own.
  if(NOT MSVC)
    target_compile_options(${folder}_tests PRIVATE -Wno-dangling-else)
  endif()
  target_link_libraries(${folder}_tests PRIVATE ${ARG_UNPARSED_ARGUMENTS} GTest::gtest GTest::gtest_main)
  target_compile_definitions(${folder}_tests PRIVATE
    MORVANE_SOURCE_DIR="${PROJECT_SOURCE_DIR}" MORVANE_BINARY_DIR="${PROJECT_BINARY_DIR}")
  if(CMAKE_CROSSCOMPILING)
    # Nothing is measured there, and an emulator takes a second for each start.
    target_compile_options(${folder}_tests PRIVATE -O0)
    add_test(NAME ${folder} COMMAND ${folder}_tests)
    set_tests_properties(${folder} PROPERTIES TIMEOUT 900)
    return()
  endif()
  gtest_discover_tests(${folder}_tests TEST_PREFIX "${folder}/" DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT 300)
endfunction()
