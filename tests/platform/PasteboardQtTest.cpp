#include "platform/qt/PasteboardQt.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QProcess>

#include <string>

#include "tests/support/OnADisplay.h"

namespace orvalen {
namespace {

constexpr int patienceMilliseconds = 30'000;

/// The clipboard of a display of our own, as other programs see it.
class PasteboardQtTest : public test::OnADisplay
{
protected:
    /// What another program pastes, or copies with `options`.
    static std::string xclip(const QStringList &options, const QByteArray &input = {})
    {
        QProcess process;
        process.start("xclip", QStringList{"-selection", "clipboard"} + options);
        if (!process.waitForStarted(patienceMilliseconds))
            return "xclip is missing";
        process.write(input);
        process.closeWriteChannel();
        const QDeadlineTimer deadline(patienceMilliseconds);
        while (process.state() != QProcess::NotRunning && !deadline.hasExpired()) // the answer is ours to give
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 10);
        return process.readAllStandardOutput().toStdString();
    }

    static std::string pasted() { return xclip({"-o", "-t", "UTF8_STRING"}); }

    PasteboardQt pasteboard;
};

TEST_F(PasteboardQtTest, anotherProgramPastesTheText)
{
    pasteboard.setText("http://192.168.1.20:8999");
    EXPECT_EQ(pasted(), "http://192.168.1.20:8999");
}

TEST_F(PasteboardQtTest, theTextIsUtf8)
{
    pasteboard.setText("http://büro.local:8999 🛡️");
    EXPECT_EQ(pasted(), "http://büro.local:8999 🛡️");
}

TEST_F(PasteboardQtTest, theLastTextIsTheOneThatCounts)
{
    pasteboard.setText("first");
    pasteboard.setText("second");
    EXPECT_EQ(pasted(), "second");
}

TEST_F(PasteboardQtTest, whatSomebodyElseCopiedIsReplaced)
{
    pasteboard.setText("before");
    QProcess other;
    other.start("xclip",
                {"-selection", "clipboard", "-quiet", "-i", "/dev/null"}); // stays until it loses the clipboard
    ASSERT_TRUE(other.waitForStarted(patienceMilliseconds));
    const QDeadlineTimer deadline(patienceMilliseconds);
    while (QGuiApplication::clipboard()->ownsClipboard() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 10);
    pasteboard.setText("ours");
    EXPECT_EQ(pasted(), "ours");
    EXPECT_TRUE(other.state() == QProcess::NotRunning || other.waitForFinished(patienceMilliseconds))
        << "it has been told";
}

TEST_F(PasteboardQtTest, itIsPlainTextAndNothingElse)
{
    pasteboard.setText("http://192.168.1.20:8999");
    const auto targets = xclip({"-o", "-t", "TARGETS"});
    EXPECT_NE(targets.find("text/plain"), std::string::npos) << targets;
    EXPECT_EQ(targets.find("text/html"), std::string::npos) << targets;
    EXPECT_EQ(targets.find("text/uri-list"), std::string::npos) << targets;
}

} // namespace
} // namespace orvalen
