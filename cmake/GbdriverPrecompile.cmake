# Precompiled headers: half the time of compiling a small source goes into those of Qt. They save
# time and nothing else: each source includes what it needs, and -DGBDRIVER_PCH=OFF builds without.
set(GBDRIVER_PCH_std
    <algorithm> <array> <cstdint> <functional> <memory> <optional> <string> <vector>)
set(GBDRIVER_PCH_core
    ${GBDRIVER_PCH_std} <QByteArray> <QDir> <QFile> <QObject> <QString> <QStringList> <QVector>)
set(GBDRIVER_PCH_cli ${GBDRIVER_PCH_core})
set(GBDRIVER_PCH_window ${GBDRIVER_PCH_std} <QtWidgets>)
set(GBDRIVER_PCH_test ${GBDRIVER_PCH_std} <QtTest>)
set(GBDRIVER_PCH_window_test ${GBDRIVER_PCH_test} <QtWidgets>)

# Tests run the loops of these kinds by the million, and -O1 halves the time of that. The sources of
# the other kinds take longer to compile with it than they gain.
set(GBDRIVER_DEBUG_OPTIONS_std -O1)
set(GBDRIVER_DEBUG_OPTIONS_core -O1)

# gbdriver_precompile(KIND TARGET...): lets the targets use precompiled headers of one of the kinds
# above. std is for targets without Qt. The first target of a kind brings what all others use, so all
# have to be compiled with the same options, and the first one may define no macro that others lack.
function(gbdriver_precompile kind)
    foreach(target IN LISTS ARGN)
        target_compile_options(${target} PRIVATE
            $<$<CONFIG:Debug>:${GBDRIVER_DEBUG_OPTIONS_${kind}}>)
    endforeach()
    if(NOT GBDRIVER_PCH)
        return()
    endif()
    foreach(target IN LISTS ARGN)
        get_property(owner GLOBAL PROPERTY gbdriver_pch_owner_${kind})
        if(owner)
            target_precompile_headers(${target} REUSE_FROM ${owner})
        else()
            target_precompile_headers(${target} PRIVATE ${GBDRIVER_PCH_${kind}})
            set_property(GLOBAL PROPERTY gbdriver_pch_owner_${kind} ${target})
        endif()
    endforeach()
endfunction()
