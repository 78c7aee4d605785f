# The one place where the adapters are chosen, with all of them and all fakes.
orvalen_macos_test(macos_wiring_test
    ADAPTERS
        ClockContinuous.cpp
        CoreFoundationOwned.cpp
        HotKeysCarbon.cpp
        InputIdleTimeQuartz.cpp
        LocalisedDatesCoreFoundation.cpp
        PowerAssertionsIOKit.cpp
        PowerSourcesIOKit.cpp
        ProcessorsSysctl.cpp
        ProgramInstanceAppleEvents.cpp
        ScreenCaptureAccessQuartz.cpp
        SettingsStoreDefaults.cpp
        TemperatureSensorsIOKit.cpp
        ThreadQuality.cpp
    FAKES
        fakes/Carbon.cpp
        fakes/CoreGraphics.cpp
        fakes/DateFormatter.cpp
        fakes/HidEvents.cpp
        fakes/PowerManagement.cpp
        fakes/PowerSources.cpp
        fakes/Preferences.cpp
        fakes/Threads.cpp
    SOURCES NativePlatformMacosTest.cpp ${PROJECT_SOURCE_DIR}/app/NativePlatformMacos.cpp
    LIBRARIES
        orvalen_macos_objectivec
        orvalen_platform_macos_commands
        orvalen_platform_macos_pages
        orvalen_platform_posix
        orvalen_platform_qt
)
target_link_options(macos_wiring_test PRIVATE LINKER:--wrap=clock_gettime,--wrap=nanosleep)
set_target_properties(macos_wiring_test PROPERTIES LINKER_LANGUAGE CXX)
