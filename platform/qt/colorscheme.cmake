find_package(Qt6 REQUIRED COMPONENTS Core DBus)

orvalen_library(orvalen_platform_qt_colorscheme ColorSchemePortal.cpp)
set_target_properties(orvalen_platform_qt_colorscheme PROPERTIES AUTOMOC ON)
target_link_libraries(orvalen_platform_qt_colorscheme PUBLIC orvalen_platform Qt6::Core Qt6::DBus)
