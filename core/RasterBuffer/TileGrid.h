// The tile pointers of a plane, which use memory only where there are tiles.
#pragma once

#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>

/// Pointers by block index, in pages that are allocated when their first tile is stored: an empty layer
/// costs little even on the largest canvas. Different entries may be used from different threads, even
/// while their common page is being allocated.
template <class Block>
class CTileGrid : boost::noncopyable {
public:
    using TBlockPtr = boost::shared_ptr<Block>;

    CTileGrid() = default;
    ~CTileGrid() { DropPages(); }

    /// Resets to an empty grid of `nCount` entries.
    void Create(size_t nCount) {
        std::unique_ptr<TPageSlot[]> pSlots(new TPageSlot[GetPages(nCount)]());
        DropPages();
        m_pSlots.swap(pSlots);
        m_nCount = nCount;
    }
    size_t GetCount() const { return m_nCount; }
    /// The entry, null where no tile was stored; not range-checked.
    const TBlockPtr& operator[](size_t i) const {
        const TPage* pPage = m_pSlots[i / PAGE].load(std::memory_order_acquire);
        return pPage ? (*pPage)[i % PAGE] : s_spNone;
    }
    /// The entry for writing; not range-checked.
    TBlockPtr& Entry(size_t i) {
        TPageSlot& slot = m_pSlots[i / PAGE];
        TPage* pPage = slot.load(std::memory_order_acquire);
        if (!pPage) {
            auto pNew = std::make_unique<TPage>();
            // Another thread may have stored its page first: then `pPage` is that page.
            if (slot.compare_exchange_strong(pPage, pNew.get(), std::memory_order_acq_rel))
                pPage = pNew.release();
        }
        return (*pPage)[i % PAGE];
    }
    /// Releases every tile, the last first, and all pages.
    void DropPages() {
        for (size_t n = GetPages(m_nCount); n-- > 0;) {
            const std::unique_ptr<TPage> pPage(m_pSlots[n].exchange(nullptr));
            for (size_t i = PAGE; pPage && i-- > 0;) (*pPage)[i].reset();
        }
    }
    /// Calls `fn(index, tile)` for every tile, in ascending order.
    template <class Function>
    void ForEachTile(Function fn) const {
        for (size_t n = 0; n < GetPages(m_nCount); ++n) {
            const TPage* pPage = m_pSlots[n].load(std::memory_order_acquire);
            for (size_t i = 0; pPage && i < PAGE; ++i)
                if ((*pPage)[i]) fn(n * PAGE + i, (*pPage)[i]);
        }
    }

private:
    static constexpr size_t PAGE = 128;
    using TPage = std::array<TBlockPtr, PAGE>;
    using TPageSlot = std::atomic<TPage*>;

    static size_t GetPages(size_t nCount) { return (nCount + PAGE - 1) / PAGE; }
    static inline const TBlockPtr s_spNone;

    std::unique_ptr<TPageSlot[]> m_pSlots;
    size_t m_nCount = 0;
};
