// A bitmap in memory whose locks can be made to fail.
#pragma once

#include "core/Base/Color.h"
#include "core/Platform/Bitmap.h"

#include <vector>

class CMemoryBitmap : public IBitmap {
public:
    explicit CMemoryBitmap(CSize sz)
        : m_vBytes(static_cast<size_t>(sz.cx) * static_cast<size_t>(sz.cy) * 4), m_size(sz) {}

    bool GetWidth(int32_t& n) override { return n = m_size.cx, true; }
    bool GetHeight(int32_t& n) override { return n = m_size.cy, true; }
    bool LockBits(const CRect& rc, ELockMode, TLockedBits& bits) override {
        if (m_bFailLocks) return false;
        bits = {At(rc.left, rc.top), m_size.cx * 4};
        return true;
    }
    bool UnlockBits() override { return true; }

    void SetPixel(int x, int y, TColor color, uint8_t uAlpha) {
        uint8_t* p = At(x, y);
        p[0] = BlueOf(color);
        p[1] = GreenOf(color);
        p[2] = RedOf(color);
        p[3] = uAlpha;
    }

    std::vector<uint8_t> m_vBytes; ///< B, G, R, A
    bool m_bFailLocks = false;

private:
    uint8_t* At(int x, int y) { return m_vBytes.data() + (static_cast<ptrdiff_t>(y) * m_size.cx + x) * 4; }

    CSize m_size;
};
