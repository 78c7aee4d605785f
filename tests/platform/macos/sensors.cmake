# Core Foundation's objects, temperature sensors and power sources.
orvalen_macos_test(macos_sensors_test
    ADAPTERS CoreFoundationOwned.cpp
    SOURCES CoreFoundationOwnedTest.cpp
)
