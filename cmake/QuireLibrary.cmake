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

# quire_add_test(<name> SOURCES ... USES ... [LABELS ...] [TIMEOUT seconds])
# A GoogleTest program with an application object and a C locale; each test of
# it is a test of ctest, so that the counts are those of sentences proved.
function(quire_add_test name)
    cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;USES;LABELS" ${ARGN})
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 60)
    endif()
    add_executable(${name} ${ARG_SOURCES})
    quire_set_target_options(${name})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_link_libraries(${name} PRIVATE ${ARG_USES} quire_testing)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES
        TIMEOUT ${ARG_TIMEOUT}
        LABELS "${ARG_LABELS}"
        ENVIRONMENT "${quire_test_environment}")
endfunction()

set(quire_test_environment
    "QT_QPA_PLATFORM=offscreen;QT_QUICK_BACKEND=software;QT_QUICK_CONTROLS_STYLE=Basic;LC_ALL=C.UTF-8;TZ=Europe/Oslo")
