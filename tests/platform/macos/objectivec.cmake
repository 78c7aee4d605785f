# Metal and AppKit. Objective-C needs clang, and a runtime, which is a fake here: it knows which objects are still owned.
# The tests themselves are C++, as are the headers of the adapters.
find_program(ORVALEN_CLANGXX clang++)
if(NOT ORVALEN_CLANGXX)
    message(WARNING "no clang++: the tests of what speaks Objective-C are left out")
    return()
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
