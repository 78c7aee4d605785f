#pragma once

#include "platform/Documents.h"
#include "platform/UrlOpener.h"

namespace orvalen {

/// The user's folders as the desktop knows them. A link in a document's place is replaced, not followed; what belongs
/// to another user stays.
class DocumentsQt : public Documents
{
public:
    /// `urls` shows the files and must outlive it.
    explicit DocumentsQt(UrlOpener &urls) : urls(urls) {}

    [[nodiscard]] std::string desktopFolder() override;
    bool write(const std::string &path, std::string_view contents) override;
    void open(const std::string &path) override;

private:
    UrlOpener &urls;
};

} // namespace orvalen
