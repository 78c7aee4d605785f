# Idle time, screen-capture access, power assertions, settings and dates.
orvalen_macos_test(macos_services_test
    ADAPTERS
        CoreFoundationOwned.cpp
        InputIdleTimeQuartz.cpp
        LocalisedDatesCoreFoundation.cpp
        PowerAssertionsIOKit.cpp
        ScreenCaptureAccessQuartz.cpp
        SettingsStoreDefaults.cpp
    FAKES
        fakes/CoreGraphics.cpp
        fakes/DateFormatter.cpp
        fakes/PowerManagement.cpp
        fakes/Preferences.cpp
    SOURCES
        InputIdleTimeQuartzTest.cpp
        LocalisedDatesCoreFoundationTest.cpp
        PowerAssertionsIOKitTest.cpp
        ScreenCaptureAccessQuartzTest.cpp
        SettingsStoreDefaultsTest.cpp
)

# Files as a Mac brings them to the disk: by what its C library alone has.
orvalen_macos_test(macos_files_test SOURCES WholeFileTest.cpp ${PROJECT_SOURCE_DIR}/platform/posix/WholeFile.cpp)
target_compile_definitions(macos_files_test PRIVATE F_FULLFSYNC=51)
target_link_options(macos_files_test PRIVATE LINKER:--wrap=fcntl,--wrap=fsync)
