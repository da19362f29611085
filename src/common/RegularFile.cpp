#include "common/RegularFile.h"

#include <filesystem>
#include <system_error>

namespace ztm {

std::ifstream OpenRegularFile(const std::string &path) {
    std::ifstream file;
    std::error_code ignored;
    if (std::filesystem::is_regular_file(path, ignored)) {
        file.open(path, std::ios::binary);
    }
    return file;
}

} // namespace ztm
