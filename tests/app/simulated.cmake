find_package(Qt6 REQUIRED COMPONENTS Widgets Svg DBus)

orvalen_test(app_simulated_test
    SOURCES
        OffscreenMain.cpp
        SimulatedControlsTest.cpp
        SimulatedHistoryTest.cpp
        SimulatedLaptopWindowTest.cpp
    LIBRARIES orvalen_simulated_window orvalen_test_support
)
