#include "adapter/firmware/FirmwareFile.h"

#include "common/RegularFile.h"

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
    std::ifstream file = OpenRegularFile(path);
    if (!file.is_open()) {
        whyNot = "cannot be opened";
        return std::nullopt;
    }
    return ReadIntelHex(file, &whyNot);
}

} // namespace ztm
