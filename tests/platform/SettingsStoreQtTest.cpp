#include "platform/qt/SettingsStoreQt.h"

#include <gmock/gmock.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <clocale>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <limits>
#include <random>
#include <vector>

#include "tests/platform/SettingsWriter.h"

namespace orvalen {
namespace {

using ::testing::AnyOf;
using ::testing::HasSubstr;

class SettingsStoreQtTest : public ::testing::Test
{
protected:
    [[nodiscard]] QByteArray contents() const
    {
        QFile opened(file);
        return opened.open(QIODevice::ReadOnly) ? opened.readAll() : QByteArray("(cannot be read)");
    }

    void putContents(const QByteArray &text) const
    {
        ASSERT_TRUE(QDir().mkpath(QFileInfo(file).path()));
        QFile opened(file);
        ASSERT_TRUE(opened.open(QIODevice::WriteOnly));
        opened.write(text);
    }

    /// In memory where there is such a place: the hundreds of writes here are not to wait for a busy disk.
    QTemporaryDir folder{QFileInfo("/dev/shm").isWritable() ? QString("/dev/shm/orvalen-settings-XXXXXX")
                                                            : QDir::temp().filePath("orvalen-settings-XXXXXX")};
    QString file = folder.filePath("Quenmark/Orvalen.ini");
};

using SettingsStoreQtDeathTest = SettingsStoreQtTest;

TEST_F(SettingsStoreQtTest, nothingIsThereAtFirst)
{
    SettingsStoreQt store(file);
    for (const auto key : test::settingKeys) {
        EXPECT_FALSE(store.has(key));
        EXPECT_FALSE(store.readBool(key));
        EXPECT_EQ(store.readDouble(key), 0.0);
    }
    EXPECT_FALSE(QFileInfo::exists(file)) << "reading must not write";
}

TEST_F(SettingsStoreQtTest, everyValueIsInTheFileWhenItsCallReturns)
{
    SettingsStoreQt store(file);
    store.writeBool("smartModeEnabled", false);
    EXPECT_EQ(contents(), "[General]\nsmartModeEnabled=false\n");
    store.writeDouble("targetTemp", 40.5);
    EXPECT_EQ(contents(), "[General]\nsmartModeEnabled=false\ntargetTemp=40.5\n");
    store.writeBool("smartModeEnabled", true);
    EXPECT_EQ(contents(), "[General]\nsmartModeEnabled=true\ntargetTemp=40.5\n");
}

TEST_F(SettingsStoreQtTest, theNextStartReadsWhatTheLastOneWrote)
{
    {
        SettingsStoreQt store(file);
        store.writeBool("smartModeEnabled", false);
        store.writeBool("soundFeedbackEnabled", true);
        store.writeDouble("targetTemp", 41.5);
        store.writeDouble("idleTimeoutMinutes", 0.0);
    }
    SettingsStoreQt store(file);
    EXPECT_TRUE(store.has("smartModeEnabled"));
    EXPECT_FALSE(store.readBool("smartModeEnabled"));
    EXPECT_TRUE(store.readBool("soundFeedbackEnabled"));
    EXPECT_EQ(store.readDouble("targetTemp"), 41.5);
    EXPECT_TRUE(store.has("idleTimeoutMinutes"));
    EXPECT_EQ(store.readDouble("idleTimeoutMinutes"), 0.0);
    EXPECT_FALSE(store.has("autoWarmupOnCharger"));
}

TEST_F(SettingsStoreQtTest, numbersComeBackToTheLastBit)
{
    std::vector<double> values = {
        0.1, 1.0 / 3.0, 40.0, 3.0, -0.0, 5e-324, std::numeric_limits<double>::max(), 1e21, 1e-21, 0.30000000000000004};
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> temperature(38.0, 44.0);
    while (values.size() < 50)
        values.push_back(temperature(random));
    const auto key = [](std::size_t i) { return QString("value%1").arg(i).toStdString(); };
    {
        SettingsStoreQt store(file);
        for (std::size_t i = 0; i < values.size(); ++i)
            store.writeDouble(key(i), values[i]);
    }
    SettingsStoreQt store(file);
    for (std::size_t i = 0; i < values.size(); ++i) {
        EXPECT_EQ(store.readDouble(key(i)), values[i]);
        EXPECT_EQ(std::signbit(store.readDouble(key(i))), std::signbit(values[i]));
    }
}

TEST_F(SettingsStoreQtTest, theUsersLanguageDoesNotChangeTheNotation)
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German));
    std::setlocale(LC_ALL, "de_DE.UTF-8");
    SettingsStoreQt(file).writeDouble("targetTemp", 1234.5);
    EXPECT_THAT(contents().toStdString(), HasSubstr("targetTemp=1234.5\n"));
    EXPECT_EQ(SettingsStoreQt(file).readDouble("targetTemp"), 1234.5);
    std::setlocale(LC_ALL, "C");
    QLocale::setDefault(before);
}

