# Orvalen.app: the program, its icon, and beside them the stream server, which is built into the same bundle.
set(icon "${PROJECT_SOURCE_DIR}/packaging/macos/Orvalen.icns")
target_sources(orvalen PRIVATE "${icon}")
set_source_files_properties("${icon}" PROPERTIES MACOSX_PACKAGE_LOCATION Resources)
set_target_properties(orvalen PROPERTIES
    OUTPUT_NAME Orvalen
    MACOSX_BUNDLE ON
    MACOSX_BUNDLE_INFO_PLIST "${PROJECT_SOURCE_DIR}/packaging/macos/Info.plist.in")
install(TARGETS orvalen BUNDLE DESTINATION .)

# The simulated laptop is for the build tree alone, and outside the bundle, which would lend it the user's settings. It
# looks for the server as the program does.
set_target_properties(orvalen-simulated PROPERTIES
    RUNTIME_OUTPUT_DIRECTORY "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/simulated")
file(MAKE_DIRECTORY "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
file(CREATE_LINK Orvalen.app/Contents/Resources "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/Resources" SYMBOLIC)
