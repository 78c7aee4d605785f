# For CMake: this project built for a Mac on a system that is none, as far as objects go. Debian's clang compiles for
# Apple silicon; what stands in for the Mac's headers is made by headers.cmake. Nothing can be linked or run.
#
#   cmake --preset macos-objects && ninja -C build/macos-objects objects
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR arm64)
set(CMAKE_OSX_ARCHITECTURES arm64)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)

foreach(language IN ITEMS C CXX OBJCXX)
    set(CMAKE_${language}_COMPILER_TARGET arm64-apple-macos13)
endforeach()
set(CMAKE_C_COMPILER clang-19)
set(CMAKE_CXX_COMPILER clang++-19)
find_program(CMAKE_OBJCXX_COMPILER clang++-19 REQUIRED) # a bare name is not enough here
set(CMAKE_INSTALL_NAME_TOOL ":") # asked for, never used

# Where the stand-ins are; the compiler's trial runs find the same ones.
set(ORVALEN_MACOS_HEADERS "${CMAKE_BINARY_DIR}/macos-headers" CACHE PATH "")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ORVALEN_MACOS_HEADERS)
include("${CMAKE_CURRENT_LIST_DIR}/headers.cmake")

# Boost 1.74 asks Microsoft's compiler alone whether the library is newer than std::result_of; later ones ask all.
set(flags "-DBOOST_ASIO_HAS_STD_INVOKE_RESULT -nostdlibinc -D_GNU_SOURCE -D_LIBCPP_HAS_MUSL_LIBC -D_LIBCPP_PROVIDES_DEFAULT_RUNE_TABLE")
foreach(folder IN LISTS ORVALEN_MACOS_INCLUDE_FOLDERS)
    string(APPEND flags " -isystem ${folder}")
endforeach()
set(CMAKE_C_FLAGS_INIT "${flags}")
set(CMAKE_CXX_FLAGS_INIT "-nostdinc++ ${flags} -Wunguarded-availability")
set(CMAKE_OBJCXX_FLAGS_INIT "${CMAKE_CXX_FLAGS_INIT}")

# The libraries are those of this machine: their headers, and their tools, which run here.
set(QT_HOST_PATH /usr CACHE PATH "")
file(GLOB folders /usr/lib/*/cmake/Qt6)
foreach(folder IN LISTS folders)
    cmake_path(GET folder PARENT_PATH folder)
    list(APPEND CMAKE_PREFIX_PATH "${folder}")
    set(QT_HOST_PATH_CMAKE_DIR "${folder}" CACHE PATH "")
endforeach()
# Qt asks for this framework; we have no use for it.
set(OPENGL_INCLUDE_DIR "${ORVALEN_MACOS_HEADERS}/libraries" CACHE PATH "")
set(OPENGL_gl_LIBRARY "${ORVALEN_MACOS_HEADERS}/OpenGL.framework" CACHE PATH "")

# They lie among the headers of this machine's C library, which no compiler for a Mac may see: what the programs use of
# them is in a folder of its own, and their own folder counts as one that every compiler looks into anyway.
set(CMAKE_PROJECT_INCLUDE "${CMAKE_CURRENT_LIST_DIR}/nothing-of-this-machine.cmake")
