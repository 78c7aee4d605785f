# Metal and AppKit. Objective-C needs clang, and a runtime, which is a fake here: it knows which objects are still owned.
# The tests themselves are C++, as are the headers of the adapters.
find_program(ORVALEN_CLANGXX clang++)
if(NOT ORVALEN_CLANGXX)
    message(FATAL_ERROR "The tests of what speaks Objective-C need clang++.")
endif()
add_subdirectory(objectivec)

orvalen_macos_test(macos_objectivec_test
    SOURCES
        ApplicationAppKitTest.cpp
        GraphicsCopiesMetalTest.cpp
        RunningApplicationsTest.cpp
        StatusBarAppKitTest.cpp
        UserActivityTest.cpp
    LIBRARIES orvalen_macos_objectivec
)
set_target_properties(macos_objectivec_test PROPERTIES LINKER_LANGUAGE CXX)

include(wiring.cmake)
