# What the programs around a Linux desktop do for it: graphics memory copies, sounds, speech, notifications, the announced
# name, sleep, settings pages, the way to the browser, and the one program of a session.

find_package(PkgConfig REQUIRED)
find_package(Qt6 6.4 REQUIRED COMPONENTS Core DBus)
pkg_check_modules(canberra REQUIRED IMPORTED_TARGET libcanberra>=0.30)
pkg_check_modules(systemd REQUIRED IMPORTED_TARGET libsystemd)

# Headers only: the Vulkan library is loaded when a queue is opened, and only there.
find_package(Vulkan 1.3 REQUIRED)
orvalen_library(orvalen_platform_linux_graphics
    GraphicsBufferVulkan.cpp
    GraphicsCopiesVulkan.cpp
    GraphicsQueueVulkan.cpp)
target_link_libraries(orvalen_platform_linux_graphics PUBLIC orvalen_platform Vulkan::Headers PRIVATE ${CMAKE_DL_LIBS})

orvalen_library(orvalen_platform_linux_desktop
    BusConnection.cpp
    HostNameAvahi.cpp
    NotificationsDBus.cpp NotificationsDBus.h
    PowerAssertionsFirstGranted.cpp
    ProgramInstanceDBus.cpp
    SettingsPagesDesktop.cpp
    SleepInhibitionByCookie.cpp
    SleepInhibitorLogind.cpp
    SleepInhibitorPortal.cpp
    SleepInhibitorPowerManagement.cpp
    SleepInhibitorSessionManager.cpp
    SleepInhibitorsLinux.cpp
    SoundsCanberra.cpp
    SpeechCommand.cpp
    UrlOpenerXdg.cpp)
set_target_properties(orvalen_platform_linux_desktop PROPERTIES AUTOMOC ON)
target_link_libraries(orvalen_platform_linux_desktop PUBLIC orvalen_platform Qt6::Core Qt6::DBus
    PRIVATE orvalen_platform_posix PkgConfig::canberra PkgConfig::systemd)
