#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace ztm {

/// Ring buffer of the newest `capacity` elements, indexed from the first one ever added. Memory is
/// allocated in chunks as it fills, and no more once it is full.
template <class T>
class Ring {
public:
    /// `capacity` must be a power of two and at least one chunk.
    explicit Ring(uint64_t capacity) : mask(capacity - 1), chunks(capacity / chunkSize) {}

    T &Put(uint64_t index) {
        auto &chunk = chunks[(index & mask) / chunkSize];
        if (!chunk) {
            chunk = std::make_unique<T[]>(chunkSize);
            ++allocated;
        }
        return chunk[index % chunkSize];
    }

    const T &operator[](uint64_t index) const {
        return chunks[(index & mask) / chunkSize][index % chunkSize];
    }

    uint64_t Capacity() const { return mask + 1; }
    size_t Bytes() const { return allocated * chunkSize * sizeof(T) + chunks.size() * sizeof(T *); }

    void Clear() {
        for (auto &chunk : chunks) {
            chunk.reset();
        }
        allocated = 0;
    }

private:
    static constexpr uint64_t chunkSize = 256;

    uint64_t mask;
    std::vector<std::unique_ptr<T[]>> chunks;
    size_t allocated = 0;
};

} // namespace ztm
