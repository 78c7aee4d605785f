#include "platform/qt/UrlOpenerQt.h"

#include <QDesktopServices>
#include <QString>
#include <QUrl>

namespace orvalen {

void UrlOpenerQt::open(std::string_view url)
{
    QDesktopServices::openUrl(QUrl(QString::fromUtf8(url.data(), static_cast<qsizetype>(url.size()))));
}

} // namespace orvalen