TEST_F(SettingsStoreQtTest, notANumberAndInfinityAreReadAsTheyStand)
{
    putContents("[General]\ntargetTemp=nan\nidleTimeoutMinutes=inf\n");
    SettingsStoreQt store(file);
    EXPECT_TRUE(std::isnan(store.readDouble("targetTemp")));
    EXPECT_TRUE(std::isinf(store.readDouble("idleTimeoutMinutes")));
}

TEST_F(SettingsStoreQtTest, whatIsWrittenByHandIsUnderstood)
{
    putContents("; mine\r\n[General]\r\n  targetTemp = 41 \r\nsmartModeEnabled=TRUE\r\n"
                "autoWarmupOnCharger=\"true\"\r\nsoundFeedbackEnabled=1\r\n");
    SettingsStoreQt store(file);
    EXPECT_EQ(store.readDouble("targetTemp"), 41.0);
    EXPECT_TRUE(store.readBool("smartModeEnabled"));
    EXPECT_TRUE(store.readBool("autoWarmupOnCharger"));
    EXPECT_TRUE(store.readBool("soundFeedbackEnabled"));
}

TEST_F(SettingsStoreQtTest, theWrongKindOfValueIsThereButReadsAsFalseOrZero)
{
    putContents("[General]\ntargetTemp=warm\nidleTimeoutMinutes=3,5\nsmartModeEnabled=perhaps\n"
                "autoWarmupOnCharger=\nsoundFeedbackEnabled=@ByteArray(true\\0)\n");
    SettingsStoreQt store(file);
    for (const auto key : test::settingKeys) {
        EXPECT_TRUE(store.has(key)) << key;
        EXPECT_FALSE(store.readBool(key)) << key;
        EXPECT_EQ(store.readDouble(key), 0.0) << key;
    }
}

TEST_F(SettingsStoreQtTest, aStrangersEntrySurvivesAWrite)
{
    putContents("[General]\nlater=yes\n");
    SettingsStoreQt(file).writeBool("smartModeEnabled", true);
    EXPECT_EQ(contents(), "[General]\nlater=yes\nsmartModeEnabled=true\n");
}

TEST_F(SettingsStoreQtTest, noiseInTheFileCountsAsNothingAndIsReplacedByTheNextWrite)
{
    std::mt19937 random(7);
    for (int attempt = 0; attempt < 100; ++attempt) {
        QByteArray noise(static_cast<qsizetype>(random() % 3000), '\0');
        for (char &c : noise)
            c = static_cast<char>(random());
        const QString here = folder.filePath(QString("noise%1.ini").arg(attempt));
        file = here;
        putContents(noise);
        ::testing::internal::CaptureStderr();
        SettingsStoreQt store(here);
        EXPECT_FALSE(store.has("targetTemp"));
        EXPECT_FALSE(store.readBool("smartModeEnabled"));
        store.writeDouble("targetTemp", 41.0);
        EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
        SettingsStoreQt next(here);
        EXPECT_EQ(next.readDouble("targetTemp"), 41.0);
    }
}

