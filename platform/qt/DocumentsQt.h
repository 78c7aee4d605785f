#pragma once

#include "platform/Documents.h"

namespace orvalen {

/// The user's folders and default programs as the desktop knows them. A link in a document's place is replaced, not
/// followed; what belongs to another user stays. Opening needs a QGuiApplication.
class DocumentsQt : public Documents
{
public:
    [[nodiscard]] std::string desktopFolder() override;
    bool write(const std::string &path, std::string_view contents) override;
    void open(const std::string &path) override;
};

} // namespace orvalen
