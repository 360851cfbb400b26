# One call per folder: every library gets the same warnings, the same include
# root (the repository) and an explicit list of what it may depend on. A wrong
# arrow between folders is therefore a link error.

set(quire_definitions
    QT_NO_KEYWORDS QT_NO_FOREACH QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII
    QT_NO_URL_CAST_FROM_STRING QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_STRICT_ITERATORS)
set(quire_warnings
    -Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Woverloaded-virtual -Wshadow
    $<$<BOOL:${QUIRE_WARNINGS_AS_ERRORS}>:-Werror>)

function(quire_set_target_options target)
    target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR})
    target_compile_definitions(${target} PRIVATE ${quire_definitions})
    target_compile_options(${target} PRIVATE ${quire_warnings})
endfunction()

# quire_add_library(<folder name> SOURCES ... USES ... [USES_PRIVATELY ...])
function(quire_add_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;USES;USES_PRIVATELY" ${ARGN})
    add_library(quire_${name} STATIC ${ARG_SOURCES})
    add_library(Quire::${name} ALIAS quire_${name})
    quire_set_target_options(quire_${name})
    target_link_libraries(quire_${name} PUBLIC ${ARG_USES} PRIVATE ${ARG_USES_PRIVATELY})
endfunction()

# What programs of a test that meet in the user's runtime directory find there.
set(quire_test_runtime ${CMAKE_BINARY_DIR}/test-runtime)
file(MAKE_DIRECTORY ${quire_test_runtime})
file(CHMOD ${quire_test_runtime} PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)

# What every test runs under. A sanitized program is told where its suppressions
# and its symbolizer are; both are ignored by an ordinary build.
set(quire_test_environment
    QT_QPA_PLATFORM=offscreen
    QT_QUICK_BACKEND=software
    QT_QUICK_CONTROLS_STYLE=Basic
    LC_ALL=C.UTF-8
    TZ=Europe/Oslo
    XDG_RUNTIME_DIR=${quire_test_runtime}
    "ASAN_OPTIONS=external_symbolizer_path=/usr/bin/llvm-symbolizer-16"
    "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/sanitizers/leaks.supp:print_suppressions=0"
    "UBSAN_OPTIONS=print_stacktrace=1"
    "TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/sanitizers/threads.supp:external_symbolizer_path=/usr/bin/llvm-symbolizer-16")

# Where each test program leaves its cases as JUnit, for scripts/test.sh to count.
set(quire_test_results ${CMAKE_BINARY_DIR}/test-results)

# What every test of ctest shares; its label is its folder below tests/. Further
# NAME=value pairs of its environment may follow.
function(quire_set_test_properties name timeout)
    string(MAKE_C_IDENTIFIER "${name}" report)
    math(EXPR timeout "${timeout} * ${QUIRE_TEST_PATIENCE}")
    cmake_path(RELATIVE_PATH CMAKE_CURRENT_SOURCE_DIR BASE_DIRECTORY ${PROJECT_SOURCE_DIR}/tests OUTPUT_VARIABLE folder)
    set_tests_properties(${name} PROPERTIES
        TIMEOUT ${timeout}
        LABELS "${folder}"
        ENVIRONMENT "${quire_test_environment};GTEST_OUTPUT=xml:${quire_test_results}/${report}.xml;${ARGN}")
endfunction()

# quire_add_test(<name> SOURCES ... USES ... [TIMEOUT seconds])
# A GoogleTest program with an application object and a C locale.
function(quire_add_test name)
    cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;USES" ${ARGN})
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 60)
    endif()
    add_executable(${name} ${ARG_SOURCES})
    quire_set_target_options(${name})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_link_libraries(${name} PRIVATE ${ARG_USES} quire_testing)
    add_test(NAME ${name} COMMAND ${name})
    quire_set_test_properties(${name} ${ARG_TIMEOUT})
endfunction()

# quire_add_quick_test(<name> SOURCES ... USES ... [TIMEOUT seconds])
# A Qt Quick Test program: its main from QUICK_TEST_MAIN_WITH_SETUP, its cases
# in tst_*.qml beside it.
function(quire_add_quick_test name)
    cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;USES" ${ARGN})
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 120)
    endif()
    add_executable(${name} ${ARG_SOURCES})
    quire_set_target_options(${name})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_compile_definitions(${name} PRIVATE QUICK_TEST_SOURCE_DIR="${CMAKE_CURRENT_SOURCE_DIR}")
    target_link_libraries(${name} PRIVATE ${ARG_USES} Qt6::QuickTest)
    file(MAKE_DIRECTORY ${quire_test_results})
    add_test(NAME ${name} COMMAND ${name} -o ${quire_test_results}/${name}.xml,junitxml -o -,txt)
    quire_set_test_properties(${name} ${ARG_TIMEOUT})
endfunction()
