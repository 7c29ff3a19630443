// A firmware image as both of its readers take it: the module's check
// before flashing, and the simulated board's check of what it is sent.
#include "FuzzSupport.h"
#include "flashing/RadarFirmwareImage.h"
#include "FirmwareImage.h"

#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzSupport::quietLog();
    const QString path = FuzzSupport::writeScratch(QStringLiteral("image.bin"), data, size);
    QString error;
    const RadarFirmwareImage image = RadarFirmwareImage::read(path, error);
    if (image.isValid() && !error.isEmpty())
        __builtin_trap(); // a valid image has no error to tell

    vrnsim::FirmwareImage header;
    std::string simError;
    vrnsim::FirmwareImage::readHeader(data, size, header, simError);
    return 0;
}
