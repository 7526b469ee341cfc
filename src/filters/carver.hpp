// Cutting a state's block of memory into its parts.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zvps {

constexpr int64_t roundUp(int64_t bytes, int64_t unit) {
    return (bytes + unit - 1) / unit * unit;
}

// Hands out parts of a block, each at the next address of its alignment.
class Carver {
  public:
    explicit Carver(unsigned char* begin) : begin_(begin) {}

    template <class T>
    T* take(int64_t count, size_t alignment = 16) {
        const auto address = reinterpret_cast<uintptr_t>(begin_);
        auto* const part = begin_ + (alignment - address % alignment) % alignment;
        begin_ = part + count * static_cast<int64_t>(sizeof(T));
        return reinterpret_cast<T*>(part);
    }

  private:
    unsigned char* begin_;
};

} // namespace zvps