TEST_F(SettingsStoreQtTest, aHugeFileIsNotOurs)
{
    putContents("[General]\ntargetTemp=41\n" + QByteArray(1024 * 1024, '#'));
    EXPECT_FALSE(SettingsStoreQt(file).has("targetTemp"));
}

TEST_F(SettingsStoreQtTest, aPipeInTheFilesPlaceDoesNotBlock)
{
    ASSERT_TRUE(QDir().mkpath(QFileInfo(file).path()));
    ASSERT_EQ(mkfifo(QFile::encodeName(file).constData(), 0600), 0);
    EXPECT_FALSE(SettingsStoreQt(file).has("targetTemp"));
}

TEST_F(SettingsStoreQtTest, aFolderInTheFilesPlaceMeansValuesForThisRunOnly)
{
    ASSERT_TRUE(QDir().mkpath(file));
    ::testing::internal::CaptureStderr();
    SettingsStoreQt store(file);
    EXPECT_FALSE(store.has("targetTemp"));
    store.writeDouble("targetTemp", 41.0);
    EXPECT_EQ(store.readDouble("targetTemp"), 41.0);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    EXPECT_TRUE(QFileInfo(file).isDir());
    EXPECT_FALSE(SettingsStoreQt(file).has("targetTemp"));
}

TEST_F(SettingsStoreQtTest, lockFilesOfOtherTimesAreNotWaitedFor)
{
    putContents("[General]\ntargetTemp=40\n");
    for (const char *name : {".lock", ".rmlock"}) {
        QFile lock(file + name);
        ASSERT_TRUE(lock.open(QIODevice::WriteOnly)); // Empty: its owner was killed before it wrote its number.
    }
    SettingsStoreQt(file).writeDouble("targetTemp", 41.0); // Else the test's own time limit ends it.
    EXPECT_EQ(contents(), "[General]\ntargetTemp=41\n");
}

TEST_F(SettingsStoreQtTest, theUsersFileIsBelowTheConfigurationFolder)
{
    const QByteArray before = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", "/somewhere/config");
    EXPECT_EQ(SettingsStoreQt::userFile("Orvalen").toStdString(), "/somewhere/config/Quenmark/Orvalen.ini");
    before.isNull() ? qunsetenv("XDG_CONFIG_HOME") : qputenv("XDG_CONFIG_HOME", before);
}

TEST_F(SettingsStoreQtTest, aKilledWriterLeavesWhatItHadShown)
{
    std::mt19937 random(std::random_device{}());
    int killed = 0;
    for (int attempt = 0; attempt < 30; ++attempt) {
        const QString here = folder.filePath(QString("killed%1/Orvalen.ini").arg(attempt));
        QProcess writer;
        writer.start(SETTINGS_WRITER, {here, "500"});
        ASSERT_TRUE(writer.waitForStarted());
        const int wanted = static_cast<int>(random() % 480);
        int shown = -1;
        while (shown < wanted && (writer.canReadLine() || writer.waitForReadyRead(30000)))
            while (shown < wanted && writer.canReadLine())
                shown = writer.readLine().toInt();
        ASSERT_GE(shown, wanted);
        usleep(random() % 2000);
        writer.kill();
        ASSERT_TRUE(writer.waitForFinished());
        killed += writer.exitStatus() == QProcess::CrashExit;
        while (writer.canReadLine())
            shown = writer.readLine().toInt();

        // On disk: everything up to the last number shown, and perhaps the one assignment that was under way.
        SettingsStoreQt store(here);
        for (int number = std::max(0, shown - 4); number <= shown; ++number) {
            const auto key = test::settingKeys[number % 5];
            ASSERT_TRUE(store.has(key)) << key << " lost after assignment " << shown;
            if (test::isNumber(number)) {
                const double value = store.readDouble(key);
                const double next = number + 5 == shown + 1 ? number + 5.1 : number + 0.1;
                EXPECT_THAT(value, AnyOf(number + 0.1, next)) << key << " after assignment " << shown;
            } else if (number + 5 != shown + 1) {
                EXPECT_EQ(store.readBool(key), number / 5 % 2 == 0) << key << " after assignment " << shown;
            }
        }
        store.writeDouble("targetTemp", 39.0);
        EXPECT_EQ(SettingsStoreQt(here).readDouble("targetTemp"), 39.0) << "the next run cannot write";
    }
    EXPECT_GE(killed, 25) << "too few writers were caught alive for the test to mean anything";
}

