orvalen_test(platform_simulated_test
    SOURCES
        simulated/SimulatedContractTest.cpp
        simulated/SimulatedLaptopTest.cpp
        simulated/SimulatedSensorsTest.cpp
        simulated/SimulatedWarmupTest.cpp
        simulated/ThermalModelTest.cpp
    LIBRARIES orvalen_platform_simulated orvalen_core orvalen_test_support
)
