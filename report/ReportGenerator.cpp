#include "report/ReportGenerator.h"

#include "core/ThermalEngine.h"
#include "platform/Documents.h"
#include "platform/LocalisedDates.h"
#include "platform/Platform.h"
#include "report/ReportDocument.h"

namespace orvalen {

namespace {

constexpr auto fileName = "Quenmark_Display_Diagnostic_Report.html";

} // namespace

std::optional<std::string> ReportGenerator::generateAndOpenReport()
{
    auto &platform = Platform::installed();
    return generateAndOpenReport({ThermalEngine::shared(), *platform.dates, *platform.documents});
}

std::optional<std::string> ReportGenerator::generateAndOpenReport(const Services &services)
{
    auto &[engine, dates, documents] = services;
    ReportValues values;
    values.temperatures = engine.readSensors();
    values.power = engine.getPowerStatus();
    auto path = documents.desktopFolder() + '/' + fileName;
    values.date = dates.now();
    if (!documents.write(path, reportDocument(values)))
        return std::nullopt;
    documents.open(path);
    return path;
}

} // namespace orvalen
