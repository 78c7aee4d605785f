# The window that shows and changes the simulated laptop.
find_package(Qt6 REQUIRED COMPONENTS Widgets)

orvalen_library(orvalen_simulated_window
    SimulatedControls.cpp
    SimulatedHistory.cpp
    SimulatedLaptopWindow.cpp
    SimulatedSlider.cpp
    TemperaturePlot.cpp
)
set_target_properties(orvalen_simulated_window PROPERTIES AUTOMOC ON)
target_link_libraries(orvalen_simulated_window PUBLIC orvalen_core orvalen_platform_simulated orvalen_ui Qt6::Widgets)
