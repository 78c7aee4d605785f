#pragma once

#include <QMap>
#include <QString>

#include "platform/SettingsStore.h"

namespace orvalen {

/// The settings in an INI file that is read once and replaced whole at every write.
///
/// QSettings reads it but does not write it: it would take a lock file first, and waits for one that a killed process
/// left half written (30 s) or in a folder that has since become read-only (for ever).
///
/// Entries that are not ours outlive a write as far as they are plain words; whatever else the file held does not.
class SettingsStoreQt : public SettingsStore
{
public:
    /// The file of the current user for the program `application`, below the configuration directory.
    [[nodiscard]] static QString userFile(const QString &application);

    explicit SettingsStoreQt(QString file);

    [[nodiscard]] bool has(std::string_view key) override;
    [[nodiscard]] bool readBool(std::string_view key) override;
    [[nodiscard]] double readDouble(std::string_view key) override;
    void writeBool(std::string_view key, bool value) override;
    void writeDouble(std::string_view key, double value) override;

private:
    void write(std::string_view key, const QString &value);

    QString file;
    QMap<QString, QString> values;
};

} // namespace orvalen
