#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/ChildProcesses.h"
#include "platform/Clock.h"
#include "platform/HostName.h"
#include "platform/NetworkInterfaces.h"
#include "platform/Pasteboard.h"
#include "platform/ScreenCaptureAccess.h"
#include "platform/Speech.h"
#include "platform/TextFiles.h"

namespace orvalen::test {

/// What several fakes were asked to do, in the order in which they were asked.
struct Diary
{
    std::vector<std::string> lines;

    void note(std::string line) { lines.push_back(std::move(line)); }

    /// What was noted since the last time.
    std::vector<std::string> take() { return std::exchange(lines, {}); }
};

/// Programs that run until they are asked to end, or until the test ends them. Those that a machine always has (which
/// end by themselves at once) are in `shortLived`.
struct FakeChildProcesses : ChildProcesses
{
    struct Child
    {
        std::string program;
        std::vector<std::string> arguments;
        bool isRunning = true;
        bool isHeld = true; ///< Somebody still has it in hand.
    };

    explicit FakeChildProcesses(Diary &diary) : diary(diary) {}

    std::vector<std::shared_ptr<Child>> launched;
    std::set<std::string, std::less<>> missing; ///< Programs that cannot be started.
    std::set<std::string, std::less<>> shortLived{"/usr/bin/pkill"};
    std::map<std::string, int, std::less<>> failing; ///< Programs that end at once, and with which status.
    std::function<void(Child &)> onLaunch;
    std::map<std::string, std::string, std::less<>> outputs; ///< By command line; others write nothing.
    std::vector<OutputLimits> outputLimits;                  ///< Of each program whose output was wanted.

    std::unique_ptr<ChildProcess> launch(const std::string &program, const std::vector<std::string> &arguments) override
    {
        std::string line = "launch " + program;
        for (const auto &argument : arguments)
            line += " " + argument;
        diary.note(line);
        if (missing.contains(program))
            throw std::system_error(std::make_error_code(std::errc::no_such_file_or_directory), program);
        launched.push_back(std::make_shared<Child>(Child{program, arguments}));
        if (onLaunch)
            onLaunch(*launched.back());
        return std::make_unique<Handle>(*this, launched.back());
    }

    std::string outputOf(const std::string &program, const std::vector<std::string> &arguments,
                         const OutputLimits &limits) override
    {
        std::string line = program;
        for (const auto &argument : arguments)
            line += " " + argument;
        diary.note("output of " + line);
        if (missing.contains(program))
            throw std::system_error(std::make_error_code(std::errc::no_such_file_or_directory), program);
        outputLimits.push_back(limits);
        const auto output = outputs.find(line);
        return output == outputs.end() ? std::string() : output->second.substr(0, limits.bytes);
    }

    /// How many children of that program run.
    [[nodiscard]] int running(std::string_view program) const
    {
        int count = 0;
        for (const auto &child : launched)
            count += child->isRunning && child->program == program;
        return count;
    }

private:
    struct Handle : ChildProcess
    {
        Handle(FakeChildProcesses &owner, std::shared_ptr<Child> child)
            : diary(owner.diary), failing(owner.failing), child(std::move(child))
        {
            isShortLived = owner.shortLived.contains(this->child->program);
        }
        ~Handle() override { child->isHeld = false; }

        bool isRunning() override { return child->isRunning; }
        void terminate() override
        {
            diary.note("terminate " + child->program);
            isAsked = true;
        }
        void waitUntilExit() override
        {
            diary.note("wait for " + child->program);
            if (!isAsked && !isShortLived && child->isRunning)
                throw std::logic_error("nobody asked it to end: " + child->program);
            child->isRunning = false;
        }
        std::optional<int> exitStatusWithin(std::chrono::milliseconds) override
        {
            const auto status = failing.find(child->program);
            if (status == failing.end())
                return std::nullopt;
            child->isRunning = false;
            return status->second;
        }

        Diary &diary;
        const std::map<std::string, int, std::less<>> &failing;
        std::shared_ptr<Child> child;
        bool isShortLived = false;
        bool isAsked = false;
    };

    Diary &diary;
};

/// Files in memory.
struct FakeTextFiles : TextFiles
{
    explicit FakeTextFiles(Diary &diary) : diary(diary) {}

    std::map<std::string, std::string> contents;
    bool isWritable = true;

    bool replace(const std::string &path, std::string_view text) override
    {
        diary.note("write " + path);
        if (isWritable)
            contents[path] = text;
        return isWritable;
    }
    std::optional<std::string> read(const std::string &path) override
    {
        diary.note("read " + path);
        const auto file = contents.find(path);
        return file == contents.end() ? std::nullopt : std::optional(file->second);
    }
    void remove(const std::string &path) override
    {
        diary.note("remove " + path);
        if (isWritable)
            contents.erase(path);
    }

private:
    Diary &diary;
};

/// An interface that is up and running, with an IPv4 address; the rest is for a test to change.
inline NetworkInterface networkInterface(std::string name, std::string address)
{
    return {std::move(name), true, true, false, NetworkInterface::Family::ipv4, std::move(address)};
}

struct FakeNetworkInterfaces : NetworkInterfaces
{
    std::optional<std::vector<NetworkInterface>> entries = std::vector<NetworkInterface>{};
    std::optional<std::vector<NetworkInterface>> list() override { return entries; }
};

struct FakeHostName : HostName
{
    std::optional<std::string> multicast = "MacBook-Air\n";
    std::string process = "process-host.example.org";

    std::optional<std::string> multicastName() override { return multicast; }
    std::string processName() override { return process; }
};

struct FakeScreenCaptureAccess : ScreenCaptureAccess
{
    explicit FakeScreenCaptureAccess(Diary &diary) : diary(diary) {}

    bool granted = true;

    bool isGranted() override { return granted; }
    void request() override { diary.note("request screen capture"); }

private:
    Diary &diary;
};

struct FakePasteboard : Pasteboard
{
    explicit FakePasteboard(Diary &diary) : diary(diary) {}

    std::string text; ///< As a person would paste it.
    void setText(std::string_view given) override
    {
        text = given;
        diary.note("paste " + text);
    }

private:
    Diary &diary;
};

struct FakeSpeech : Speech
{
    explicit FakeSpeech(Diary &diary) : diary(diary) {}

    std::vector<std::string> spoken;
    bool isBroken = false;

    void speak(std::string_view text) override
    {
        diary.note("speak");
        if (isBroken)
            throw std::runtime_error("no voice today");
        spoken.emplace_back(text);
    }

private:
    Diary &diary;
};

/// A clock that writes down how long somebody slept on it.
class DiaryClock : public Clock
{
public:
    DiaryClock(Clock &clock, Diary &diary) : clock(clock), diary(diary) {}

    [[nodiscard]] std::chrono::nanoseconds now() const override { return clock.now(); }
    void sleepFor(std::chrono::nanoseconds duration) override
    {
        const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(duration);
        diary.note("sleep " + std::to_string(milliseconds.count()) + " ms");
        clock.sleepFor(duration);
    }

private:
    Clock &clock;
    Diary &diary;
};

} // namespace orvalen::test
