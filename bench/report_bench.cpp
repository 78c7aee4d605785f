// The technician's report, from the readings to the file on the disk, without showing it; against the least that can be
// done with the same bytes: write them beside the old file, wait for the disk, and rename.
//
//   report_bench [FOLDER] [reports]     a folder below the present one and 200 by default
//
// Both write to the same folder, taking turns. The machine is laid out like a laptop with 60 sensors. The first report
// of a process is told apart: it finds nothing prepared. Goal: a median under 20 ms.

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "core/ThermalEngine.h"
#include "platform/GraphicsCopies.h"
#include "platform/InputIdleTime.h"
#include "platform/linux/ClockBoottime.h"
#include "platform/linux/LocalisedDatesIcu.h"
#include "platform/linux/PowerSourcesSysfs.h"
#include "platform/linux/ProcessorsAffinity.h"
#include "platform/linux/TemperatureSensorsSysfs.h"
#include "platform/posix/BoundedPowerSources.h"
#include "platform/posix/BoundedTemperatureSensors.h"
#include "platform/qt/DispatchQt.h"
#include "platform/qt/DocumentsQt.h"
#include "report/ReportGenerator.h"
#include "tests/support/SysfsTree.h"

#include <QCoreApplication>

namespace {

using namespace orvalen;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int sensors = 60;

std::string laptop()
{
    std::string tree = "[class/hwmon/hwmon0]\nname = coretemp\n";
    for (int i = 1; i <= sensors; ++i) {
        const std::string file = "temp" + std::to_string(i);
        tree += file + "_input = " + std::to_string(40'000 + i) + "\n";
        tree += file + "_label = Core " + std::to_string(i) + "\n";
    }
    return tree + "[class/power_supply/AC]\ntype = Mains\nonline = 1\n"
                  "[class/power_supply/BAT0]\ntype = Battery\nstatus = Charging\ncapacity = 78\n";
}

/// Shows nothing.
struct NoBrowser : UrlOpener
{
    void open(std::string_view) override { ++opened; }
    int opened = 0;
};

/// A Desktop in a folder of ours.
struct DocumentsInFolder : DocumentsQt
{
    DocumentsInFolder(UrlOpener &urls, std::string folder) : DocumentsQt(urls), folder(std::move(folder)) {}
    std::string desktopFolder() override { return folder; }
    std::string folder;
};

struct NobodyIdle : InputIdleTime
{
    std::optional<std::chrono::duration<double>> sinceLastInput() override { return std::nullopt; }
};

struct NoGraphics : GraphicsCopies
{
    std::unique_ptr<GraphicsQueue> openDefaultQueue() override { return nullptr; }
};

void plainWrite(const std::string &path, const std::string &contents)
{
    const auto beside = path + ".new";
    const int descriptor = ::open(beside.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    const bool isWritten =
        descriptor >= 0 &&
        ::write(descriptor, contents.data(), contents.size()) == static_cast<ssize_t>(contents.size()) &&
        ::fsync(descriptor) == 0 && ::close(descriptor) == 0 && ::rename(beside.c_str(), path.c_str()) == 0;
    if (!isWritten)
        std::exit(1);
}

template <typename Work>
double timed(Work work)
{
    const auto start = Clock::now();
    work();
    return Milliseconds(Clock::now() - start).count();
}

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void row(const char *name, const std::vector<double> &times, const std::vector<double> &plain, const char *remark)
{
    std::printf("%-30s %8.3f %8.3f %8.2f   %s\n", name, median(times), *std::max_element(times.begin(), times.end()),
                median(times) / median(plain), remark);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    std::string folder = std::filesystem::absolute(argc > 1 ? argv[1] : ".") / "report_bench.XXXXXX";
    const int count = argc > 2 ? std::atoi(argv[2]) : 200;
    if (count < 1 || !::mkdtemp(folder.data())) {
        std::fputs("report_bench: no folder to write to, or nothing to count\n", stderr);
        return 1;
    }

    const test::SysfsTree tree(laptop());
    BoundedTemperatureSensors temperatureSensors(std::make_shared<TemperatureSensorsSysfs>(tree.root()));
    BoundedPowerSources powerSources(std::make_shared<PowerSourcesSysfs>(tree.root()));
    NobodyIdle idle;
    NoGraphics graphics;
    ProcessorsAffinity processors;
    DispatchQt dispatch;
    ClockBoottime clock;
    ThermalEngine engine({temperatureSensors, idle, powerSources, graphics, processors, dispatch, clock});
    LocalisedDatesIcu dates;
    NoBrowser browser;
    DocumentsInFolder documents(browser, folder);
    const ReportGenerator::Services services{engine, dates, documents};

    std::string path;
    const auto report = [&] { path = ReportGenerator::generateAndOpenReport(services).value_or(""); };
    const double first = timed(report);
    std::ifstream file(path, std::ios::binary);
    const std::string contents{std::istreambuf_iterator<char>(file), {}};
    if (contents.empty())
        return 1;

    std::vector<double> ours;
    std::vector<double> plain;
    for (int i = 0; i < count; ++i) {
        plain.push_back(timed([&] { plainWrite(folder + "/plain.html", contents); }));
        ours.push_back(timed(report));
    }
    std::filesystem::remove_all(folder);
    if (browser.opened != count + 1)
        return 1;

    std::printf("%zu bytes, %d sensors, %d times each; milliseconds\n", contents.size(), sensors, count);
    std::printf("%-30s %8s %8s %8s\n", "", "median", "worst", "ratio");
    row("write, wait for disk, rename", plain, plain, "");
    row("report", ours, plain, median(ours) < 20.0 ? "goal met: median under 20" : "goal missed: median under 20");
    row("first report of the process", {first}, plain, "");
    return 0;
}
