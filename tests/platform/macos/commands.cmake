# What macOS's own commands and the toolkit do for it. Needs nothing of that system, so it runs on every one, and where
# it can without Qt under the sanitizers, too.
include_guard(GLOBAL)

orvalen_test(macos_commands_test
    SOURCES
        ${CMAKE_CURRENT_LIST_DIR}/HostNameScutilTest.cpp
        ${CMAKE_CURRENT_LIST_DIR}/NotificationsOsascriptTest.cpp
        ${CMAKE_CURRENT_LIST_DIR}/SoundsAfplayTest.cpp
        ${CMAKE_CURRENT_LIST_DIR}/SpeechSayTest.cpp
        ${CMAKE_CURRENT_LIST_DIR}/UsbReportTest.cpp
        ${CMAKE_CURRENT_LIST_DIR}/UsbTreeSystemProfilerTest.cpp
    LIBRARIES orvalen_platform_macos_commands orvalen_mirroring orvalen_streaming
)

if(NOT ORVALEN_RULES_ONLY)
    find_package(Qt6 6.4 REQUIRED COMPONENTS Gui Widgets)
    orvalen_test(macos_pages_test
        SOURCES ${CMAKE_CURRENT_LIST_DIR}/SettingsPagesWorkspaceTest.cpp
        LIBRARIES orvalen_platform_macos_pages orvalen_mirroring orvalen_test_support
    )
    orvalen_test(url_opener_qt_test
        SOURCES ${CMAKE_CURRENT_LIST_DIR}/UrlOpenerQtTest.cpp
        LIBRARIES orvalen_platform_qt Qt6::Gui
        ENVIRONMENT QT_QPA_PLATFORM=offscreen
    )
    set_target_properties(url_opener_qt_test PROPERTIES AUTOMOC ON)
    orvalen_test(colorscheme_palette_test
        SOURCES ${CMAKE_CURRENT_LIST_DIR}/ColorSchemeOfPaletteTest.cpp
        LIBRARIES orvalen_platform_qt orvalen_ui Qt6::Widgets
        ENVIRONMENT QT_QPA_PLATFORM=offscreen
    )
endif()
