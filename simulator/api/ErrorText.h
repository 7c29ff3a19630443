#pragma once

#include <sdk/vrn.h>

#include <string>

namespace vrnsim {

// Texts handed across the C boundary. Each thread keeps its own last text,
// valid until its next SDK call.
class ErrorText
{
public:
    static vrn_Error_t set(std::string text);
    // Remembers a detail for a status returned on this thread; status_text()
    // of that status appends it until the next status with a detail.
    static vrn_Status_t status(vrn_Status_t status, std::string detail = std::string());
    static const char* statusText(vrn_Status_t status);
    // Error text of a status for calls that answer with a text.
    static vrn_Error_t fromStatus(vrn_Status_t status);
};

}  // namespace vrnsim
