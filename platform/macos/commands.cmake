# What macOS's own commands do for it. Plain C++ on ChildProcesses, so it is built and tested on every system.
find_package(nlohmann_json 3.11 REQUIRED) # headers alone

orvalen_library(orvalen_platform_macos_commands
    ${CMAKE_CURRENT_LIST_DIR}/HostNameScutil.cpp
    ${CMAKE_CURRENT_LIST_DIR}/NotificationsOsascript.cpp
    ${CMAKE_CURRENT_LIST_DIR}/SoundsAfplay.cpp
    ${CMAKE_CURRENT_LIST_DIR}/SpeechSay.cpp
    ${CMAKE_CURRENT_LIST_DIR}/UsbReport.cpp
    ${CMAKE_CURRENT_LIST_DIR}/UsbTreeSystemProfiler.cpp)
target_link_libraries(orvalen_platform_macos_commands PUBLIC orvalen_platform PRIVATE nlohmann_json::nlohmann_json)

# The pages of the system's settings are addresses, which the toolkit knows how to read.
if(NOT ORVALEN_RULES_ONLY)
    find_package(Qt6 6.4 REQUIRED COMPONENTS Core)
    orvalen_library(orvalen_platform_macos_pages ${CMAKE_CURRENT_LIST_DIR}/SettingsPagesWorkspace.cpp)
    target_link_libraries(orvalen_platform_macos_pages PUBLIC orvalen_platform PRIVATE Qt6::Core)
endif()
