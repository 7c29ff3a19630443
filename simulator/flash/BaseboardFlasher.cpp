#include "BaseboardFlasher.h"

#include "FirmwareImage.h"
#include "Simulator.h"

#include <cstdio>

namespace vrnsim {

namespace {

// Progress steps of a phase: erasing goes by sector, writing and verifying
// by block of a fiftieth of the payload.
constexpr uint32_t kEraseSectors = 10;
constexpr uint32_t kBlocks = 50;

std::string hex(uint32_t value)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%08X", value);
    return text;
}

// Frees the bootloader for the next image whatever way the flash ends.
class Claim
{
public:
    explicit Claim(Baseboard& board) : m_board(board), m_claimed(board.claim()) {}
    ~Claim()
    {
        if (m_claimed)
            m_board.release();
    }
    bool claimed() const { return m_claimed; }

private:
    Baseboard& m_board;
    const bool m_claimed;
};

}  // namespace

bool BaseboardFlasher::activate(const std::string& port, const std::string& productId, std::string& error)
{
    std::shared_ptr<Baseboard> board = m_simulator.baseboardOn(port);
    if (!board || !board->isPlugged() || board->mode() == Baseboard::Mode::OffBus) {
        error = "No baseboard answers on port " + port;
        return false;
    }
    if (board->mode() == Baseboard::Mode::Bootloader)
        return true;
    if (!productId.empty() && productId != board->usbProduct()) {
        error = "The baseboard on " + port + " has product ID " + board->usbProduct() + ", not " + productId;
        return false;
    }
    FlashFault fault;
    if (board->takeFault(FlashFault::Kind::ActivationFails, fault)) {
        error = "The baseboard on " + port + " did not acknowledge the bootloader command";
        return false;
    }
    // The command is acknowledged, yet the application keeps running.
    if (board->takeFault(FlashFault::Kind::NoBootloader, fault))
        return true;
    // Off the application's identity first, so that whoever the device list
    // change wakes no longer finds the board in normal mode.
    board->enterBootloader(board->pace().switchMs);
    m_simulator.leaveApplication(board);
    return true;
}

bool BaseboardFlasher::flash(const std::string& port, const uint8_t* image, size_t size, const StatusReport& status,
                             const ProgressReport& progress, std::string& error)
{
    std::shared_ptr<Baseboard> board = m_simulator.baseboardOn(port);
    if (!board || !board->answersAs(Baseboard::kBootloaderVendor, Baseboard::kBootloaderProduct)) {
        error = "No baseboard answers in bootloader mode on port " + port;
        return false;
    }
    Claim claim(*board);
    if (!claim.claimed()) {
        error = "The bootloader on " + port + " is already writing an image";
        return false;
    }
    FirmwareImage header;
    std::string damage;
    if (!image || !FirmwareImage::readHeader(image, size, header, damage)) {
        error = "Image check failed: " + (image ? damage : std::string("no image"));
        return false;
    }
    const FlashPace pace = board->pace();
    const std::string unplugged = "The baseboard on " + port + " was unplugged while flashing";
    const uint8_t* payload = image + FirmwareImage::kHeaderSize;
    const uint64_t length = header.payloadLength;
    const std::string bytes = std::to_string(length) + " bytes";

    status("Erase: erase of the application flash");
    for (uint32_t sector = 1; sector <= kEraseSectors; ++sector) {
        if (!board->pause(pace.stepMs)) {
            error = unplugged;
            return false;
        }
        progress(sector, kEraseSectors);
    }

    status("Write: writing " + bytes);
    FlashFault writeFault;
    const bool failsWriting = board->takeFault(FlashFault::Kind::WriteFails, writeFault);
    for (uint32_t block = 1; block <= kBlocks; ++block) {
        const uint32_t percent = block * 100 / kBlocks;
        if (failsWriting && percent >= writeFault.atPercent) {
            error = "Write failed at " + std::to_string(writeFault.atPercent) +
                    " %: the bootloader did not acknowledge block " + std::to_string(block) + " of " +
                    std::to_string(kBlocks);
            return false;
        }
        if (!board->pause(pace.stepMs)) {
            error = unplugged;
            return false;
        }
        progress(length * block / kBlocks, length);
    }

    status("Verify: verifying " + bytes);
    uint32_t crc = 0;
    uint64_t checked = 0;
    for (uint32_t block = 1; block <= kBlocks; ++block) {
        const uint64_t upTo = length * block / kBlocks;
        crc = FirmwareImage::crc32(payload + checked, size_t(upTo - checked), crc);
        checked = upTo;
        if (!board->pause(pace.stepMs)) {
            error = unplugged;
            return false;
        }
        progress(checked, length);
    }
    if (crc != header.payloadCrc) {
        error = "Verify failed: the written payload's CRC-32 is " + hex(crc) + ", the image announces " +
                hex(header.payloadCrc) + "; the board stays in its bootloader";
        return false;
    }

    status("Reset: reset into firmware " + FirmwareImage::versionText(header.version));
    board->setFirmware(header.version);
    board->setMode(Baseboard::Mode::OffBus);
    if (!board->pause(pace.switchMs)) {
        error = unplugged;
        return false;
    }
    // The new application does not start: the bootloader takes over again.
    FlashFault noReturn;
    if (board->takeFault(FlashFault::Kind::NoReturn, noReturn)) {
        board->setMode(Baseboard::Mode::Bootloader);
        return true;
    }
    if (!m_simulator.startApplication(board)) {
        error = unplugged;
        return false;
    }
    return true;
}

}  // namespace vrnsim
