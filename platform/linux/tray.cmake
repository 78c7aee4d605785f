# Where the tray is, and how a click in it brings a window forward.
find_package(Qt6 6.4 REQUIRED COMPONENTS Gui DBus)

orvalen_library(orvalen_platform_linux_tray
    StatusNotifierWatch.cpp
    TrayHostLinux.cpp
    WindowActivationX11.cpp
    XEmbedTrayWatch.cpp)
set_target_properties(orvalen_platform_linux_tray PROPERTIES AUTOMOC ON)
target_link_libraries(orvalen_platform_linux_tray PUBLIC orvalen_platform Qt6::Gui Qt6::DBus
    PRIVATE orvalen_platform_linux PkgConfig::orvalen_xcb)
