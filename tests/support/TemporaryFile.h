#pragma once

#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <unistd.h>

namespace ztm::test {

/// A folder of its own for the files of a test, gone with everything in it at the end.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string pattern = std::filesystem::temp_directory_path() / "ztm-test-XXXXXX";
        folder = mkdtemp(pattern.data());
    }
    ~TemporaryFolder() { std::filesystem::remove_all(folder); }
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;

    /// The path of a file in it, which need not exist.
    std::string Path(const std::string &name) const { return folder / name; }

    /// Writes a file and returns its path.
    std::string Put(const std::string &name, const std::string &bytes) const {
        std::ofstream(Path(name), std::ios::binary) << bytes;
        return Path(name);
    }

private:
    std::filesystem::path folder;
};

/// Every byte of a file; empty when there is none.
inline std::string BytesOf(const std::string &path) {
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return bytes.str();
}

/// No file of this process grows beyond `bytes` while it lives.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit limit{bytes, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
        std::signal(SIGXFSZ, SIG_IGN);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, SIG_DFL);
    }
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;

private:
    rlimit before{};
};

} // namespace ztm::test
