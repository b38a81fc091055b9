# One function for each kind of thing that the project builds.
#
# A library's headers are included from the top of src/ ("engine/value.h"). A shared library `foo`
# in src/engine gets "engine/export.h" with FOO_EXPORT for what it shows to others.

include(GenerateExportHeader)
include(GoogleTest)

function(_torvix_common name)
  target_include_directories(${name} PUBLIC $<BUILD_INTERFACE:${CMAKE_SOURCE_DIR}/src>)
endfunction()

# torvix_library(NAME [SHARED|STATIC] [OUTPUT_NAME file] [MOC] SOURCES ... [PUBLIC libs...]
#                [PRIVATE libs...] [PCH headers...])
function(torvix_library name)
  cmake_parse_arguments(ARG "SHARED;STATIC;MOC" "OUTPUT_NAME" "SOURCES;PUBLIC;PRIVATE;PCH" ${ARGN})
  if(ARG_SHARED)
    add_library(${name} SHARED ${ARG_SOURCES})
    file(RELATIVE_PATH folder ${CMAKE_SOURCE_DIR}/src ${CMAKE_CURRENT_SOURCE_DIR})
    generate_export_header(${name} EXPORT_FILE_NAME ${CMAKE_BINARY_DIR}/export/${folder}/export.h)
    target_include_directories(${name} PUBLIC $<BUILD_INTERFACE:${CMAKE_BINARY_DIR}/export>)
    install(TARGETS ${name} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
  else()
    add_library(${name} STATIC ${ARG_SOURCES})
  endif()
  if(ARG_OUTPUT_NAME)
    set_target_properties(${name} PROPERTIES OUTPUT_NAME ${ARG_OUTPUT_NAME})
  endif()
  if(ARG_MOC)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
  endif()
  _torvix_common(${name})
  target_link_libraries(${name} PUBLIC ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE})
  if(ARG_PCH)
    target_precompile_headers(${name} PRIVATE ${ARG_PCH})
  endif()
endfunction()

# torvix_plugin(NAME DESTINATION dir [OUTPUT_NAME file] [MOC] SOURCES ... [PRIVATE libs...] [PCH headers...])
# A library that is loaded at run time and never linked; `dir` is relative to the prefix.
function(torvix_plugin name)
  cmake_parse_arguments(ARG "MOC" "DESTINATION;OUTPUT_NAME" "SOURCES;PRIVATE;PCH" ${ARGN})
  add_library(${name} MODULE ${ARG_SOURCES})
  file(RELATIVE_PATH to_lib /prefix/${ARG_DESTINATION} /prefix/lib)
  set_target_properties(${name} PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/${ARG_DESTINATION}
                                           INSTALL_RPATH "$ORIGIN/${to_lib}")
  if(ARG_OUTPUT_NAME)
    set_target_properties(${name} PROPERTIES OUTPUT_NAME ${ARG_OUTPUT_NAME})
  endif()
  if(ARG_MOC)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
  endif()
  _torvix_common(${name})
  target_link_libraries(${name} PRIVATE ${ARG_PRIVATE})
  if(ARG_PCH)
    target_precompile_headers(${name} PRIVATE ${ARG_PCH})
  endif()
  install(TARGETS ${name} LIBRARY DESTINATION ${ARG_DESTINATION})
endfunction()

# torvix_script_modules(LANGUAGE FILES ... MODULES ...): files of scriptmodules/LANGUAGE, which lie there in
# the prefix, and modules that scripts import, which lie in lib/LANGUAGE; so that everything runs from
# either, also in the build tree.
function(torvix_script_modules language)
  cmake_parse_arguments(ARG "" "" "FILES;MODULES" ${ARGN})
  foreach(file IN LISTS ARG_MODULES)
    configure_file(${language}/${file} ${CMAKE_BINARY_DIR}/lib/${language}/${file} COPYONLY)
    install(FILES ${language}/${file} DESTINATION lib/${language})
  endforeach()
  foreach(file IN LISTS ARG_FILES)
    configure_file(${language}/${file} ${CMAKE_BINARY_DIR}/scriptmodules/${language}/${file} COPYONLY)
    install(FILES ${language}/${file} DESTINATION scriptmodules/${language})
  endforeach()
endfunction()

