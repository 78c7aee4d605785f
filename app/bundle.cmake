# Orvalen.app: the program, its icon, and beside them the stream server, which is built into the same bundle.
set(icon "${PROJECT_SOURCE_DIR}/packaging/macos/Orvalen.icns")
target_sources(orvalen PRIVATE "${icon}")
set_source_files_properties("${icon}" PROPERTIES MACOSX_PACKAGE_LOCATION Resources)
set_target_properties(orvalen PROPERTIES
    OUTPUT_NAME Orvalen
    MACOSX_BUNDLE ON
    MACOSX_BUNDLE_INFO_PLIST "${PROJECT_SOURCE_DIR}/packaging/macos/Info.plist.in")
add_dependencies(orvalen orvalen-stream-server)
install(TARGETS orvalen BUNDLE DESTINATION .)

# The simulated laptop is for the build tree alone. It finds the server where the program does.
set_target_properties(orvalen-simulated PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${ORVALEN_BUNDLE}/MacOS")
add_dependencies(orvalen-simulated orvalen-stream-server)
