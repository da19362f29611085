#pragma once

#include <cstdint>

/// The adapter library, the only access to the hardware. Any shared library with these two
/// functions can take its place.
extern "C" {

/// Downloads the adapter's firmware from the Intel HEX file at `path`, a zero-terminated 8-bit
/// text. The last separator of the path is a backslash on every platform; a library on a platform
/// with another separator converts it before opening the file.
/// A negative result means that the firmware was not loaded, zero or positive that it was.
int16_t LoadFirmWare(const char *path);

/// Sends one vendor request to the adapter and returns when it has completed. For `direction` 1 the
/// `length` reply bytes are stored at `buffer` before the call returns; for direction 0 nothing is
/// written there.
/// A result of 0 means success, any other result failure.
int16_t VendorIORequest(int16_t request, int32_t value, int32_t index, int16_t direction,
                        int16_t length, uint8_t *buffer);
}
