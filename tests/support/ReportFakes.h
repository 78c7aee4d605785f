#pragma once

#include <map>
#include <string>
#include <vector>

#include "core/ThermalEngine.h"
#include "platform/Documents.h"
#include "platform/LocalisedDates.h"
#include "tests/support/FakeMachine.h"

namespace orvalen::test {

/// What the services of a report were asked for, in that order.
using ReportDiary = std::vector<std::string>;

struct FakeLocalisedDates : LocalisedDates
{
    explicit FakeLocalisedDates(ReportDiary &diary) : diary(diary) {}
    std::string now() override
    {
        diary.emplace_back("date");
        return date;
    }
    ReportDiary &diary;
    std::string date = "November 15, 2026 at 9:28:25 PM";
};

/// Files in memory.
struct FakeDocuments : Documents
{
    explicit FakeDocuments(ReportDiary &diary) : diary(diary) {}
    std::string desktopFolder() override
    {
        diary.emplace_back("folder");
        return folder;
    }
    bool write(const std::string &path, std::string_view contents) override
    {
        diary.emplace_back("write");
        if (canWrite)
            files[path] = contents;
        return canWrite;
    }
    void open(const std::string &path) override { diary.push_back("open " + path); }

    ReportDiary &diary;
    std::string folder = "/srv/anna/Desktop";
    bool canWrite = true;
    std::map<std::string, std::string> files; ///< Contents by path.
};

/// An engine whose readings are given.
class FakeReadings : public ThermalEngine
{
public:
    FakeReadings(FakeMachine &machine, ReportDiary &diary) : ThermalEngine(machine.engineMachine()), diary(diary) {}
    SystemThermalData readSensors() override
    {
        diary.emplace_back("sensors");
        return temperatures;
    }
    PowerStatus getPowerStatus() override
    {
        diary.emplace_back("power");
        return power;
    }

    SystemThermalData temperatures{38.4, 37.1, 41.26, 44.95, 30.0, 33.3};
    PowerStatus power{true, 100};

private:
    ReportDiary &diary;
};

} // namespace orvalen::test
