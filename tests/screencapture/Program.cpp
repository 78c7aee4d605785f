#include "tests/screencapture/Program.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <spawn.h>
#include <stdexcept>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

namespace orvalen::test {

namespace {

std::vector<std::string> environmentWith(const Environment &added)
{
    std::vector<std::string> all;
    for (char **entry = environ; *entry; ++entry) {
        const std::string_view text(*entry);
        const auto name = text.substr(0, text.find('='));
        if (name != "DISPLAY" && name != "WAYLAND_DISPLAY" && name != "XDG_SESSION_TYPE")
            all.emplace_back(text);
    }
    for (const auto &[name, value] : added) {
        auto entry = name;
        all.push_back(entry.append("=").append(value));
    }
    return all;
}

std::vector<char *> pointers(std::vector<std::string> &texts)
{
    std::vector<char *> all;
    for (auto &text : texts)
        all.push_back(text.data());
    all.push_back(nullptr);
    return all;
}

} // namespace

Program::Program(std::vector<std::string> command, const Environment &environment)
{
    std::array<int, 2> pipe{};
    if (::pipe2(pipe.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, pipe[1], STDERR_FILENO);
    auto variables = environmentWith(environment);
    const int error = ::posix_spawnp(&process, command.at(0).c_str(), &files, nullptr, pointers(command).data(),
                                     pointers(variables).data());
    posix_spawn_file_actions_destroy(&files);
    ::close(pipe[1]);
    messages = pipe[0];
    if (error != 0) {
        ::close(messages);
        throw std::runtime_error("cannot start " + command[0]);
    }
}

Program::~Program()
{
    if (process > 0) {
        kill();
        ::waitpid(process, nullptr, 0);
    }
    ::close(messages);
}

void Program::kill() const
{
    ::kill(process, SIGKILL);
}

Outcome Program::outcome()
{
    Outcome outcome;
    std::array<char, 4096> buffer{};
    for (ssize_t got = 0; (got = ::read(messages, buffer.data(), buffer.size())) > 0;)
        outcome.said.append(buffer.data(), static_cast<std::size_t>(got));
    int status = 0;
    while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    process = -1;
    outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return outcome;
}

std::string captureCommand()
{
    return ORVALEN_SCREENCAPTURE;
}

Outcome capture(const std::vector<std::string> &arguments, const Environment &environment)
{
    std::vector<std::string> command{captureCommand()};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return Program(std::move(command), environment).outcome();
}

} // namespace orvalen::test
