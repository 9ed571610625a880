#include "tests/faults/FailingMemory.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <new>

#include <link.h>

namespace {

// The address range of the program's code and of the standard library, which allocates for it.
struct TOwnCode {
    struct TRange {
        uintptr_t uFrom = 0, uTo = 0;
    };
    TRange aRanges[16];
    size_t nRanges = 0;

    TOwnCode() { dl_iterate_phdr(AddModule, this); }
    bool Has(const void* pCaller) const {
        const auto u = reinterpret_cast<uintptr_t>(pCaller);
        for (size_t idx = 0; idx < nRanges; ++idx)
            if (u >= aRanges[idx].uFrom && u < aRanges[idx].uTo) return true;
        return false;
    }

private:
    static int AddModule(dl_phdr_info* pInfo, size_t, void* pThis) {
        TOwnCode& code = *static_cast<TOwnCode*>(pThis);
        if (*pInfo->dlpi_name && !std::strstr(pInfo->dlpi_name, "libstdc++")) return 0;
        for (int n = 0; n < pInfo->dlpi_phnum && code.nRanges < std::size(code.aRanges); ++n) {
            const auto& header = pInfo->dlpi_phdr[n];
            if (header.p_type != PT_LOAD || !(header.p_flags & PF_X)) continue;
            const uintptr_t uFrom = pInfo->dlpi_addr + header.p_vaddr;
            code.aRanges[code.nRanges++] = {uFrom, uFrom + header.p_memsz};
        }
        return 0;
    }
};

const TOwnCode g_ownCode;

bool Fails(const void* pCaller) {
    if (!CFailingMemory::IsCounting()) return false;
    if (CFailingMemory::GetFailing().bOwn && !g_ownCode.Has(pCaller)) return false;
    return CFailingMemory::CountOne();
}

void* Take(size_t n, size_t nAlignment, const void* pCaller) {
    if (Fails(pCaller)) return nullptr;
    if (nAlignment <= alignof(std::max_align_t)) return std::malloc(n ? n : 1);
    return std::aligned_alloc(nAlignment, (n + nAlignment - 1) / nAlignment * nAlignment);
}

void* TakeOrThrow(size_t n, size_t nAlignment, const void* pCaller) {
    if (void* p = Take(n, nAlignment, pCaller)) return p;
    throw std::bad_alloc();
}

} // namespace

void* operator new(size_t n) { return TakeOrThrow(n, 1, __builtin_return_address(0)); }
void* operator new[](size_t n) { return TakeOrThrow(n, 1, __builtin_return_address(0)); }
void* operator new(size_t n, std::align_val_t nAlignment) {
    return TakeOrThrow(n, static_cast<size_t>(nAlignment), __builtin_return_address(0));
}
void* operator new[](size_t n, std::align_val_t nAlignment) {
    return TakeOrThrow(n, static_cast<size_t>(nAlignment), __builtin_return_address(0));
}
void* operator new(size_t n, const std::nothrow_t&) noexcept {
    return Take(n, 1, __builtin_return_address(0));
}
void* operator new[](size_t n, const std::nothrow_t&) noexcept {
    return Take(n, 1, __builtin_return_address(0));
}
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
