# Makes the program's target an application bundle: include on a Mac, then wendrel_bundle(<target>).
set(WENDREL_BUNDLE_DIR ${CMAKE_CURRENT_LIST_DIR})

function(wendrel_bundle target)
    set_target_properties(${target} PROPERTIES
        MACOSX_BUNDLE ON
        OUTPUT_NAME Wendrel
        MACOSX_BUNDLE_INFO_PLIST ${WENDREL_BUNDLE_DIR}/Info.plist.in
        MACOSX_BUNDLE_BUNDLE_NAME Wendrel
        MACOSX_BUNDLE_EXECUTABLE_NAME Wendrel
        # The defaults domain and the keychain's access list go by this name: it never changes.
        MACOSX_BUNDLE_GUI_IDENTIFIER app.halvorant.WendrelX
        MACOSX_BUNDLE_SHORT_VERSION_STRING ${PROJECT_VERSION}
        MACOSX_BUNDLE_BUNDLE_VERSION ${PROJECT_VERSION})
    # Shown when it exists; without one the system shows its plain icon.
    if(EXISTS ${WENDREL_BUNDLE_DIR}/Wendrel.icns)
        target_sources(${target} PRIVATE ${WENDREL_BUNDLE_DIR}/Wendrel.icns)
        set_source_files_properties(${WENDREL_BUNDLE_DIR}/Wendrel.icns PROPERTIES
            MACOSX_PACKAGE_LOCATION Resources)
        set_target_properties(${target} PROPERTIES MACOSX_BUNDLE_ICON_FILE Wendrel)
    endif()
    # The simulated Mac's tools are looked for in ../libexec, seen from the executable. cp keeps their links, so that
    # one program is there to be signed.
    if(TARGET wendrel-sim-tools)
        set(inside $<TARGET_BUNDLE_CONTENT_DIR:${target}>/libexec)
        add_custom_command(TARGET ${target} POST_BUILD
            COMMAND ${CMAKE_COMMAND} -E rm -rf ${inside}
            COMMAND cp -RP ${CMAKE_BINARY_DIR}/libexec ${inside} VERBATIM)
    endif()
    install(TARGETS ${target} BUNDLE DESTINATION .)
endfunction()
