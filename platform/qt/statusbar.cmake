# The status item in a desktop's tray, and the program's windows.
find_package(Qt6 6.4 REQUIRED COMPONENTS Widgets)

orvalen_library(orvalen_platform_qt_statusbar
    ApplicationQt.cpp
    StatusBarQt.cpp
    StatusIcon.cpp
    StatusItemQt.cpp)
set_target_properties(orvalen_platform_qt_statusbar PROPERTIES AUTOMOC ON)
target_link_libraries(orvalen_platform_qt_statusbar PUBLIC orvalen_platform Qt6::Widgets PRIVATE orvalen_symbols)
