#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>

namespace ztm::fuzz {

/// What each fuzzer does with every input.
void Try(std::string_view text);

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

/// The fuzzer calls this. It is no inline function, as each program has this header once and
/// nothing but the fuzzer's library asks for it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    ztm::fuzz::Try({reinterpret_cast<const char *>(data), size});
    return 0;
}
