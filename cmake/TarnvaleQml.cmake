# What the build makes out of QML isn't ours to correct: no remarks about it, and none of our precompiled headers.
# Call it after qt_add_qml_module(target ...).
function(tarnvale_qml target)
    # Compiled to C++ as well, it would take longer to build than all the rest and start no faster.
    set_target_properties(${target} PROPERTIES QT_QMLCACHEGEN_ARGUMENTS "--only-bytecode")
    get_target_property(sources ${target} SOURCES)
    list(FILTER sources INCLUDE REGEX "qmlcache|qmltyperegistrations")
    set_source_files_properties(${sources} PROPERTIES COMPILE_OPTIONS "-w;-Wno-error" SKIP_PRECOMPILE_HEADERS ON
        SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()
