# What every target of ours has in common: language, warnings, sanitizers, and where things are built.
include(GNUInstallDirs)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_OBJCXX_STANDARD 20)
set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
set(CMAKE_OBJCXX_EXTENSIONS OFF)
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG") # small before fast: what is hot here is a lock and a copy
set(CMAKE_OBJCXX_FLAGS_RELEASE "${CMAKE_CXX_FLAGS_RELEASE}")
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

# The build tree is laid out like the installed one, so a program finds its neighbours the same way in both.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
if(APPLE) # the server belongs to the application's bundle
    set(ORVALEN_BUNDLE "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/Orvalen.app/Contents")
    set(ORVALEN_LIBEXEC_OUTPUT_DIRECTORY "${ORVALEN_BUNDLE}/Resources")
    set(ORVALEN_LIBEXEC_DESTINATION "Orvalen.app/Contents/Resources")
    set(ORVALEN_DROP_UNUSED -Wl,-dead_strip)
else()
    set(ORVALEN_LIBEXEC_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/libexec/orvalen")
    set(ORVALEN_LIBEXEC_DESTINATION "${CMAKE_INSTALL_LIBEXECDIR}/orvalen")
    set(ORVALEN_DROP_UNUSED -Wl,--gc-sections)
endif()
set(ORVALEN_TEST_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")

find_package(Threads REQUIRED)

function(orvalen_common target)
    target_include_directories(${target} PUBLIC "${PROJECT_SOURCE_DIR}")
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Woverloaded-virtual
        $<$<CXX_COMPILER_ID:GNU>:-Wshadow=local -Wduplicated-cond -Wlogical-op>)
    # Pages that are never read need no memory: each function can be left out, and is where nobody calls it.
    target_compile_options(${target} PRIVATE -ffunction-sections -fdata-sections)
    target_link_options(${target} PRIVATE ${ORVALEN_DROP_UNUSED})
    if(ORVALEN_SANITIZE)
        # What the sanitizers insert makes gcc see uninitialised members in moved std::optionals.
        target_compile_options(${target} PRIVATE -fsanitize=${ORVALEN_SANITIZE} -fno-omit-frame-pointer
            -fno-sanitize-recover=all $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
        target_link_options(${target} PUBLIC -fsanitize=${ORVALEN_SANITIZE})
    endif()
endfunction()

# orvalen_library(name SOURCES... )
function(orvalen_library name)
    add_library(${name} STATIC ${ARGN})
    orvalen_common(${name})
endfunction()

# orvalen_embedded_text(FILE SOURCE)   A file that becomes part of the program: SOURCE is made in the build folder from
# SOURCE.in beside FILE, with what FILE holds in the place of @text@.
function(orvalen_embedded_text file source)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${file}")
    file(READ "${file}" text)
    configure_file("${source}.in" "${source}" @ONLY)
endfunction()

# orvalen_helper_program(name SOURCES... )   A program that ours start, and people only by way of them.
function(orvalen_helper_program name)
    add_executable(${name} ${ARGN})
    orvalen_common(${name})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${ORVALEN_LIBEXEC_OUTPUT_DIRECTORY}")
    install(TARGETS ${name} RUNTIME DESTINATION "${ORVALEN_LIBEXEC_DESTINATION}")
endfunction()

# orvalen_test(name SOURCES ... [LIBRARIES ...] [LABELS ...] [ENVIRONMENT ...] [TIMEOUT seconds])
# One GoogleTest binary, each of its cases a test of its own.
function(orvalen_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "TIMEOUT" "SOURCES;LIBRARIES;LABELS;ENVIRONMENT")
    find_package(GTest REQUIRED)
    include(GoogleTest)
    add_executable(${name} ${arg_SOURCES})
    orvalen_common(${name})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${ORVALEN_TEST_OUTPUT_DIRECTORY}")
    target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} GTest::gmock GTest::gtest_main)
    # gcc 12 sees copies out of bounds where strings are added up (its bug 105651 and the like).
    target_compile_options(${name} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds -Wno-restrict -Wno-stringop-overflow>)
    # It is the program that is looked at; optimising its tests would take as long again. Nor need they be linked well.
    target_compile_options(${name} PRIVATE -O0)
    if(NOT APPLE AND NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        target_link_options(${name} PRIVATE -fuse-ld=gold)
    endif()
    # What every case includes, read once.
    list(LENGTH arg_SOURCES sources)
    if(sources GREATER 3)
        target_precompile_headers(${name} PRIVATE <gmock/gmock.h> <gtest/gtest.h>)
    endif()
    set(properties TIMEOUT 120)
    foreach(property IN ITEMS TIMEOUT LABELS ENVIRONMENT)
        if(arg_${property})
            list(APPEND properties ${property} "${arg_${property}}")
        endif()
    endforeach()
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES ${properties})
endfunction()

# The targets of `folder` and of those below it, into `targets`.
function(orvalen_targets_below folder targets)
    get_property(found DIRECTORY "${folder}" PROPERTY BUILDSYSTEM_TARGETS)
    get_property(subfolders DIRECTORY "${folder}" PROPERTY SUBDIRECTORIES)
    foreach(subfolder IN LISTS subfolders)
        orvalen_targets_below("${subfolder}" below)
        list(APPEND found ${below})
    endforeach()
    set(${targets} ${found} PARENT_SCOPE)
endfunction()

# orvalen_objects()   A target `objects`: all that is compiled, and nothing put together from it.
function(orvalen_objects)
    orvalen_targets_below("${PROJECT_SOURCE_DIR}" targets)
    foreach(target IN LISTS targets)
        get_target_property(type ${target} TYPE)
        if(type MATCHES "^(STATIC_LIBRARY|OBJECT_LIBRARY|EXECUTABLE)$")
            list(APPEND objects $<TARGET_OBJECTS:${target}>)
        endif()
    endforeach()
    add_custom_target(objects DEPENDS ${objects})
endfunction()
