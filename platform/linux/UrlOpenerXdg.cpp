#include "platform/linux/UrlOpenerXdg.h"

#include <QString>
#include <QUrl>

#include <system_error>
#include <utility>

#include "platform/posix/SearchPath.h"

namespace orvalen {

UrlOpenerXdg::UrlOpenerXdg(ChildProcesses &processes, std::string searchPath)
    : processes(processes), searchPath(std::move(searchPath))
{
}

void UrlOpenerXdg::open(std::string_view url)
{
    const QUrl address(QString::fromUtf8(url.data(), static_cast<qsizetype>(url.size())));
    if (address.scheme().isEmpty()) // else it could be an option or a file
        return;
    const auto program = search_path::find("xdg-open", searchPath);
    if (!program)
        return;
    try {
        // Let go at once: it is the user's window from now on.
        (void)processes.launch(*program, {address.toEncoded().toStdString()});
    } catch (const std::system_error &) { // NOLINT(bugprone-empty-catch): then nothing opens
    }
}

} // namespace orvalen
