# What every target of ours shares: warnings, sanitizers, the include root and a compiler cache.

find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    # Precompiled headers can be cached only when their time stamps don't count.
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE})
endif()

find_package(Threads REQUIRED)

if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
    set(TARNVALE_SYSTEM linux)
else()
    message(FATAL_ERROR "There is no backend for ${CMAKE_SYSTEM_NAME} yet: it needs its own folders beside linux/")
endif()

function(tarnvale_target target)
    target_include_directories(${target} PRIVATE ${CMAKE_SOURCE_DIR}/src)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor -Wold-style-cast
        -Woverloaded-virtual -Wformat=2 -Wno-missing-field-initializers -Werror -fstack-protector-strong)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # GCC 12 sees overlaps and overflows in std::string that are not there (GCC bugs 105651, 105329), more
        # of them behind precompiled headers.
        target_compile_options(${target} PRIVATE -Wno-tsan -Wno-restrict -Wno-stringop-overflow
            -Wno-stringop-overread -Wno-array-bounds)
        if(TARNVALE_UNIFIED) # the frames of coroutines hold lambdas, which have no linkage
            target_compile_options(${target} PRIVATE -Wno-subobject-linkage)
        endif()
    endif()
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        # libstdc++ 12 offers std::expected only to compilers that claim this version of concepts.
        target_compile_options(${target} PRIVATE -D__cpp_concepts=202002L -Wno-macro-redefined)
    endif()
    if(TARNVALE_FUZZERS)
        # Code tells the fuzzer which of its branches an input reaches.
        target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
    endif()
    if(TARNVALE_SANITIZERS)
        target_compile_options(${target} PRIVATE -fsanitize=${TARNVALE_SANITIZERS} -fno-sanitize-recover=all
            -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE -fsanitize=${TARNVALE_SANITIZERS})
    endif()
    target_link_libraries(${target} PRIVATE Threads::Threads)
endfunction()

# Qt's shorter names for its keywords stay away.
set(TARNVALE_QT_DEFINITIONS QT_NO_KEYWORDS QT_NO_CAST_FROM_BYTEARRAY)

# tarnvale_library(name SOURCES ... USES ...): one room of the house. It sees only the rooms that it uses.
function(tarnvale_library target)
    tarnvale_bare_library(${target} ${ARGN})
    tarnvale_reuse_precompiled(${target} tarnvale-headers)
endfunction()

# The same with Qt: meta objects are made.
function(tarnvale_qt_library target)
    tarnvale_bare_library(${target} ${ARGN})
    set_target_properties(${target} PROPERTIES AUTOMOC ON)
    tarnvale_qt(${target})
endfunction()

# The same for what test programs share; with Qt when it is, or uses, `tarnvale-test-qt`.
function(tarnvale_test_library target)
    tarnvale_bare_library(${target} ${ARGN})
    tarnvale_for_tests(${target} ${target} ${ARGN})
endfunction()

function(tarnvale_bare_library target)
    cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "SOURCES;USES")
    add_library(${target} STATIC ${ARG_SOURCES})
    tarnvale_target(${target})
    target_link_libraries(${target} PUBLIC ${ARG_USES})
endfunction()

# A target with Qt whose sources define no class with Q_OBJECT.
function(tarnvale_qt target)
    target_compile_definitions(${target} PRIVATE ${TARNVALE_QT_DEFINITIONS})
    tarnvale_reuse_precompiled(${target} tarnvale-qt-headers)
endfunction()

# What programs and libraries of the tests share. The further words are those of the target that tell whether it has Qt.
function(tarnvale_for_tests target)
    target_include_directories(${target} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
    target_compile_definitions(${target} PRIVATE TARNVALE_TESTS_FOLDER="${CMAKE_SOURCE_DIR}/tests"
        TARNVALE_EXECUTABLE="$<TARGET_FILE:tarnvale>")
    target_link_libraries(${target} PRIVATE GTest::gmock GTest::gtest)
    if("tarnvale-test-qt" IN_LIST ARGN)
        target_compile_definitions(${target} PRIVATE ${TARNVALE_QT_DEFINITIONS})
        tarnvale_reuse_precompiled(${target} tarnvale-qt-test-headers)
    else()
        tarnvale_reuse_precompiled(${target} tarnvale-test-headers)
    endif()
endfunction()

# tarnvale_test(name SOURCES ... USES ... [LABELS ...] [TIMEOUT seconds] [LOCK name]): one test program, each of
# its cases a test of ctest; with `tarnvale-test-qt` among USES it has an event loop. A case that the machine
# lacks the means for skips itself and says why. Cases with the same LOCK never run side by side.
function(tarnvale_test target)
    cmake_parse_arguments(PARSE_ARGV 1 ARG "" "TIMEOUT;LOCK" "SOURCES;USES;LABELS")
    add_executable(${target} ${ARG_SOURCES})
    tarnvale_target(${target})
    target_link_libraries(${target} PRIVATE ${ARG_USES})
    tarnvale_for_tests(${target} ${ARG_USES})
    if(NOT "tarnvale-test-qt" IN_LIST ARG_USES)
        target_link_libraries(${target} PRIVATE GTest::gtest_main)
    endif()
    if(NOT TARNVALE_SANITIZERS STREQUAL "thread") # what is tested there runs no program of ours
        add_dependencies(${target} tarnvale)
    endif()
    set(properties SKIP_REGULAR_EXPRESSION "\\[  SKIPPED \\]")
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 120)
    endif()
    list(APPEND properties TIMEOUT ${ARG_TIMEOUT})
    if(ARG_LABELS)
        list(APPEND properties LABELS "${ARG_LABELS}")
    endif()
    if(ARG_LOCK)
        list(APPEND properties RESOURCE_LOCK "${ARG_LOCK}")
    endif()
    gtest_discover_tests(${target} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 120 PROPERTIES ${properties})
endfunction()
