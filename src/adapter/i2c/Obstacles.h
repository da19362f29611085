#pragma once

#include <string>

namespace ztm::i2c {

/// What stands in the way of using a bus, in words, with the command that cures it if there is one.
/// Errors are errno values.

std::string NothingListed();
std::string CannotOpen(int number, int error);
std::string NoByteData(int number);
std::string CannotClaim(int number, int address, int error);
std::string HasLeft(int number);

/// What went wrong with a transfer.
std::string TransferFault(int error);

/// "i2c-7, address 0x2C"
std::string PlaceText(int number, int address);

} // namespace ztm::i2c
