# What the technician's report is written with.
orvalen_test(documents_qt_test SOURCES DocumentsQtTest.cpp LIBRARIES orvalen_platform_qt)
orvalen_test(localised_dates_icu_test SOURCES LocalisedDatesIcuTest.cpp LIBRARIES orvalen_platform_linux)
