#pragma once

#include <vector>

#include "ui/SponsoredAdItem.h"
#include "ui/kit/Builders.h"

namespace orvalen {

class UrlOpener;

/// The left column: what else the maker offers. Knows nothing of the rest of the program.
class LeftSidebarAdView : public kit::Panel
{
    Q_OBJECT

public:
    explicit LeftSidebarAdView(UrlOpener &urls, QWidget *parent = nullptr);

    const std::vector<SponsoredAdItem> ads; ///< In the order in which they are shown.

    static constexpr int columnWidth = 175;

private:
    static QWidget *header();
    QWidget *adCards();
    QWidget *adCard(const SponsoredAdItem &ad);
    QWidget *socialCard();

    UrlOpener &urls;
};

} // namespace orvalen
