# What any Unix has. Without Qt: these run under the sanitizers, too.
orvalen_test(platform_posix_test
    SOURCES
        ${CMAKE_CURRENT_LIST_DIR}/ChildProcessesPosixTest.cpp
        ${CMAKE_CURRENT_LIST_DIR}/NetworkInterfacesPosixTest.cpp
        ${CMAKE_CURRENT_LIST_DIR}/PrivateFileTest.cpp
        ${CMAKE_CURRENT_LIST_DIR}/SearchPathTest.cpp
        ${CMAKE_CURRENT_LIST_DIR}/StreamSocketTest.cpp
        ${CMAKE_CURRENT_LIST_DIR}/TextFilesPosixTest.cpp
        ${CMAKE_CURRENT_LIST_DIR}/WholeFileTest.cpp
        ${CMAKE_CURRENT_LIST_DIR}/../support/TemporaryFolder.cpp
    LIBRARIES orvalen_platform_posix
)
