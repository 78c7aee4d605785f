#include "ui/ToolsView.h"

#include "core/MakerSite.h"
#include "platform/UrlOpener.h"

namespace orvalen {

using namespace kit;

namespace {

std::string tool(std::string_view page)
{
    return sitePage(makerToolsSite, page);
}

} // namespace

ToolsView::ToolsView(UrlOpener &urls, QWidget *parent) : Ground(parent), urls(urls)
{
    vStackIn(*this,
             {
                 header(),
                 toolCard(tr("Paper Desk"), tr("Merge, sort and sign PDF documents."), "doc.fill", accent::red,
                          tool("paper")),
                 toolCard(tr("Picture Press"), tr("Crop, shrink and convert photos in one go."), "photo.fill",
                          accent::green, tool("pictures")),
                 toolCard(tr("Bracket Bench"), tr("Format, compare and check JSON, XML and YAML."), "curlybraces",
                          accent::purple, tool("brackets")),
                 toolCard(tr("Quick Line"), tr("A chat room for an hour, without an account."), "message.fill",
                          accent::blue, tool("line")),
                 services(),
                 spacer(),
             })
        .spacing(14);
}

QWidget *ToolsView::header()
{
    const auto heading = tr("Quenmark Online Tools");
    return hStack({
                      symbol("sparkles", 20).color(accent::orange),
                      filling(vStack({
                                         text(heading).size(14).weight(QFont::Bold).wrapped(),
                                         note(tr("Small helpers that run in your browser, free of charge.")).size(10),
                                     })
                                  .spacing(1)),
                      webLink(tr("Visit Portal ↗"), heading, std::string(makerToolsSite)),
                  })
        .spacing(10);
}

QWidget *ToolsView::toolCard(const QString &title, const QString &subtitle, const QString &icon, const Accent &color,
                             const std::string &url)
{
    return card({
        hStack({
                   tile(icon, 16, {.side = 32, .radius = 8}).color(color),
                   filling(vStack({
                                      text(title).weight(QFont::Bold).wrapped(),
                                      note(subtitle).size(10),
                                  })
                               .spacing(1)),
                   webLink(tr("Open ↗"), title, url),
               })
            .spacing(11),
    });
}

QWidget *ToolsView::services()
{
    const auto question = tr("Is there something you want built?");
    return card({
                    text(question).weight(QFont::Bold).wrapped(),
                    note(tr("Our engineers design, build and run software for small teams.")),
                    leading(link(tr("See our services ↗"), [this] { urls.open(sitePage(makerSite, "services")); })
                                .size(11)
                                .weight(QFont::Bold)
                                .wrapped()
                                .about(question)),
                })
        .tint(accent::blue, 6)
        .spacing(2);
}

QWidget *ToolsView::webLink(const QString &label, const QString &about, const std::string &url)
{
    return link(label, [this, url] { urls.open(url); }).size(11).weight(QFont::DemiBold).about(about);
}

} // namespace orvalen
