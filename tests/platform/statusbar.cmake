# The status item and the program's windows.

# Draws the icon into a file, for eyes.
add_executable(tray_look tray_look.cpp)
orvalen_common(tray_look)
set_target_properties(tray_look PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${ORVALEN_TEST_OUTPUT_DIRECTORY}")
target_link_libraries(tray_look PRIVATE orvalen_platform_qt_statusbar)

orvalen_test(status_bar_qt_test
    SOURCES ../app/OffscreenMain.cpp ApplicationQtTest.cpp StatusIconTest.cpp StatusItemQtTest.cpp
    LIBRARIES orvalen_platform_qt_statusbar)

# On a display and a session bus of the test's own.
find_package(PkgConfig REQUIRED)
pkg_check_modules(orvalen_test_xcb REQUIRED IMPORTED_TARGET xcb)
orvalen_test(tray_host_linux_test SOURCES TrayHostLinuxTest.cpp ../support/XServer.cpp
    LIBRARIES orvalen_platform_linux_tray PkgConfig::orvalen_test_xcb)
set_target_properties(tray_host_linux_test PROPERTIES AUTOMOC ON)
