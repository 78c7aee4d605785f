#include "platform/qt/PasteboardQt.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QString>

namespace orvalen {

void PasteboardQt::setText(std::string_view text)
{
    QGuiApplication::clipboard()->setText(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
}

} // namespace orvalen
