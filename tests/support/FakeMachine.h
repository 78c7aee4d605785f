#pragma once

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "core/AppState.h"
#include "core/ThermalEngine.h"
#include "platform/GraphicsCopies.h"
#include "platform/InputIdleTime.h"
#include "platform/Notifications.h"
#include "platform/PowerSources.h"
#include "platform/Processors.h"
#include "platform/SettingsStore.h"
#include "platform/Sounds.h"
#include "platform/TemperatureSensors.h"
#include "platform/UrlOpener.h"
#include "streaming/WebScreenServer.h"
#include "tests/support/StreamFakes.h"
#include "tests/support/VirtualWorld.h"

namespace orvalen::test {

/// A function that a test may set, and that may replace itself while it runs.
class Hook
{
public:
    template <typename Function>
    Hook &operator=(Function newFunction)
    {
        function = std::make_shared<std::function<void()>>(std::move(newFunction));
        return *this;
    }
    void clear() { function.reset(); }
    void operator()() const
    {
        if (const auto running = function)
            (*running)();
    }

private:
    std::shared_ptr<std::function<void()>> function;
};

struct FakeTemperatureSensors : TemperatureSensors
{
    std::optional<std::vector<TemperatureReading>> readings = std::vector<TemperatureReading>{};
    Hook beforeRead; ///< May change the readings, sleep in virtual time or throw.
    int reads = 0;

    std::optional<std::vector<TemperatureReading>> read() override
    {
        ++reads;
        beforeRead();
        return readings;
    }

    /// One bridge sensor and one that counts for the power-management unit alone, so that `pmuTemp` becomes `pmu`.
    void set(double bridge, double pmu) { readings = {{{"PMU tdie1", bridge}, {"PMU tdev1", 2 * pmu - bridge}}}; }
    void set(double bridge) { readings = {{{"PMU tdie1", bridge}}}; }
};

struct FakePowerSources : PowerSources
{
    std::vector<PowerSource> sources;
    std::vector<PowerSource> list() override { return sources; }
    void set(bool ac, int percent) { sources = {{ac ? "AC Power" : "Battery Power", percent}}; }
};

struct FakeInputIdleTime : InputIdleTime
{
    std::optional<std::chrono::duration<double>> idle = std::chrono::seconds(0);
    std::optional<std::chrono::duration<double>> sinceLastInput() override { return idle; }
};

/// A graphics device that counts its copies.
struct FakeGraphicsCopies : GraphicsCopies
{
    bool hasDevice = true;
    std::size_t buffersAvailable = 2;
    std::function<void()> beforeOpen;
    std::function<void()> beforeCopy;
    int copies = 0;
    bool copiedWell = true; ///< Every copy so far was of a whole buffer into another one.
    std::vector<std::size_t> bufferSizes;

    struct Buffer : GraphicsBuffer
    {
    };
    struct Queue : GraphicsQueue
    {
        explicit Queue(FakeGraphicsCopies &owner) : owner(owner) {}
        std::unique_ptr<GraphicsBuffer> makeBuffer(std::size_t bytes) override
        {
            owner.bufferSizes.push_back(bytes);
            return owner.bufferSizes.size() <= owner.buffersAvailable ? std::make_unique<Buffer>() : nullptr;
        }
        void copy(GraphicsBuffer &from, GraphicsBuffer &to, std::size_t bytes) override
        {
            if (owner.beforeCopy)
                owner.beforeCopy();
            ++owner.copies;
            owner.copiedWell = owner.copiedWell && &from != &to && bytes == owner.bufferSizes.back();
        }
        FakeGraphicsCopies &owner;
    };
    std::unique_ptr<GraphicsQueue> openDefaultQueue() override
    {
        if (beforeOpen)
            beforeOpen();
        return hasDevice ? std::make_unique<Queue>(*this) : nullptr;
    }
};

struct FakeProcessors : Processors
{
    int cores = 8;
    int activeCount() override { return cores; }
};

/// Settings in memory, and a diary of what was written.
struct FakeSettingsStore : SettingsStore
{
    std::map<std::string, std::string, std::less<>> values;
    std::vector<std::string> writes; ///< "key=value"

    bool has(std::string_view key) override { return values.find(key) != values.end(); }
    bool readBool(std::string_view key) override { return has(key) && values.find(key)->second == "true"; }
    double readDouble(std::string_view key) override
    {
        return has(key) ? std::strtod(values.find(key)->second.c_str(), nullptr) : 0.0;
    }
    void writeBool(std::string_view key, bool value) override { write(key, value ? "true" : "false"); }
    void writeDouble(std::string_view key, double value) override
    {
        char text[32];
        std::snprintf(text, sizeof text, "%g", value);
        write(key, text);
    }
    void write(std::string_view key, const std::string &value)
    {
        values[std::string(key)] = value;
        writes.push_back(std::string(key) + "=" + value);
    }
};

struct FakeSounds : Sounds
{
    std::vector<std::string> played;
    Hook beforePlay; ///< May throw.
    void play(std::string_view name) override
    {
        beforePlay();
        played.emplace_back(name);
    }
};

struct FakeNotifications : Notifications
{
    std::vector<std::pair<std::string, std::string>> posted; ///< Title and message.
    void post(std::string_view title, std::string_view message) override { posted.emplace_back(title, message); }
};

struct FakeUrlOpener : UrlOpener
{
    std::vector<std::string> opened;
    void open(std::string_view url) override { opened.emplace_back(url); }
};

/// A whole machine of fakes in virtual time.
struct FakeMachine
{
    VirtualWorld world;
    FakeTemperatureSensors sensors;
    FakePowerSources power;
    FakeInputIdleTime idle;
    FakeGraphicsCopies graphics;
    FakeProcessors processors;
    FakeSettingsStore settings;
    FakeSounds sounds;
    FakeNotifications notifications;
    FakeUrlOpener urls;

    Diary diary; ///< Of those below.
    DiaryClock clock{world, diary};
    FakeChildProcesses processes{diary};
    FakeTextFiles files{diary};
    FakeNetworkInterfaces interfaces;
    FakeHostName hostName;
    FakeScreenCaptureAccess captureAccess{diary};
    FakePasteboard pasteboard{diary};
    FakeSpeech speech{diary};
    std::ostringstream console;

    [[nodiscard]] ThermalEngine::Machine engineMachine()
    {
        return {sensors, idle, power, graphics, processors, world, world};
    }
    [[nodiscard]] AppState::Services stateServices(ThermalEngine &engine)
    {
        return {engine, settings, world, sounds, notifications};
    }
    [[nodiscard]] WebScreenServer::Services streamServices(OfflineBridgeManager &bridges)
    {
        return {world,         clock,  processes, files,      interfaces, bridges,      hostName,
                captureAccess, sounds, speech,    pasteboard, urls,       streamServer, console};
    }
    static constexpr const char *streamServer = "/opt/orvalen/libexec/orvalen/orvalen-stream-server";
};

/// An engine that heats nothing: the test plays the pulse by hand.
class FakeThermalEngine : public ThermalEngine
{
public:
    explicit FakeThermalEngine(FakeMachine &machine) : ThermalEngine(machine.engineMachine()) {}

    void executeControlledPulse(double targetTemp, ProgressCallback progress, CompletionCallback completion) override
    {
        targets.push_back(targetTemp);
        reportProgress = std::move(progress);
        complete = std::move(completion);
    }

    std::vector<double> targets; ///< One per pulse asked for.
    ProgressCallback reportProgress;
    CompletionCallback complete;
};

} // namespace orvalen::test
