#include "link/USBFunctions.h"

#include <cstdio>

// This library stands in for the driver of a real USB adapter. There is none in this build:
// the firmware never loads and every request fails, so the program finds no board. To work
// with real hardware, put the adapter maker's library of the same two entries in its place.

extern "C" {

__attribute__((visibility("default"))) int16_t LoadFirmWare(const char * /*path*/) {
    std::fputs("ztm-eval: this build has no driver for a USB adapter\n", stderr);
    return -1;
}

__attribute__((visibility("default"))) int16_t
VendorIORequest(int16_t /*request*/, int32_t /*value*/, int32_t /*index*/, int16_t /*direction*/,
                int16_t /*length*/, uint8_t * /*buffer*/) {
    return -1;
}
}
