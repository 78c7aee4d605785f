#pragma once

#include <sys/types.h>

#include <map>
#include <vector>

#include "bench/stream_viewer.h"

namespace orvalen::bench {

/// What stream_load is asked for; stream_load.cpp explains each.
struct StreamOptions
{
    StreamViewer::Request request{.port = 8999, .path = "/stream.mjpg?d=%d"};
    int displays = 1;
    int viewers = 1;
    double seconds = 5;
    double ramp = 0;
    double warm = 1;
    std::map<double, int> slow; ///< Viewers by bytes a second.
    int stalled = 0;
    double stallAfter = 0;
    int drops = 0;
    double dropRate = 50;
    std::vector<pid_t> pids;

    /// Ends the process with a message if it does not know what is meant.
    [[nodiscard]] static StreamOptions read(int argc, char **argv);
};

} // namespace orvalen::bench
