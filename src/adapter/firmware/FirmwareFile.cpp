#include "adapter/firmware/FirmwareFile.h"

#include "common/WholeFile.h"

#include <sstream>

namespace ztm {

std::string NativePath(std::string path) {
    const size_t lastSeparator = path.find_last_of("/\\");
    if (lastSeparator != std::string::npos) {
        path[lastSeparator] = '/';
    }
    return path;
}

std::optional<std::vector<HexBlock>> ReadFirmwareFile(const std::string &path,
                                                      std::string &whyNot) {
    const auto bytes = ReadFile(path, whyNot);
    if (!bytes) {
        return std::nullopt;
    }
    std::istringstream file(*bytes);
    return ReadIntelHex(file, &whyNot);
}

} // namespace ztm
