# Precompiled headers: half the time of compiling a small source goes into those of Qt. They save
# time and nothing else: each source includes what it needs, and -DGBDRIVER_PCH=OFF builds without.
set(GBDRIVER_PCH_std
    <algorithm> <array> <cstdint> <functional> <memory> <optional> <string> <vector>)
set(GBDRIVER_PCH_core
    ${GBDRIVER_PCH_std} <QByteArray> <QDir> <QFile> <QObject> <QString> <QStringList> <QVector>)
set(GBDRIVER_PCH_test ${GBDRIVER_PCH_std} <QtTest>)
set(GBDRIVER_PCH_window_test ${GBDRIVER_PCH_test} <QtWidgets>)

# gbdriver_precompile(KIND TARGET...): lets the targets use precompiled headers of one of the kinds
# above. std is for targets without Qt. The first target of a kind brings what all others use, so
# all have to be compiled with the same options, and the first one may define no macro that others
# lack.
function(gbdriver_precompile kind)
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
