#pragma once

#include <sdk/vrn.h>

#include <vector>

// A snapshot of the boards available when the list was taken.
struct vrn_Device_List_s {
    std::vector<vrn_Device_List_Entry_t> entries;
};
