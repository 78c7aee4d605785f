# Hot keys and what others ask of the program; threads, processors and time.
orvalen_macos_test(macos_carbon_test
    ADAPTERS ClockContinuous.cpp HotKeysCarbon.cpp ProcessorsSysctl.cpp ProgramInstanceAppleEvents.cpp ThreadQuality.cpp
    FAKES fakes/Carbon.cpp fakes/RunningApplications.cpp fakes/Threads.cpp
    SOURCES HotKeyManagerCarbonTest.cpp HotKeysCarbonTest.cpp ProgramInstanceAppleEventsTest.cpp ThreadsTest.cpp
    LIBRARIES orvalen_platform_qt orvalen_system orvalen_test_support
)
# The C library has these here, too.
target_link_options(macos_carbon_test PRIVATE LINKER:--wrap=clock_gettime,--wrap=nanosleep)
