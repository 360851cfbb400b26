# What a packager or a developer may choose. Everything here has a default that
# gives the ordinary program.
set(QUIRE_SUPPORT_DIRECTORY "Quire" CACHE STRING
    "Name of the per-user data folder; a development build may keep its data apart")
set(QUIRE_BUILD 1 CACHE STRING "Number of this build of its version, one more for each that is published")
set(QUIRE_FEEDBACK_ADDRESS "feedback@quire.example" CACHE STRING "Where readers write to about the program")
set(QUIRE_UPDATE_HOST "quire.example" CACHE STRING "Host of the version manifest and the help pages")
set(QUIRE_SAMPLE_DATA "" CACHE PATH
    "Folder with captured answers of the outside services; tests that read it run only when it is set")
option(QUIRE_WARNINGS_AS_ERRORS "Stop on the first compiler warning" OFF)
option(QUIRE_BUILD_BENCHMARKS "Build the benchmarks in bench/" OFF)
option(QUIRE_FUZZ "Build the fuzzers in fuzz/; needs clang" OFF)
option(QUIRE_HARDENED "Compile and link for what is installed: position independent, checked, read-only" OFF)
set(QUIRE_TEST_PATIENCE 1 CACHE STRING "How many times its ordinary time a test may take")
set(QUIRE_SANITIZE "" CACHE STRING "Comma-separated sanitizers, as -fsanitize takes them")

if(QUIRE_SANITIZE)
    add_compile_options(-fsanitize=${QUIRE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
    add_link_options(-fsanitize=${QUIRE_SANITIZE})
endif()
if(QUIRE_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# Of the Debian hardening guide; FORTIFY_SOURCE needs an optimised build.
if(QUIRE_HARDENED)
    include(CheckPIESupported)
    check_pie_supported(LANGUAGES CXX)
    set(CMAKE_POSITION_INDEPENDENT_CODE ON)
    add_compile_options(-fstack-protector-strong -fstack-clash-protection -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2
        -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.)
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|amd64|AMD64")
        add_compile_options(-fcf-protection)
    endif()
    add_link_options(-Wl,-z,relro,-z,now)
endif()
