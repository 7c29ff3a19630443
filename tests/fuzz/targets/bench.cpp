// A bench file as the simulated SDK reads it, and a single board
// description as its control table takes one.
#include "FuzzSupport.h"
#include "BenchParser.h"

#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string json(reinterpret_cast<const char*>(data), size);
    std::string error;
    vrnsim::Bench bench;
    vrnsim::BenchParser::parseBench(json, "Bench", bench, error);
    vrnsim::BoardSpec board;
    vrnsim::BenchParser::parseBoard(json, board, error);
    return 0;
}
