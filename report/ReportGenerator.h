#pragma once

#include <optional>
#include <string>

namespace orvalen {

class Documents;
class LocalisedDates;
class ThermalEngine;

/// The page that a user hands to a repair technician: the finding, and the readings of this moment.
class ReportGenerator
{
public:
    /// What a report is made with.
    struct Services
    {
        ThermalEngine &engine;
        LocalisedDates &dates;
        Documents &documents;
    };

    ReportGenerator() = default;

    /// Writes the report to the user's Desktop, in the place of an earlier one, and shows it in the browser. Its path;
    /// std::nullopt if it could not be written: then nothing is shown, and an earlier report is as it was. Main thread;
    /// reads the sensors and waits for the disk.
    static std::optional<std::string> generateAndOpenReport(); ///< With the installed platform.
    static std::optional<std::string> generateAndOpenReport(const Services &services);
};

} // namespace orvalen
