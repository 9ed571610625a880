#include "bench/PeakMemory.h"

#include <atomic>
#include <cstdlib>
#include <new>

#include <malloc.h>

namespace {

std::atomic<size_t> s_nNow{0};
std::atomic<size_t> s_nPeak{0};

void* Take(size_t n) {
    void* p = std::malloc(n);
    if (!p) throw std::bad_alloc();
    const size_t nNow = s_nNow += malloc_usable_size(p);
    if (nNow > s_nPeak) s_nPeak = nNow;
    return p;
}

void Give(void* p) {
    s_nNow -= malloc_usable_size(p);
    std::free(p);
}

} // namespace

CPeakMemory::CPeakMemory() : m_nBefore(s_nNow) { s_nPeak = m_nBefore; }
size_t CPeakMemory::Get() const { return s_nPeak - m_nBefore; }

void* operator new(size_t n) { return Take(n); }
void* operator new[](size_t n) { return Take(n); }
void operator delete(void* p) noexcept { Give(p); }
void operator delete[](void* p) noexcept { Give(p); }
void operator delete(void* p, size_t) noexcept { Give(p); }
void operator delete[](void* p, size_t) noexcept { Give(p); }
