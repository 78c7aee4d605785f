#pragma once

#include <QGuiApplication>

#include <gtest/gtest.h>

#include "tests/support/XServer.h"

namespace orvalen::test {

/// A suite whose Qt is on a display that nobody else uses.
class OnADisplay : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        if (QGuiApplication::instance())
            return;
        static const XServer server;
        qputenv("DISPLAY", server.display().c_str());
        qputenv("QT_QPA_PLATFORM", "xcb");
        static int argc = 1;
        static char program[] = "test";
        static char *argv[] = {program, nullptr};
        static const QGuiApplication application(argc, argv);
    }
};

} // namespace orvalen::test
