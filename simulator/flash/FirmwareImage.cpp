#include "FirmwareImage.h"

#include <array>
#include <cstring>

namespace vrnsim {

namespace {

const char kMagic[4] = {'R', 'B', 'K', '4'};

uint32_t readLe(const uint8_t* p, int bytes)
{
    uint32_t value = 0;
    for (int i = bytes - 1; i >= 0; --i)
        value = (value << 8) | p[i];
    return value;
}

void writeLe(std::vector<uint8_t>& out, uint32_t value, int bytes)
{
    for (int i = 0; i < bytes; ++i)
        out.push_back(uint8_t(value >> (8 * i)));
}

const std::array<uint32_t, 256>& crcTable()
{
    static const std::array<uint32_t, 256> table = [] {
        std::array<uint32_t, 256> t{};
        for (uint32_t n = 0; n < 256; ++n) {
            uint32_t c = n;
            for (int k = 0; k < 8; ++k)
                c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
            t[n] = c;
        }
        return t;
    }();
    return table;
}

}  // namespace

bool FirmwareImage::readHeader(const uint8_t* data, size_t size, FirmwareImage& image, std::string& error)
{
    if (size < kHeaderSize) {
        error = "the image holds " + std::to_string(size) + " bytes, fewer than its " +
                std::to_string(kHeaderSize) + "-byte header";
        return false;
    }
    if (std::memcmp(data, kMagic, sizeof kMagic) != 0) {
        error = "the image does not start with \"RBK4\"; it is no radar baseboard firmware";
        return false;
    }
    for (int i = 0; i < 3; ++i)
        image.version[i] = uint16_t(readLe(data + 4 + 2 * i, 2));
    image.payloadLength = readLe(data + 12, 4);
    image.payloadCrc = readLe(data + 16, 4);
    if (readLe(data + 10, 2) != 0) {
        error = "the reserved header field is not 0";
        return false;
    }
    if (uint64_t(image.payloadLength) != uint64_t(size - kHeaderSize)) {
        error = "the header announces " + std::to_string(image.payloadLength) + " payload bytes, the image holds " +
                std::to_string(size - kHeaderSize);
        return false;
    }
    return true;
}

std::vector<uint8_t> FirmwareImage::build(const uint16_t version[3], const std::vector<uint8_t>& payload)
{
    std::vector<uint8_t> out(kMagic, kMagic + sizeof kMagic);
    for (int i = 0; i < 3; ++i)
        writeLe(out, version[i], 2);
    writeLe(out, 0, 2);
    writeLe(out, uint32_t(payload.size()), 4);
    writeLe(out, crc32(payload.data(), payload.size()), 4);
    out.insert(out.end(), payload.begin(), payload.end());
    return out;
}

uint32_t FirmwareImage::crc32(const uint8_t* data, size_t size, uint32_t crc)
{
    const auto& table = crcTable();
    crc = ~crc;
    for (size_t i = 0; i < size; ++i)
        crc = table[(crc ^ data[i]) & 0xFFu] ^ (crc >> 8);
    return ~crc;
}

std::string FirmwareImage::versionText(const uint16_t version[3])
{
    return std::to_string(version[0]) + "." + std::to_string(version[1]) + "." + std::to_string(version[2]);
}

}  // namespace vrnsim
