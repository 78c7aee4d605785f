orvalen_test(platform_linux_test
    SOURCES
        BoundedPowerSourcesTest.cpp
        BoundedTemperatureSensorsTest.cpp
        ClockBoottimeTest.cpp
        HotKeysFirstAvailableTest.cpp
        InputIdleTimeFirstAvailableTest.cpp
        PowerSourcesSysfsTest.cpp
        ProcessorsAffinityTest.cpp
        SensorProductNamesTest.cpp
        SysfsFilesTest.cpp
        TemperatureSensorsContractTest.cpp
        TemperatureSensorsSysfsTest.cpp
        TerminationSignalsTest.cpp
        UsbTreeSysfsTest.cpp
        ../support/SysfsTree.cpp
    LIBRARIES orvalen_platform_linux orvalen_platform_posix orvalen_core
)
find_package(PkgConfig REQUIRED)
pkg_check_modules(orvalen_test_xcb REQUIRED IMPORTED_TARGET xcb xcb-xtest)
orvalen_test(platform_x11_test
    SOURCES
        HeldKeysX11Test.cpp
        HotKeysX11Test.cpp
        InputIdleTimeX11Test.cpp
        LaunchFeedbackX11Test.cpp
        ScreenCaptureAccessLinuxTest.cpp
        ../support/Typist.cpp
        ../support/TemporaryFolder.cpp
        ../support/XServer.cpp
    LIBRARIES orvalen_platform_linux PkgConfig::orvalen_test_xcb
)
