// Memory for one vector between protected pages.
#pragma once

#include <cstddef>

namespace zvps::test {

class Arena {
  public:
    // Room for vectors of up to `capacity` bytes.
    explicit Arena(size_t capacity);
    ~Arena();
    Arena(const Arena&) = delete;
    Arena& operator=(const Arena&) = delete;

    // A place of so many bytes that ends `gap` bytes before the protected page behind it, or starts as far from that
    // before it. Its contents are undefined.
    unsigned char* atEnd(size_t bytes, size_t gap = 0);
    unsigned char* atStart(size_t bytes, size_t gap = 0);

    // Whether the bytes beside the last place are as they were.
    bool isIntact() const;

  private:
    unsigned char* place(unsigned char* start, size_t bytes);

    unsigned char* pages_;
    size_t capacity_;
    unsigned char* start_;
    unsigned char* end_;
};

} // namespace zvps::test
