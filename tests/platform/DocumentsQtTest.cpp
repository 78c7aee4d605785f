#include "platform/qt/DocumentsQt.h"

#include <gmock/gmock.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace orvalen {
namespace {

using ::testing::ElementsAre;

/// Stands where the user's browser would be.
struct Browser : UrlOpener
{
    void open(std::string_view url) override { opened.emplace_back(url); }
    std::vector<std::string> opened;
};

class DocumentsQtTest : public ::testing::Test
{
protected:
    DocumentsQtTest()
    {
        qputenv("HOME", home.path().toUtf8());
        qunsetenv("XDG_CONFIG_HOME");
        QDir(home.path()).mkpath(".config");
        QDir(home.path()).mkpath("Desktop");
    }

    /// What the desktop's settings say about its folders.
    void choose(const QByteArray &folder) const
    {
        put(".config/user-dirs.dirs", "# comment\nXDG_DOWNLOAD_DIR=\"$HOME/Loads\"\nXDG_DESKTOP_DIR=" + folder + "\n");
    }

    void put(const QString &file, const QByteArray &contents) const
    {
        QFile opened(home.filePath(file));
        ASSERT_TRUE(opened.open(QIODevice::WriteOnly));
        opened.write(contents);
    }

    [[nodiscard]] QByteArray contents(const QString &file) const
    {
        QFile opened(home.filePath(file));
        return opened.open(QIODevice::ReadOnly) ? opened.readAll() : QByteArray("(cannot be read)");
    }

    [[nodiscard]] QStringList onDesktop() const
    {
        return QDir(home.filePath("Desktop"))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    [[nodiscard]] std::string path(const QString &name) const { return home.filePath(name).toStdString(); }

    QTemporaryDir home;
    Browser browser;
    DocumentsQt documents{browser};
    const std::string report = path("Desktop/report.html");
};

TEST_F(DocumentsQtTest, theDesktopIsTheFolderThatTheSystemNames)
{
    EXPECT_EQ(documents.desktopFolder(), path("Desktop"));
    choose("\"$HOME/Schreibtisch\"");
    EXPECT_EQ(documents.desktopFolder(), path("Schreibtisch")) << "without making it";
    EXPECT_FALSE(QFileInfo::exists(home.filePath("Schreibtisch")));
    choose("\"$HOME/B\xc3\xbcro und Hof\"");
    EXPECT_EQ(documents.desktopFolder(), path("Büro und Hof"));
    choose("\"/mnt/shared/Desk\"");
    EXPECT_EQ(documents.desktopFolder(), "/mnt/shared/Desk");
    choose("\"$HOME/\""); // the way to say: no desktop of its own
    EXPECT_EQ(documents.desktopFolder(), home.path().toStdString());
}

TEST_F(DocumentsQtTest, theSettingsMayLieElsewhere)
{
    QDir(home.path()).mkpath("elsewhere");
    qputenv("XDG_CONFIG_HOME", home.filePath("elsewhere").toUtf8());
    put("elsewhere/user-dirs.dirs", "XDG_DESKTOP_DIR=\"$HOME/Bureau\"\n");
    EXPECT_EQ(documents.desktopFolder(), path("Bureau"));
    qunsetenv("XDG_CONFIG_HOME");
}

TEST_F(DocumentsQtTest, aDocumentIsThereWholeAndReplacesTheEarlierOne)
{
    const std::string first(300'000, 'x');
    EXPECT_TRUE(documents.write(report, first));
    EXPECT_EQ(contents("Desktop/report.html"), first.c_str());
    const std::string_view odd("a\0b – °C\r\n", 12);
    EXPECT_TRUE(documents.write(report, odd));
    EXPECT_EQ(contents("Desktop/report.html"), QByteArray(odd.data(), odd.size()));
    EXPECT_TRUE(documents.write(report, "later"));
    EXPECT_EQ(contents("Desktop/report.html"), "later");
    EXPECT_EQ(onDesktop(), QStringList("report.html"));
}

TEST_F(DocumentsQtTest, aDocumentIsTheUsersAndReadableForOthersIfTheUserLikes)
{
    const auto before = ::umask(027);
    EXPECT_TRUE(documents.write(report, "x"));
    ::umask(before);
    struct stat status = {};
    ASSERT_EQ(::stat(report.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0640U);
    EXPECT_EQ(status.st_uid, geteuid());
}

TEST_F(DocumentsQtTest, aMissingDesktopStaysMissing)
{
    QDir(home.path()).rmdir("Desktop");
    EXPECT_FALSE(documents.write(report, "x"));
    EXPECT_FALSE(QFileInfo::exists(home.filePath("Desktop")));
}

TEST_F(DocumentsQtTest, aFolderInTheDocumentsPlaceStays)
{
    QDir(home.path()).mkpath("Desktop/report.html");
    EXPECT_FALSE(documents.write(report, "x"));
    EXPECT_TRUE(QFileInfo(home.filePath("Desktop/report.html")).isDir());
    EXPECT_EQ(onDesktop(), QStringList("report.html"));
}

TEST_F(DocumentsQtTest, aLinkInTheDocumentsPlaceIsReplacedAndNotFollowed)
{
    put("precious", "old");
    for (const auto *target : {"precious", "not-there"}) {
        QFile::remove(home.filePath("Desktop/report.html"));
        ASSERT_EQ(::symlink(path(target).c_str(), report.c_str()), 0);
        EXPECT_TRUE(documents.write(report, "x"));
        EXPECT_FALSE(QFileInfo(home.filePath("Desktop/report.html")).isSymLink());
        EXPECT_EQ(contents("Desktop/report.html"), "x");
    }
    EXPECT_EQ(contents("precious"), "old");
    EXPECT_FALSE(QFileInfo::exists(home.filePath("not-there")));
}

TEST_F(DocumentsQtTest, anotherUsersFileIsLeftAlone)
{
    put("Desktop/report.html", "theirs");
    if (::chown(report.c_str(), 65534, 65534) != 0)
        GTEST_SKIP() << "only root can give files away";
    EXPECT_FALSE(documents.write(report, "x"));
    EXPECT_EQ(contents("Desktop/report.html"), "theirs");
    EXPECT_EQ(onDesktop(), QStringList("report.html"));
}

TEST_F(DocumentsQtTest, aFileIsOpenedByItsAddress)
{
    documents.open("/srv/jürgen/My Desktop/100% #1?.html");
    EXPECT_THAT(browser.opened, ElementsAre("file:///srv/j%C3%BCrgen/My%20Desktop/100%25%20%231%3F.html"));
}

} // namespace
} // namespace orvalen
