#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>

/// What the fuzzer calls: once at the start, and with every input.
extern "C" int LLVMFuzzerInitialize(int *argumentCount, char ***arguments);
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace ztm::fuzz {

inline std::string_view TextOf(const uint8_t *data, size_t size) {
    return {reinterpret_cast<const char *>(data), size};
}

/// Ends the run, with the input kept by the fuzzer, unless the property holds.
inline void Require(bool holds, const char *property) {
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", property);
        std::abort();
    }
}

/// A file in memory that has a path, and the given bytes.
class MemoryFile {
public:
    explicit MemoryFile(std::string_view bytes = {}) : file(memfd_create("fuzz", MFD_CLOEXEC)) {
        Require(file >= 0 &&
                    write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()),
                "a file in memory can be made");
    }
    ~MemoryFile() { close(file); }
    MemoryFile(const MemoryFile &) = delete;
    MemoryFile &operator=(const MemoryFile &) = delete;

    std::string Path() const { return "/proc/self/fd/" + std::to_string(file); }

private:
    int file;
};

} // namespace ztm::fuzz
