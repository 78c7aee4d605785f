# The status item and the program's windows.

# Draws the icon into a file, for eyes.
add_executable(tray_look tray_look.cpp)
orvalen_common(tray_look)
set_target_properties(tray_look PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${ORVALEN_TEST_OUTPUT_DIRECTORY}")
target_link_libraries(tray_look PRIVATE orvalen_platform_qt_statusbar)
