# Metal and AppKit. Objective-C needs clang, and a runtime, which is a fake here: it knows which objects are still owned.
# The tests themselves are C++, as are the headers of the adapters.
find_program(ORVALEN_CLANGXX clang++)
if(NOT ORVALEN_CLANGXX)
    message(WARNING "no clang++: the tests of what speaks Objective-C are left out")
    return()
endif()
set(CMAKE_OBJCXX_COMPILER "${ORVALEN_CLANGXX}")
enable_language(OBJCXX)

add_library(orvalen_macos_objectivec OBJECT
    ${PROJECT_SOURCE_DIR}/platform/macos/ApplicationAppKit.mm
    ${PROJECT_SOURCE_DIR}/platform/macos/GraphicsCopiesMetal.mm
    ${PROJECT_SOURCE_DIR}/platform/macos/StatusBarAppKit.mm
    ${PROJECT_SOURCE_DIR}/platform/macos/UserActivity.mm
    fakes/AppKit.mm
    fakes/Foundation.mm
    fakes/Metal.mm
    fakes/ObjectiveC.mm
)
target_include_directories(orvalen_macos_objectivec PUBLIC "${PROJECT_SOURCE_DIR}")
target_link_libraries(orvalen_macos_objectivec PUBLIC orvalen_macos_fakes)
set_target_properties(orvalen_macos_objectivec PROPERTIES OBJCXX_STANDARD 20 OBJCXX_STANDARD_REQUIRED ON OBJCXX_EXTENSIONS OFF)
target_compile_options(orvalen_macos_objectivec PRIVATE -Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Woverloaded-virtual
    -fobjc-arc -fblocks -fobjc-runtime=gnustep-2.0 -fobjc-legacy-dispatch
    -include "${CMAKE_CURRENT_SOURCE_DIR}/fakes/SystemVersion.h")
# Who counts references cannot have the compiler do it.
set_source_files_properties(fakes/ObjectiveC.mm PROPERTIES COMPILE_OPTIONS -fno-objc-arc)

orvalen_macos_test(macos_objectivec_test
    SOURCES ApplicationAppKitTest.cpp GraphicsCopiesMetalTest.cpp StatusBarAppKitTest.cpp UserActivityTest.cpp
    LIBRARIES orvalen_macos_objectivec
)
# Beside a clang CMake words the header for gcc so that gcc warns of it.
set_target_properties(macos_objectivec_test PROPERTIES LINKER_LANGUAGE CXX DISABLE_PRECOMPILE_HEADERS ON)
