# Core Foundation's objects, temperature sensors and power sources.
orvalen_macos_test(macos_sensors_test
    ADAPTERS CoreFoundationOwned.cpp PowerSourcesIOKit.cpp TemperatureSensorsIOKit.cpp
    FAKES fakes/HidEvents.cpp fakes/PowerSources.cpp
    SOURCES CoreFoundationOwnedTest.cpp PowerSourcesIOKitTest.cpp TemperatureSensorsIOKitTest.cpp
    LIBRARIES orvalen_core
)

# A system may drop any of the functions that IOKit does not declare. Under another name the linker finds none either.
add_library(orvalen_macos_sensors_case OBJECT
    "${PROJECT_SOURCE_DIR}/platform/macos/CoreFoundationOwned.cpp"
    "${PROJECT_SOURCE_DIR}/platform/macos/TemperatureSensorsIOKit.cpp"
    fakes/HidEvents.cpp
    TemperatureSensorsMissingFunction.cpp
)
orvalen_common(orvalen_macos_sensors_case)
target_link_libraries(orvalen_macos_sensors_case PUBLIC orvalen_macos_fakes GTest::gmock GTest::gtest_main)
foreach(function IN ITEMS
    IOHIDEventSystemClientCreate
    IOHIDEventSystemClientSetMatching
    IOHIDServiceClientCopyEvent
    IOHIDEventGetFloatValue
)
    set(program macos_sensors_without_${function}_test)
    add_executable(${program})
    target_link_libraries(${program} PRIVATE orvalen_macos_sensors_case)
    target_link_options(${program} PRIVATE "-Wl,--wrap=${function}")
    set_target_properties(${program} PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY "${ORVALEN_TEST_OUTPUT_DIRECTORY}" LINKER_LANGUAGE CXX)
    add_test(NAME TemperatureSensorsIOKit.without${function} COMMAND ${program})
endforeach()
