#include "platform/macos/SettingsPagesWorkspace.h"

#include <QString>
#include <QUrl>

namespace orvalen {

bool SettingsPagesWorkspace::open(std::string_view url)
{
    const auto text = QString::fromUtf8(url.data(), static_cast<qsizetype>(url.size()));
    if (!QUrl(text, QUrl::StrictMode).isValid())
        return false;
    urls.open(url);
    return true;
}

} // namespace orvalen
