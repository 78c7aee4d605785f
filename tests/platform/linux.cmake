orvalen_test(platform_linux_test
    SOURCES
        BoundedPowerSourcesTest.cpp
        BoundedTemperatureSensorsTest.cpp
        ClockBoottimeTest.cpp
        InputIdleTimeFirstAvailableTest.cpp
        PowerSourcesSysfsTest.cpp
        ProcessorsAffinityTest.cpp
        SensorProductNamesTest.cpp
        SysfsFilesTest.cpp
        TemperatureSensorsContractTest.cpp
        TemperatureSensorsSysfsTest.cpp
        TerminationSignalsTest.cpp
        ../support/SysfsTree.cpp
    LIBRARIES orvalen_platform_linux orvalen_platform_posix orvalen_core
)
orvalen_test(platform_x11_test
    SOURCES
        InputIdleTimeX11Test.cpp
        LaunchFeedbackX11Test.cpp
        ScreenCaptureAccessLinuxTest.cpp
        ../support/XServer.cpp
    LIBRARIES orvalen_platform_linux
)
