#include "platform/qt/DocumentsQt.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QUrl>

#include <span>

#include "platform/posix/WholeFile.h"

namespace orvalen {

std::string DocumentsQt::desktopFolder()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
    return QFile::encodeName(QDir::cleanPath(folder)).toStdString();
}

bool DocumentsQt::write(const std::string &path, std::string_view contents)
{
    return whole_file::replace(path, std::span(&contents, 1), {.isOnDisk = true}) == 0;
}

void DocumentsQt::open(const std::string &path)
{
    urls.open(QUrl::fromLocalFile(QFile::decodeName(path.c_str())).toEncoded().toStdString());
}

} // namespace orvalen
