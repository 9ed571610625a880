#include "core/RasterBuffer/SelectBuffer.h"

#include <algorithm>
#include <vector>

namespace {

constexpr uint8_t INSIDE = 128; ///< coverage from which a pixel lies inside the outline

// Reads the mask row by row, one pixel of nothing around it.
class CMaskRows {
public:
    CMaskRows(const CAlphaBufferImpl<uint8_t>& mask, CSize sz) : m_mask(mask), m_size(sz) {}

    // The row's values with a 0 before and after.
    void Read(int32_t y, std::vector<uint8_t>& vRow) const {
        vRow.assign(static_cast<size_t>(m_size.cx) + 2, 0);
        if (y < 0 || y >= m_size.cy) return;
        const int32_t nBlock = m_mask.GetBlockSize().cx;
        for (int32_t x = 0; x < m_size.cx; x += nBlock) {
            const CAlphaBlock8* pTile = m_mask.FindBlock({x, y});
            if (!pTile) continue;
            const uint8_t* pRow = pTile->GetPixelPtr({0, y - pTile->GetPosition().y});
            std::copy_n(pRow, std::min(nBlock, m_size.cx - x), vRow.begin() + x + 1);
        }
    }

private:
    const CAlphaBufferImpl<uint8_t>& m_mask;
    CSize m_size;
};

} // namespace

CSelectBuffer::CSelectBuffer(CSize szCanvas)
    : m_spMask(boost::make_shared<CAlphaBufferImpl<uint8_t>>()), m_szCanvas(szCanvas) {
    m_spMask->Create(szCanvas, DEFAULT_BLOCKSIZE);
}

void CSelectBuffer::UpdateOutline() {
    m_lstOutline.clear();
    CRect rcBound;
    const CMaskRows rows(*m_spMask, m_szCanvas);
    std::vector<uint8_t> vAbove;
    std::vector<uint8_t> vRow;
    rows.Read(-1, vAbove);
    // Where the vertical piece left of each column began, -1 for none.
    std::vector<int32_t> vBegin(static_cast<size_t>(m_szCanvas.cx) + 1, -1);
    for (int32_t y = 0; y <= m_szCanvas.cy; ++y) {
        rows.Read(y, vRow);
        const auto isInside = [](uint8_t u) { return u >= INSIDE; };
        int32_t nRun = -1; // where the horizontal piece above this row began
        for (int32_t x = 0; x <= m_szCanvas.cx; ++x) {
            const size_t i = static_cast<size_t>(x) + 1; // pixel x
            // A piece ends where the sides change their roles, so that it never crosses a corner.
            const bool bEdge = x < m_szCanvas.cx && isInside(vAbove[i]) != isInside(vRow[i]);
            if (nRun >= 0 && (!bEdge || isInside(vRow[i]) != isInside(vRow[i - 1]))) {
                m_lstOutline.push_back({nRun, y, x, y});
                nRun = -1;
            }
            if (bEdge && nRun < 0) nRun = x;
            int32_t& nBegin = vBegin[static_cast<size_t>(x)];
            const bool bSide = isInside(vRow[i - 1]) != isInside(vRow[i]);
            if (nBegin >= 0 && (!bSide || isInside(vRow[i]) != isInside(vAbove[i]))) {
                m_lstOutline.push_back({x, nBegin, x, y});
                nBegin = -1;
            }
            if (bSide && nBegin < 0) nBegin = y;
        }
        const auto isSet = [](uint8_t u) { return u != 0; };
        const auto first = std::find_if(vRow.begin(), vRow.end(), isSet);
        if (first != vRow.end()) {
            const auto last = std::find_if(vRow.rbegin(), vRow.rend(), isSet).base();
            rcBound = rcBound.Union({static_cast<int32_t>(first - vRow.begin()) - 1, y,
                                     static_cast<int32_t>(last - vRow.begin()) - 1, y + 1});
        }
        vAbove.swap(vRow);
    }
    m_rcBound = rcBound.IsEmpty() ? CRect(-1, -1, -1, -1) : rcBound;
}
