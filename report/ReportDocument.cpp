#include "report/ReportDocument.h"

#include <cstddef>
#include <string_view>

#include "core/Decimals.h"
#include "core/MakerSite.h"
#include "report/ReportTemplate.h"

namespace orvalen {

namespace {

constexpr std::size_t roomForAll = 10'131; ///< Bytes; the document fits.

std::string textFor(ReportMark mark, const ReportValues &values)
{
    const auto &[date, temperatures, power] = values;
    switch (mark) {
    case ReportMark::date:
        return date;
    case ReportMark::bridgeTemp:
        return oneDecimal(temperatures.bridgeTemp);
    case ReportMark::bridgeBadge:
        return temperatures.isReady() ? "badge-success" : "badge-warning";
    case ReportMark::bridgeStatus:
        return temperatures.isReady() ? "Expanded / Bridged (Online)" : "Contracted (Blank Risk)";
    case ReportMark::pmuTemp:
        return oneDecimal(temperatures.pmuTemp);
    case ReportMark::socTemp:
        return oneDecimal(temperatures.socTemp);
    case ReportMark::socMax:
        return oneDecimal(temperatures.socMax);
    case ReportMark::batteryTemp:
        return oneDecimal(temperatures.batteryTemp);
    case ReportMark::batteryPercent:
        return std::to_string(power.batteryPercent);
    case ReportMark::powerSource:
        return power.isAcConnected ? "AC Charging" : "DC Power";
    case ReportMark::makerSite:
        return std::string(makerSite);
    case ReportMark::makerSiteName:
        return std::string(siteName(makerSite));
    case ReportMark::makerToolsSite:
        return std::string(makerToolsSite);
    case ReportMark::makerToolsSiteName:
        return std::string(siteName(makerToolsSite));
    }
    return {};
}

/// Text that reads the same in an element and in a quoted attribute.
void appendEscaped(std::string &document, std::string_view text)
{
    for (const char c : text) {
        switch (c) {
        case '&':
            document += "&amp;";
            break;
        case '<':
            document += "&lt;";
            break;
        case '>':
            document += "&gt;";
            break;
        case '"':
            document += "&quot;";
            break;
        default:
            document += c;
        }
    }
}

} // namespace

std::string reportDocument(const ReportValues &values)
{
    const auto &page = reportTemplate();
    std::string document;
    document.reserve(roomForAll);
    for (const auto &[before, mark] : page.places) {
        document += before;
        appendEscaped(document, textFor(mark, values));
    }
    document += page.end;
    return document;
}

} // namespace orvalen
