# orvelle_texts(<target>)
# Compiles resources/i18n/orvelle_<language>.ts and embeds the results in
# <target> as :/i18n/orvelle_<language>.qm.
function(orvelle_texts target)
    set(qm_folder "${CMAKE_BINARY_DIR}/i18n")
    file(MAKE_DIRECTORY "${qm_folder}")
    set(qm_files)
    foreach(language IN ITEMS en fr)
        set(ts "${CMAKE_SOURCE_DIR}/resources/i18n/orvelle_${language}.ts")
        set(qm "${qm_folder}/orvelle_${language}.qm")
        add_custom_command(OUTPUT "${qm}"
            COMMAND Qt6::lrelease -silent -idbased "${ts}" -qm "${qm}"
            DEPENDS "${ts}" VERBATIM)
        list(APPEND qm_files "${qm}")
    endforeach()
    qt_add_resources(${target} orvelle_texts PREFIX /i18n BASE "${qm_folder}" FILES ${qm_files})
endfunction()