# torvix_test(NAME LABEL unit|script|e2e [MOC] [OWN_MAIN] [TIMEOUT seconds] [PREFIX text] SOURCES ...
#             [PRIVATE libs...] [ENVIRONMENT NAME=value...])
# A GoogleTest program; each of its cases becomes a CTest test of its own, with the label. It has
# GoogleTest's main unless it brings one (OWN_MAIN). The prefix is for cases that are in two programs.
function(torvix_test name)
  cmake_parse_arguments(ARG "MOC;OWN_MAIN" "LABEL;TIMEOUT;PREFIX" "SOURCES;PRIVATE;ENVIRONMENT" ${ARGN})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  if(ARG_MOC)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
  endif()
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  target_link_libraries(${name} PRIVATE ${ARG_PRIVATE} GTest::gmock Qt5::Core)
  if(ARG_OWN_MAIN)
    target_link_libraries(${name} PRIVATE GTest::gtest)
  else()
    target_link_libraries(${name} PRIVATE GTest::gtest_main)
  endif()
  target_compile_definitions(${name} PRIVATE TORVIX_TEST_SOURCE_DIR="${CMAKE_CURRENT_SOURCE_DIR}"
                                             TORVIX_TEST_BINARY_DIR="${CMAKE_BINARY_DIR}")
  _torvix_test_headers()
  target_precompile_headers(${name} REUSE_FROM torvix_test_headers)
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST TEST_PREFIX "${ARG_PREFIX}"
                       PROPERTIES LABELS ${ARG_LABEL} TIMEOUT ${ARG_TIMEOUT})
  _torvix_sanitizer_environment(${name} sanitizers)
  _torvix_test_environment(${name} ${ARG_ENVIRONMENT} ${sanitizers})
endfunction()

# Discovery takes no lists as values of properties, so the environment is set once the tests are known.
function(_torvix_test_environment name)
  if(ARGN)
    set(file ${CMAKE_CURRENT_BINARY_DIR}/${name}_environment.cmake)
    file(WRITE ${file} "set_tests_properties(\${${name}_TESTS} PROPERTIES ENVIRONMENT [==[${ARGN}]==])\n")
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${file})
  endif()
endfunction()

# What the sanitizers need to know in a test and in all programs that it starts. Foreign applications
# load our plug-ins, whose runtime must be the first in the process: it is preloaded. Leaks are looked
# for in the test and the runner alone, which have a file of options by their name. Without the tracking
# of thread-local storage: at the exit of a program that has loaded the plug-in at run time, the search
# for leaks crashes in it.
function(_torvix_sanitizer_environment test variable)
  set(environment "")
  if(TORVIX_SANITIZE)
    set(options ${CMAKE_BINARY_DIR}/sanitizers)
    foreach(program ${test} torvixrunner)
      file(WRITE ${options}/${program} "detect_leaks=1\n")
    endforeach()
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libasan.so
                    OUTPUT_VARIABLE runtime OUTPUT_STRIP_TRAILING_WHITESPACE)
    file(REAL_PATH ${runtime} runtime)
    set(environment
        LD_PRELOAD=${runtime}
        ASAN_OPTIONS=detect_leaks=0:intercept_tls_get_addr=0:malloc_context_size=2:include_if_exists=${options}/%b
        LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/cmake/leaks.supp:print_suppressions=0
        UBSAN_OPTIONS=print_stacktrace=1)
  endif()
  set(${variable} ${environment} PARENT_SCOPE)
endfunction()

# One precompiled GoogleTest serves all test programs; each compiles with Qt Core's flags for that.
function(_torvix_test_headers)
  if(NOT TARGET torvix_test_headers)
    file(WRITE ${CMAKE_BINARY_DIR}/testheaders.cpp "")
    add_library(torvix_test_headers OBJECT ${CMAKE_BINARY_DIR}/testheaders.cpp)
    target_link_libraries(torvix_test_headers PRIVATE GTest::gmock Qt5::Core)
    target_precompile_headers(torvix_test_headers PRIVATE <gmock/gmock.h> <gtest/gtest.h>)
  endif()
endfunction()

# torvix_benchmark(NAME SOURCES ... [PRIVATE libs...]): a Google Benchmark program.
function(torvix_benchmark name)
  cmake_parse_arguments(ARG "MOC" "" "SOURCES;PRIVATE" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  if(ARG_MOC)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
  endif()
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/benchmarks)
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/benchmarks)
  target_link_libraries(${name} PRIVATE ${ARG_PRIVATE} benchmark::benchmark)
endfunction()
