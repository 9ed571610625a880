#include "tests/faults/FailingMemory.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

thread_local bool t_bCounts = false;
thread_local int t_nPaused = 0;
thread_local uint64_t t_uCount = 0;
thread_local uint64_t t_uFail = 0;

void* Take(size_t n, size_t nAlignment) {
    if (t_bCounts && t_nPaused == 0 && ++t_uCount == t_uFail) return nullptr;
    if (nAlignment <= alignof(std::max_align_t)) return std::malloc(n ? n : 1);
    return std::aligned_alloc(nAlignment, (n + nAlignment - 1) / nAlignment * nAlignment);
}

void* TakeOrThrow(size_t n, size_t nAlignment) {
    if (void* p = Take(n, nAlignment)) return p;
    throw std::bad_alloc();
}

} // namespace

CFailingMemory::CFailingMemory(uint64_t uFail) {
    t_uCount = 0;
    t_uFail = uFail;
    t_bCounts = true;
}
CFailingMemory::~CFailingMemory() { t_bCounts = false; }
uint64_t CFailingMemory::GetCount() { return t_uCount; }

CUnfailingMemory::CUnfailingMemory() { ++t_nPaused; }
CUnfailingMemory::~CUnfailingMemory() { --t_nPaused; }

void* operator new(size_t n) { return TakeOrThrow(n, 1); }
void* operator new[](size_t n) { return TakeOrThrow(n, 1); }
void* operator new(size_t n, std::align_val_t nAlignment) {
    return TakeOrThrow(n, static_cast<size_t>(nAlignment));
}
void* operator new[](size_t n, std::align_val_t nAlignment) {
    return TakeOrThrow(n, static_cast<size_t>(nAlignment));
}
void* operator new(size_t n, const std::nothrow_t&) noexcept { return Take(n, 1); }
void* operator new[](size_t n, const std::nothrow_t&) noexcept { return Take(n, 1); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, size_t) noexcept { std::free(p); }
void operator delete[](void* p, size_t) noexcept { std::free(p); }
void operator delete(void* p, std::align_val_t) noexcept { std::free(p); }
void operator delete[](void* p, std::align_val_t) noexcept { std::free(p); }
void operator delete(void* p, size_t, std::align_val_t) noexcept { std::free(p); }
void operator delete[](void* p, size_t, std::align_val_t) noexcept { std::free(p); }
void operator delete(void* p, const std::nothrow_t&) noexcept { std::free(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { std::free(p); }
