#pragma once

#include "platform/TextFiles.h"

namespace orvalen {

/// Text files of this user's; see private_file.
class TextFilesPosix : public TextFiles
{
public:
    bool replace(const std::string &path, std::string_view contents) override;
    [[nodiscard]] std::optional<std::string> read(const std::string &path) override;
    void remove(const std::string &path) override;
};

} // namespace orvalen
