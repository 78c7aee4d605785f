#include "platform/qt/UrlOpenerQt.h"

#include <gmock/gmock.h>

#include <QDesktopServices>
#include <QObject>
#include <QUrl>

#include <string>
#include <vector>

#include "platform/qt/DocumentsQt.h"

namespace orvalen {
namespace {

using ::testing::ElementsAre;

/// Stands where the toolkit would ask the system.
class UrlHandler : public QObject
{
    Q_OBJECT

public:
    UrlHandler()
    {
        for (const auto *const scheme : schemes)
            QDesktopServices::setUrlHandler(QString::fromLatin1(scheme), this, "handle");
    }
    ~UrlHandler() override
    {
        for (const auto *const scheme : schemes)
            QDesktopServices::unsetUrlHandler(QString::fromLatin1(scheme));
    }

    Q_SLOT void handle(const QUrl &url) { opened.push_back(url.toEncoded().toStdString()); }

    std::vector<std::string> opened; ///< As the address goes to the system.

private:
    static constexpr const char *schemes[] = {"http", "file", "x-apple.systempreferences"};
};

struct UrlOpenerQtTest : ::testing::Test
{
    UrlHandler handler;
    UrlOpenerQt urls;
};

TEST_F(UrlOpenerQtTest, handsTheAddressOverAsItIs)
{
    for (const std::string url : {"http://192.168.1.20:8999", "http://[fe80::1]:8999/a%20b?x=1&y=%C2%B0#top",
                                  "file:///tmp/j%C3%BCrgen/My%20Desktop/100%25%20%231%3F.html",
                                  "x-apple.systempreferences:com.apple.Displays-Settings.extension",
                                  "x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture"}) {
        urls.open(url);
        EXPECT_THAT(handler.opened, ElementsAre(url));
        handler.opened.clear();
    }
}

TEST_F(UrlOpenerQtTest, aHostOutsideAsciiIsSpeltAsTheNetworkWantsIt)
{
    urls.open("http://b\xC3\xBCro.local:8999");
    EXPECT_THAT(handler.opened, ElementsAre("http://xn--bro-hoa.local:8999"));
}

TEST_F(UrlOpenerQtTest, aDocumentIsFoundWhateverItsNameIs)
{
    DocumentsQt(urls).open("/tmp/My Desktop/100% #1?.html");
    EXPECT_THAT(handler.opened, ElementsAre("file:///tmp/My%20Desktop/100%25%20%231%3F.html"));
}

} // namespace
} // namespace orvalen

#include "UrlOpenerQtTest.moc"
