# Headers that are compiled once for all the targets that reuse them, rather than once a target.

# tarnvale_precompiled(name HEADERS ... [USES ...] [DEFINITIONS ...]): GCC takes them only where the flags are the same
# and each macro that was set for them is set, too; so they have no more macros than the barest of their users.
function(tarnvale_precompiled target)
    cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "HEADERS;USES;DEFINITIONS")
    file(CONFIGURE OUTPUT ${target}.cpp CONTENT "")
    add_library(${target} OBJECT EXCLUDE_FROM_ALL ${CMAKE_CURRENT_BINARY_DIR}/${target}.cpp)
    tarnvale_target(${target})
    target_link_libraries(${target} PRIVATE ${ARG_USES})
    target_compile_definitions(${target} PRIVATE ${ARG_DEFINITIONS})
    target_precompile_headers(${target} PRIVATE ${ARG_HEADERS})
endfunction()

function(tarnvale_reuse_precompiled target precompiled)
    target_precompile_headers(${target} REUSE_FROM ${precompiled})
    # What the headers have; a program would have -fPIE instead.
    target_compile_options(${target} PRIVATE -fPIC)
endfunction()

set(standard_headers
    <algorithm> <array> <chrono> <expected> <filesystem> <functional> <map> <memory> <optional> <set> <span> <string>
    <string_view> <unordered_map> <utility> <vector>)
set(qt_headers
    <QCoreApplication> <QFuture> <QJsonDocument> <QJsonObject> <QObject> <QPointer> <QPromise> <QString> <QStringList>
    <QUrl> <QCoroFuture> <QCoroTask>)
set(test_headers <gmock/gmock.h> <gtest/gtest.h>)

tarnvale_precompiled(tarnvale-headers HEADERS ${standard_headers})
tarnvale_precompiled(tarnvale-qt-headers HEADERS ${standard_headers} ${qt_headers}
    USES Qt6::Core QCoro6::Core DEFINITIONS ${TARNVALE_QT_DEFINITIONS})
if(TARNVALE_TESTS)
    tarnvale_precompiled(tarnvale-test-headers HEADERS ${standard_headers} ${test_headers} USES GTest::gmock)
    tarnvale_precompiled(tarnvale-qt-test-headers HEADERS ${standard_headers} ${qt_headers} ${test_headers}
        USES Qt6::Core QCoro6::Core GTest::gmock DEFINITIONS ${TARNVALE_QT_DEFINITIONS})
endif()
