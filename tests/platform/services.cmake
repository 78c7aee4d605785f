# Tests of the adapters that give the program its services: queues, settings, sounds, graphics, notifications.
find_package(Qt6 6.4 REQUIRED COMPONENTS Core DBus Gui Network)

orvalen_test(dispatch_qt_test SOURCES DispatchQtTest.cpp LIBRARIES orvalen_platform_qt)

# The settings test kills this program in the middle of its writes.
add_executable(settings_writer SettingsWriter.cpp SettingsWriter.h)
orvalen_common(settings_writer)
set_target_properties(settings_writer PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${ORVALEN_TEST_OUTPUT_DIRECTORY}")
target_link_libraries(settings_writer PRIVATE orvalen_platform_qt)
orvalen_test(settings_store_qt_test SOURCES SettingsStoreQtTest.cpp LIBRARIES orvalen_platform_qt)
target_compile_definitions(settings_store_qt_test PRIVATE SETTINGS_WRITER="$<TARGET_FILE:settings_writer>")
add_dependencies(settings_store_qt_test settings_writer)

# Only the software driver, whatever hardware the machine has.
file(GLOB software_vulkan_driver /usr/share/vulkan/icd.d/lvp_icd.*.json)
orvalen_test(graphics_copies_vulkan_test SOURCES GraphicsCopiesVulkanTest.cpp
    LIBRARIES orvalen_platform_linux_graphics
    ENVIRONMENT "VK_ICD_FILENAMES=${software_vulkan_driver}")

# The chimes, played to a real sound server and recorded.
find_package(Python3 REQUIRED COMPONENTS Interpreter)
add_executable(play_sound PlaySound.cpp)
orvalen_common(play_sound)
set_target_properties(play_sound PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${ORVALEN_TEST_OUTPUT_DIRECTORY}")
target_link_libraries(play_sound PRIVATE orvalen_platform_linux_desktop)
add_test(NAME SoundsCanberra
    COMMAND "${Python3_EXECUTABLE}" "${CMAKE_CURRENT_SOURCE_DIR}/sounds_canberra_test.py" "$<TARGET_FILE:play_sound>"
        "${CMAKE_BINARY_DIR}/${CMAKE_INSTALL_DATADIR}/sounds/orvalen")
set_tests_properties(SoundsCanberra PROPERTIES SKIP_RETURN_CODE 77 TIMEOUT 180)

# Against a server of the test's own on a bus of its own.
orvalen_test(notifications_dbus_test SOURCES NotificationsDBusTest.cpp LIBRARIES orvalen_platform_linux_desktop)
set_target_properties(notifications_dbus_test PROPERTIES AUTOMOC ON)

# Where the system bus would be, this process has one of its own.
orvalen_test(host_name_avahi_test SOURCES HostNameAvahiTest.cpp LIBRARIES orvalen_platform_linux_desktop Qt6::Network)
set_target_properties(host_name_avahi_test PROPERTIES AUTOMOC ON)

# Keeping awake: which service is asked, by fakes; what each is asked, by stand-ins and the real thing on buses of the
# test's own.
orvalen_test(power_assertions_test SOURCES PowerAssertionsFirstGrantedTest.cpp
    LIBRARIES orvalen_platform_linux_desktop)
add_executable(hold_awake HoldAwake.cpp)
orvalen_common(hold_awake)
set_target_properties(hold_awake PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${ORVALEN_TEST_OUTPUT_DIRECTORY}")
target_link_libraries(hold_awake PRIVATE orvalen_platform_linux_desktop)
add_test(NAME SleepInhibitors
    COMMAND "${Python3_EXECUTABLE}" "${CMAKE_CURRENT_SOURCE_DIR}/sleep_inhibitors_test.py" "$<TARGET_FILE:hold_awake>")
set_tests_properties(SleepInhibitors PROPERTIES SKIP_RETURN_CODE 77 TIMEOUT 300)

orvalen_test(speech_command_test SOURCES SpeechCommandTest.cpp ../support/TemporaryFolder.cpp
    LIBRARIES orvalen_platform_linux_desktop orvalen_platform_posix)

orvalen_test(url_opener_xdg_test SOURCES UrlOpenerXdgTest.cpp ../support/TemporaryFolder.cpp
    LIBRARIES orvalen_platform_linux_desktop orvalen_platform_posix)

orvalen_test(pasteboard_qt_test SOURCES PasteboardQtTest.cpp ../support/XServer.cpp
    LIBRARIES orvalen_platform_qt Qt6::Gui)

orvalen_test(settings_pages_desktop_test SOURCES SettingsPagesDesktopTest.cpp ../support/TemporaryFolder.cpp
    LIBRARIES orvalen_platform_linux_desktop orvalen_platform_posix)

# On session buses of the test's own.
find_package(PkgConfig REQUIRED)
pkg_check_modules(orvalen_test_systemd REQUIRED IMPORTED_TARGET libsystemd)
orvalen_test(program_instance_dbus_test SOURCES ProgramInstanceDBusTest.cpp
    LIBRARIES orvalen_platform_linux_desktop PkgConfig::orvalen_test_systemd)
