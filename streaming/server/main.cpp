// orvalen-stream-server [SCRIPT]
// Shows the screens to browsers on the network, until it is killed. The argument is not used: it only makes the command
// line recognisable to whoever ends it.
#include <cstdlib>
#include <mutex>

#include "streaming/server/CaptureToFile.h"
#include "streaming/server/Listener.h"
#include "streaming/server/ProcessSetup.h"
#include "streaming/server/Server.h"

int main(int argc, char **argv)
{
    using namespace orvalen;

    prepareProcess();
    const auto mostConnections = connectionsPossible();
    Descriptor listener = listenOnFirst(contract::ports, contract::portFile);
    if (!listener)
        return EXIT_FAILURE;

    std::mutex descriptors;
    CaptureCommand command(folderOfProgram(argc > 0 ? argv[0] : "", environmentSearchPath()), descriptors);
    CaptureToFile source(command);
    DisplayFrames frames(source);
    Server(std::move(listener), frames, descriptors, mostConnections).serve();
}
