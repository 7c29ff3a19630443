#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vrnsim {

// The baseboard firmware image, "RadarBaseboardKT4_v<MAJOR>.<MINOR>.<BUILD>.bin":
//   0  magic "RBK4"          12  payload length, u32
//   4  major, u16            16  CRC-32 of the payload, u32 (zlib's crc32)
//   6  minor, u16            20  payload
//   8  build, u16
//  10  reserved, u16 = 0
// All numbers little-endian.
struct FirmwareImage {
    static constexpr size_t kHeaderSize = 20;

    uint16_t version[3] = {0, 0, 0};
    uint32_t payloadLength = 0;
    uint32_t payloadCrc = 0;

    // Checks everything but the checksum, which the bootloader verifies
    // against what it wrote; false with the reason otherwise.
    static bool readHeader(const uint8_t* data, size_t size, FirmwareImage& image, std::string& error);
    static std::vector<uint8_t> build(const uint16_t version[3], const std::vector<uint8_t>& payload);
    // CRC-32 (IEEE 802.3), continued from `crc` over more data.
    static uint32_t crc32(const uint8_t* data, size_t size, uint32_t crc = 0);
    static std::string versionText(const uint16_t version[3]);
};

}  // namespace vrnsim
