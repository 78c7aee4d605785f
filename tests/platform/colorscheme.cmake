find_package(Qt6 REQUIRED COMPONENTS Core DBus)

orvalen_test(platform_colorscheme_test
    SOURCES ColorSchemePortalTest.cpp
    LIBRARIES orvalen_platform_qt_colorscheme
)
