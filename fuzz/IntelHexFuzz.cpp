#include "Fuzz.h"

#include "adapter/firmware/IntelHex.h"

#include <algorithm>
#include <array>
#include <sstream>

using namespace ztm;
using namespace ztm::fuzz;

namespace {

constexpr size_t bytesPerRecord = 16;

/// A record of the format, with its checksum.
std::string Record(uint32_t offset, unsigned type, const uint8_t *data, size_t count) {
    std::string record{static_cast<char>(count), static_cast<char>(offset >> 8U),
                       static_cast<char>(offset), static_cast<char>(type)};
    record.append(reinterpret_cast<const char *>(data), count);
    unsigned sum = 0;
    std::string line = ":";
    const auto append = [&line](unsigned byte) {
        for (const unsigned digit : {byte >> 4U, byte & 15U}) {
            line += "0123456789ABCDEF"[digit];
        }
    };
    for (const char byte : record) {
        sum += static_cast<uint8_t>(byte);
        append(static_cast<uint8_t>(byte));
    }
    append((0x100U - sum) & 0xFFU);
    return line + '\n';
}

std::string HexFile(const std::vector<HexBlock> &blocks) {
    std::string file;
    for (const HexBlock &block : blocks) {
        for (size_t done = 0; done < block.data.size();) {
            const uint32_t address = block.address + static_cast<uint32_t>(done);
            const std::array<uint8_t, 2> base{static_cast<uint8_t>(address >> 24U),
                                              static_cast<uint8_t>(address >> 16U)};
            const uint32_t offset = address & 0xFFFFU;
            const size_t count = std::min(
                {bytesPerRecord, block.data.size() - done, static_cast<size_t>(0x10000U - offset)});
            file += Record(0, 4, base.data(), base.size());
            file += Record(offset, 0, block.data.data() + done, count);
            done += count;
        }
    }
    return file + ":00000001FF\n";
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int * /*argumentCount*/, char *** /*arguments*/) {
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    std::istringstream file{std::string(TextOf(data, size))};
    std::string whyNot;
    const auto blocks = ReadIntelHex(file, &whyNot);
    Require(blocks.has_value() == whyNot.empty(), "a refused file has a reason");
    if (!blocks) {
        return 0;
    }
    uint64_t end = 0;
    for (const HexBlock &block : *blocks) {
        Require(!block.data.empty(), "no empty block");
        Require(&block == blocks->data() || block.address > end, "in order, joined, no overlap");
        end = uint64_t{block.address} + block.data.size();
        Require(end <= uint64_t{1} << 32U, "within 32 bits");
    }
    std::istringstream again{HexFile(*blocks)};
    Require(ReadIntelHex(again) == blocks, "the same data written anew are read the same");
    return 0;
}
