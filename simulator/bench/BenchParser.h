#pragma once

#include "Bench.h"

#include <string>

namespace vrnsim {

// Reads benches written by hand. Every error names the offending field with
// its path ("boards[0].scene.targets[1].range_m") so a typo is found at once.
class BenchParser
{
public:
    // The bench used when no file is given.
    static const char* defaultBenchJson();

    // origin prefixes error texts (a file name, or "Bench").
    static bool parseBench(const std::string& json, const std::string& origin, Bench& bench,
                           std::string& error);
    static bool parseBoard(const std::string& json, BoardSpec& board, std::string& error);
    static bool readFile(const std::string& path, std::string& contents, std::string& error);
};

}  // namespace vrnsim
