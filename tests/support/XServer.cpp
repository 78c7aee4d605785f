#include "tests/support/XServer.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

namespace orvalen::test {

namespace {

pid_t start(std::vector<std::string> command, int inherited = -1)
{
    std::vector<char *> arguments;
    for (auto &word : command)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);

    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    if (inherited >= 0)
        posix_spawn_file_actions_adddup2(&files, inherited, inherited); // which lets the child keep it
    pid_t process = -1;
    const int error = ::posix_spawnp(&process, arguments[0], &files, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&files);
    if (error != 0)
        throw std::runtime_error("cannot start " + command[0] + ", which this test needs");
    return process;
}

int waitForEnd(pid_t process)
{
    int status = 0;
    while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

} // namespace

XServer::XServer(std::vector<std::string> options)
{
    std::array<int, 2> pipe{};
    if (::pipe2(pipe.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    std::vector<std::string> command{
        "Xvfb", "-displayfd", std::to_string(pipe[1]), "-screen", "0", "640x480x24", "-nolisten", "tcp", "-noreset"};
    command.insert(command.end(), options.begin(), options.end());
    process = start(command, pipe[1]);
    ::close(pipe[1]);
    std::string number; // written when the server is ready
    for (char c = 0; ::read(pipe[0], &c, 1) == 1 && c != '\n';)
        number += c;
    ::close(pipe[0]);
    if (number.empty()) {
        kill();
        throw std::runtime_error("Xvfb, which this test needs, has ended at its start");
    }
    name = ":" + number;
}

XServer::~XServer()
{
    if (process < 0)
        return;
    resume();
    ::kill(process, SIGTERM);
    waitForEnd(process);
}

void XServer::pressKey() const
{
    if (waitForEnd(start({"env", "DISPLAY=" + name, "xdotool", "key", "shift"})) != 0)
        throw std::runtime_error("xdotool, which this test needs, could not press a key");
}

void XServer::suspend() const
{
    ::kill(process, SIGSTOP);
    int status = 0;
    while (::waitpid(process, &status, WUNTRACED) < 0 && errno == EINTR) {
    }
}

void XServer::resume() const
{
    ::kill(process, SIGCONT);
}

void XServer::kill()
{
    ::kill(process, SIGKILL);
    waitForEnd(process);
    process = -1;
}

} // namespace orvalen::test
