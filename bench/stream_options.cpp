#include "bench/stream_options.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <string_view>

namespace orvalen::bench {

namespace {

[[noreturn]] void misused(const std::string &word)
{
    std::fprintf(stderr, "stream_load: what is %s?\n", word.c_str());
    std::exit(64);
}

} // namespace

StreamOptions StreamOptions::read(int argc, char **argv)
{
    StreamOptions options;
    const std::map<std::string, std::function<void(const char *)>> words = {
        {"--port", [&](auto value) { options.request.port = std::atoi(value); }},
        {"--path", [&](auto value) { options.request.path = value; }},
        {"--displays", [&](auto value) { options.displays = std::max(1, std::atoi(value)); }},
        {"--viewers", [&](auto value) { options.viewers = std::atoi(value); }},
        {"--seconds", [&](auto value) { options.seconds = std::atof(value); }},
        {"--ramp", [&](auto value) { options.ramp = std::atof(value); }},
        {"--warm", [&](auto value) { options.warm = std::atof(value); }},
        {"--stall", [&](auto value) { options.stalled = std::atoi(value); }},
        {"--stall-after", [&](auto value) { options.stallAfter = std::atof(value); }},
        {"--drops", [&](auto value) { options.drops = std::atoi(value); }},
        {"--drop-rate", [&](auto value) { options.dropRate = std::atof(value); }},
        {"--dialect", [&](auto value) { options.request.isStrict = std::string_view(value) == "ours"; }},
        {"--freshness",
         [&](auto value) {
             options.request.freshness =
                 std::string_view(value) == "clock" ? StreamViewer::Freshness::clock : StreamViewer::Freshness::stamps;
         }},
        {"--pid", [&](auto value) { options.pids.push_back(std::atoi(value)); }},
    };
    for (int i = 1; i < argc; i += 2) {
        const std::string word = argv[i];
        const auto known = words.find(word);
        if (i + 1 == argc)
            misused(word);
        else if (word.starts_with("--slow-"))
            options.slow[std::atof(word.c_str() + 7)] += std::atoi(argv[i + 1]);
        else if (known != words.end())
            known->second(argv[i + 1]);
        else
            misused(word);
    }
    return options;
}

} // namespace orvalen::bench
