#include "platform/qt/SettingsStoreQt.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QSettings>
#include <QStandardPaths>

#include <algorithm>
#include <charconv>
#include <utility>

#include "platform/posix/WholeFile.h"

namespace orvalen {
namespace {

constexpr qint64 mostBytes = 64 * 1024; ///< Five short lines are expected; more is not a settings file of ours.

QString text(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

/// Whether `word` stands in an INI file as it is, with nothing to quote or escape.
bool isPlain(const QString &word)
{
    return !word.isEmpty() && std::all_of(word.begin(), word.end(), [](QChar c) {
        return c.unicode() < 128 && (c.isLetterOrNumber() || QStringLiteral("+-._").contains(c));
    });
}

/// Brings what was written to the disk. QSaveFile, which is here because it follows a link that the user has put there,
/// commits an empty file when its last bytes find the disk full, and overlooks an error that only shows when the system
/// writes them back; so both are asked for before.
bool isOnDisk(QSaveFile &written)
{
    return written.flush() && whole_file::sync(written.handle()) == 0;
}

QMap<QString, QString> readFile(const QString &file)
{
    const QFileInfo info(file);
    if (!info.isFile() || info.size() > mostBytes) // A pipe would block, a device never end.
        return {};
    QMap<QString, QString> values;
    const QSettings settings(file, QSettings::IniFormat);
    for (const QString &key : settings.childKeys()) {
        if (!isPlain(key))
            continue;
        const QString value = settings.value(key).toString();
        values.insert(key, isPlain(value) ? value : QString());
    }
    return values;
}

} // namespace

QString SettingsStoreQt::userFile(const QString &application)
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + "/Quenmark/" + application +
           ".ini";
}

SettingsStoreQt::SettingsStoreQt(QString file) : file(std::move(file)), values(readFile(this->file)) {}

bool SettingsStoreQt::has(std::string_view key)
{
    return values.contains(text(key));
}

bool SettingsStoreQt::readBool(std::string_view key)
{
    const QString value = values.value(text(key));
    return value.compare("true", Qt::CaseInsensitive) == 0 || value == "1";
}

double SettingsStoreQt::readDouble(std::string_view key)
{
    return values.value(text(key)).toDouble(); // The C locale's notation, 0.0 where it is no number.
}

void SettingsStoreQt::writeBool(std::string_view key, bool value)
{
    write(key, value ? "true" : "false");
}

void SettingsStoreQt::writeDouble(std::string_view key, double value)
{
    char digits[32]; // The shortest text that reads back as the same number; Qt's would lose the sign of a zero.
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    write(key, QString::fromLatin1(digits, end - digits));
}

void SettingsStoreQt::write(std::string_view key, const QString &value)
{
    values.insert(text(key), value);

    QByteArray contents = "[General]\n";
    for (auto entry = values.cbegin(); entry != values.cend(); ++entry)
        contents += entry.key().toUtf8() + '=' + entry.value().toUtf8() + '\n';

    QDir().mkpath(QFileInfo(file).path());
    QSaveFile replacement(file); // Takes the old file's place at once or, when anything fails, not at all.
    if (replacement.open(QIODevice::WriteOnly) && replacement.write(contents) == contents.size() &&
        isOnDisk(replacement))
        replacement.commit();
}

} // namespace orvalen
