#include "framework/arena.hpp"

#include <sys/mman.h>

#include <algorithm>
#include <new>

namespace zvps::test {

namespace {
constexpr size_t kPage = 4096;
constexpr unsigned char kPattern = 0xC5;
// As many bytes beside a place are watched.
constexpr ptrdiff_t kWatched = 256;
} // namespace

Arena::Arena(size_t capacity) : capacity_((capacity + kPage) / kPage * kPage) {
    void* const mapped = mmap(nullptr, capacity_ + 2 * kPage, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED) throw std::bad_alloc();
    pages_ = static_cast<unsigned char*>(mapped);
    if (mprotect(pages_ + kPage, capacity_, PROT_READ | PROT_WRITE) != 0) throw std::bad_alloc();
    start_ = end_ = pages_ + kPage;
}

Arena::~Arena() {
    munmap(pages_, capacity_ + 2 * kPage);
}

unsigned char* Arena::atEnd(size_t bytes, size_t gap) {
    return place(pages_ + kPage + capacity_ - gap - bytes, bytes);
}

unsigned char* Arena::atStart(size_t bytes, size_t gap) {
    return place(pages_ + kPage + gap, bytes);
}

unsigned char* Arena::place(unsigned char* start, size_t bytes) {
    start_ = start;
    end_ = start + bytes;
    std::fill(start_ - std::min(kWatched, start_ - pages_ - static_cast<ptrdiff_t>(kPage)), start_, kPattern);
    std::fill(end_, end_ + std::min(kWatched, pages_ + kPage + capacity_ - end_), kPattern);
    return start_;
}

bool Arena::isIntact() const {
    const auto isPattern = [](unsigned char c) { return c == kPattern; };
    return std::all_of(start_ - std::min(kWatched, start_ - pages_ - static_cast<ptrdiff_t>(kPage)), start_,
                       isPattern) &&
           std::all_of(end_, end_ + std::min(kWatched, pages_ + kPage + capacity_ - end_), isPattern);
}

} // namespace zvps::test
