#pragma once

#include <string>

#include "ui/kit/Builders.h"

namespace orvalen {

class UrlOpener;

/// The tab "Power & Tools": the maker's tools on the web.
class ToolsView : public kit::Ground
{
    Q_OBJECT

public:
    explicit ToolsView(UrlOpener &urls, QWidget *parent = nullptr);

private:
    QWidget *header();
    QWidget *toolCard(const QString &title, const QString &subtitle, const QString &icon, const kit::Accent &color,
                      const std::string &url);
    QWidget *services();
    QWidget *webLink(const QString &label, const QString &about, const std::string &url);

    UrlOpener &urls;
};

} // namespace orvalen
