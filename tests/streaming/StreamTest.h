#pragma once

#include <gmock/gmock.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "streaming/OfflineBridgeManager.h"
#include "streaming/WebScreenServer.h"
#include "tests/support/FakeMachine.h"

namespace orvalen::test {

/// A controller on a machine of fakes: Wi-Fi at 192.168.1.20, named macbook-air.
class StreamTest : public ::testing::Test
{
protected:
    static constexpr const char *script = "/tmp/orvalen_web_stream.py";
    static constexpr const char *portFile = "/tmp/orvalen_port.txt";
    static inline const std::string launchServer =
        std::string("launch ") + FakeMachine::streamServer + " /tmp/orvalen_web_stream.py";
    static inline const std::string terminateServer = std::string("terminate ") + FakeMachine::streamServer;
    static inline const std::string waitForServer = std::string("wait for ") + FakeMachine::streamServer;

    /// What every stop does, whether or not there was a server of ours.
    static inline const std::vector<std::string> sweep = {"launch /usr/bin/pkill -f orvalen_web_stream.py",
                                                          "wait for /usr/bin/pkill", "remove /tmp/orvalen_port.txt",
                                                          "sleep 150 ms"};

    StreamTest() { machine.interfaces.entries = {networkInterface("en0", "192.168.1.20")}; }

    WebScreenServer &controller()
    {
        if (!made)
            made = std::make_unique<WebScreenServer>(machine.streamServices(bridges));
        return *made;
    }

    void destroyController() { made.reset(); }

    /// The server that is started next says that it got this port.
    void letServerSay(std::string contents)
    {
        machine.processes.onLaunch = [this, contents = std::move(contents)](FakeChildProcesses::Child &child) {
            if (child.program == FakeMachine::streamServer)
                machine.files.contents[portFile] = contents;
        };
    }

    void advance(int milliseconds) { machine.world.advance(std::chrono::milliseconds(milliseconds)); }

    FakeMachine machine;
    OfflineBridgeManager bridges{machine.interfaces};

private:
    std::unique_ptr<WebScreenServer> made;
};

/// One list after the other.
inline std::vector<std::string> joined(const std::vector<std::vector<std::string>> &lists)
{
    std::vector<std::string> all;
    for (const auto &list : lists)
        all.insert(all.end(), list.begin(), list.end());
    return all;
}

} // namespace orvalen::test
