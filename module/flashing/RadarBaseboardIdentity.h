#pragma once

#include <string>
#include <vector>

// The USB identities under which radar baseboards appear on the serial
// ports, as four-digit upper-case hexadecimal texts (the flashing library's
// form). The normal-mode identity is a deployment value read from the
// general user settings; these are its defaults.
struct RadarBaseboardIdentity
{
    std::string vendorId = defaultVendorId();
    std::vector<std::string> productIds = defaultProductIds();

    static std::string defaultVendorId() { return "2F5A"; }
    static std::vector<std::string> defaultProductIds() { return { "0251", "0252", "0253" }; }

    // Every baseboard's bootloader answers to this one identity, fixed by the
    // flashing library.
    static constexpr const char* kBootloaderVendorId = "03EB";
    static constexpr const char* kBootloaderProductId = "6124";
};
