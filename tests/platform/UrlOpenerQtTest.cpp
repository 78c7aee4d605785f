#include "platform/qt/UrlOpenerQt.h"

#include <gmock/gmock.h>

#include <QDesktopServices>
#include <QGuiApplication>
#include <QObject>
#include <QUrl>

#include <string>
#include <vector>

namespace orvalen {
namespace {

using ::testing::ElementsAre;

/// Stands where the user's browser would be.
class Browser : public QObject
{
    Q_OBJECT

public:
    explicit Browser(const QString &scheme) : scheme(scheme) { QDesktopServices::setUrlHandler(scheme, this, "open"); }
    ~Browser() override { QDesktopServices::unsetUrlHandler(scheme); }

    std::vector<std::string> opened;

public slots:
    void open(const QUrl &url) { opened.push_back(url.toString(QUrl::FullyEncoded).toStdString()); }

private:
    QString scheme;
};

class UrlOpenerQtTest : public ::testing::Test
{
protected:
    int argc = 1;
    char name[5] = "test";
    char *argv[2] = {name, nullptr};
    QGuiApplication application{argc, argv};
    UrlOpenerQt opener;
};

TEST_F(UrlOpenerQtTest, handsTheAddressOverAsItIs)
{
    Browser http("http"), settings("x-apple.systempreferences");
    opener.open("http://192.168.1.20:8999");
    opener.open("http://[fe80::1]:8999/a%20b?x=1&y=%C2%B0#top");
    opener.open("x-apple.systempreferences:com.apple.preference.displays");
    EXPECT_THAT(http.opened, ElementsAre("http://192.168.1.20:8999", "http://[fe80::1]:8999/a%20b?x=1&y=%C2%B0#top"));
    EXPECT_THAT(settings.opened, ElementsAre("x-apple.systempreferences:com.apple.preference.displays"));
}

TEST_F(UrlOpenerQtTest, handsFilesWithSpacesAndUmlautsOver)
{
    Browser files("file");
    opener.open("file:///home/j%C3%BCrgen/My%20Desktop/report.html");
    EXPECT_THAT(files.opened, ElementsAre("file:///home/j%C3%BCrgen/My%20Desktop/report.html"));
}

TEST_F(UrlOpenerQtTest, nothingToOpenOrNobodyToOpenItIsNoError)
{
    Browser http("http");
    opener.open("");
    opener.open("nobody-knows-this:thing");
    opener.open("\xff\xfe");
    EXPECT_THAT(http.opened, ElementsAre());
}

} // namespace
} // namespace orvalen

#include "UrlOpenerQtTest.moc"
