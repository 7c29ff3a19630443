// Writes a baseboard firmware image for the simulated boards, so that a
// flash can be tried without the board maker's images.
//
//   vrn_firmware_image --version 2.6.0 [--size BYTES | --payload FILE] OUTPUT

#include "FirmwareImage.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

int usage(const std::string& problem)
{
    std::fprintf(stderr,
                 "vrn_firmware_image: %s\n"
                 "usage: vrn_firmware_image --version MAJOR.MINOR.BUILD [--size BYTES | --payload FILE] OUTPUT\n",
                 problem.c_str());
    return 2;
}

bool parseVersion(const std::string& text, uint16_t version[3])
{
    unsigned long parts[3];
    char tail = 0;
    if (std::sscanf(text.c_str(), "%lu.%lu.%lu%c", &parts[0], &parts[1], &parts[2], &tail) != 3)
        return false;
    for (int i = 0; i < 3; ++i) {
        if (parts[i] > 65535)
            return false;
        version[i] = uint16_t(parts[i]);
    }
    return true;
}

// Reproducible filler: the same version always gives the same image.
std::vector<uint8_t> fillerPayload(size_t size, const uint16_t version[3])
{
    uint32_t state = 0x9E3779B9u ^ (uint32_t(version[0]) << 20) ^ (uint32_t(version[1]) << 10) ^ version[2];
    std::vector<uint8_t> payload(size);
    for (uint8_t& byte : payload) {
        state ^= state << 13;
        state ^= state >> 17;
        state ^= state << 5;
        byte = uint8_t(state);
    }
    return payload;
}

}  // namespace

int main(int argc, char** argv)
{
    uint16_t version[3];
    bool haveVersion = false;
    size_t size = 65536;
    std::string payloadFile, output;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        const bool hasValue = i + 1 < argc;
        if (arg == "--version" && hasValue) {
            if (!parseVersion(argv[++i], version))
                return usage(std::string("\"") + argv[i] + "\" is not MAJOR.MINOR.BUILD");
            haveVersion = true;
        } else if (arg == "--size" && hasValue) {
            char* end = nullptr;
            const unsigned long long n = std::strtoull(argv[++i], &end, 10);
            if (!end || *end || n > 64ull * 1024 * 1024)
                return usage(std::string("\"") + argv[i] + "\" is no size between 0 and 64 MiB");
            size = size_t(n);
        } else if (arg == "--payload" && hasValue) {
            payloadFile = argv[++i];
        } else if (arg.rfind("--", 0) != 0 && output.empty()) {
            output = arg;
        } else {
            return usage("unexpected argument \"" + arg + "\"");
        }
    }
    if (!haveVersion || output.empty())
        return usage("the version and the output file are required");

    std::vector<uint8_t> payload;
    if (!payloadFile.empty()) {
        std::ifstream in(payloadFile, std::ios::binary);
        if (!in)
            return usage("cannot read " + payloadFile + ": " + std::strerror(errno));
        payload.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    } else {
        payload = fillerPayload(size, version);
    }

    const std::vector<uint8_t> image = vrnsim::FirmwareImage::build(version, payload);
    std::ofstream out(output, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(image.data()), std::streamsize(image.size()));
    out.close();
    if (!out) {
        std::fprintf(stderr, "vrn_firmware_image: cannot write %s: %s\n", output.c_str(), std::strerror(errno));
        return 1;
    }
    return 0;
}