/// What a program does whose writes fail: it goes on with the new value, and says nothing. Ends the process.
[[noreturn]] void writeThoughItFails(const QString &file, double expectedBefore)
{
    SettingsStoreQt store(file);
    const bool readOld = store.readDouble("targetTemp") == expectedBefore;
    store.writeDouble("targetTemp", 43.0);
    store.writeBool("smartModeEnabled", false);
    const bool kept = store.readDouble("targetTemp") == 43.0 && store.has("smartModeEnabled");
    std::_Exit(readOld && kept ? 0 : 1);
}

TEST_F(SettingsStoreQtDeathTest, aFullDiskLeavesTheOldFileWhole)
{
    putContents("[General]\ntargetTemp=40\n");
    const auto onAFullDisk = [this] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit none{0, 0}; // Every write to a file fails.
        setrlimit(RLIMIT_FSIZE, &none);
        writeThoughItFails(file, 40.0);
    };
    EXPECT_EXIT(onAFullDisk(), ::testing::ExitedWithCode(0), "^$");
    EXPECT_EQ(contents(), "[General]\ntargetTemp=40\n");
    EXPECT_EQ(QDir(QFileInfo(file).path()).entryList(QDir::Files | QDir::Hidden), QStringList("Orvalen.ini"));
}

TEST_F(SettingsStoreQtDeathTest, aReadOnlyFolderLeavesTheOldFileWhole)
{
    putContents("[General]\ntargetTemp=40\n");
    QFile lock(file + ".lock");
    ASSERT_TRUE(lock.open(QIODevice::WriteOnly)); // And one that nobody can remove.
    const QByteArray outer = QFile::encodeName(folder.path()), inner = QFile::encodeName(QFileInfo(file).path());
    chmod(outer.constData(), 0755);
    chmod(inner.constData(), 0555);
    const auto asSomebodyElse = [this] {
        if (getuid() == 0 && setuid(65534) != 0)
            std::_Exit(2);
        writeThoughItFails(file, 40.0);
    };
    EXPECT_EXIT(asSomebodyElse(), ::testing::ExitedWithCode(0), "^$");
    chmod(inner.constData(), 0755);
    EXPECT_EQ(contents(), "[General]\ntargetTemp=40\n");
}

TEST_F(SettingsStoreQtDeathTest, aFileThatIsNotOursToReadCountsAsAbsentAndStays)
{
    if (getuid() != 0)
        GTEST_SKIP() << "needs root, to have a file that another user may not read";
    putContents("[General]\ntargetTemp=40\n");
    chmod(QFile::encodeName(folder.path()).constData(), 0755);
    chmod(QFile::encodeName(QFileInfo(file).path()).constData(), 0777);
    chmod(QFile::encodeName(file).constData(), 0600);
    const auto asSomebodyElse = [this] {
        if (setuid(65534) != 0)
            std::_Exit(2);
        writeThoughItFails(file, 0.0);
    };
    EXPECT_EXIT(asSomebodyElse(), ::testing::ExitedWithCode(0), "^$");
    EXPECT_EQ(contents(), "[General]\ntargetTemp=40\n");
}

TEST_F(SettingsStoreQtDeathTest, noPlaceForAFolderAtAllMeansValuesForThisRunOnly)
{
    EXPECT_EXIT(writeThoughItFails("/proc/nowhere/Quenmark/Orvalen.ini", 0.0), ::testing::ExitedWithCode(0), "^$");
}

} // namespace
} // namespace orvalen
