#pragma once

#include <string>

#include "core/SystemThermalData.h"
#include "core/ThermalEngine.h"

namespace orvalen {

/// What is true of one moment, for a technician to read.
struct ReportValues
{
    std::string date; ///< As the user writes it; UTF-8.
    SystemThermalData temperatures;
    PowerStatus power;
};

/// The report as an HTML document (UTF-8).
[[nodiscard]] std::string reportDocument(const ReportValues &values);

} // namespace orvalen
