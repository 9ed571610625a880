#include "core/PathFit/CellGrid.h"

namespace {

constexpr double MOST_CELLS = 256; ///< in a row or column
/// Numbers in all cells: of a few boxes, and for each of many.
constexpr double LEAST_ENTRIES = 4096;
constexpr double MOST_ENTRIES = 32;

} // namespace

CCellGrid::CCellGrid(const std::vector<TInkBox>& vBoxes, double dCell) : m_dCell(dCell) {
    TInkBox all = vBoxes.empty() ? TInkBox{} : vBoxes.front();
    for (const TInkBox& box : vBoxes) all = all.Union(box);
    const double dWidth = all.high.x - all.low.x, dHeight = all.high.y - all.low.y;
    m_ptLow = all.low;
    m_dCell = std::max(m_dCell, std::max(dWidth, dHeight) / MOST_CELLS);
    // Long boxes that touch many cells each are better found in few large ones.
    const auto countCells = [&] {
        const double dInverse = 1 / m_dCell;
        double dCells = 0;
        for (const TInkBox& box : vBoxes)
            dCells += ((box.high.x - box.low.x) * dInverse + 1) * ((box.high.y - box.low.y) * dInverse + 1);
        return dCells;
    };
    while (countCells() > LEAST_ENTRIES + MOST_ENTRIES * static_cast<double>(vBoxes.size())) m_dCell *= 2;
    m_dInverse = 1 / m_dCell;
    m_nWidth = static_cast<size_t>(dWidth * m_dInverse) + 1;
    m_nHeight = static_cast<size_t>(dHeight * m_dInverse) + 1;
    m_vStarts.assign(m_nWidth * m_nHeight + 1, 0);
    const auto forEachCell = [&](const TInkBox& box, auto fn) {
        const auto [x0, y0] = CellAt(box.low);
        const auto [x1, y1] = CellAt(box.high);
        for (size_t y = y0; y <= y1; ++y)
            for (size_t x = x0; x <= x1; ++x) fn(y * m_nWidth + x);
    };
    for (const TInkBox& box : vBoxes) forEachCell(box, [&](size_t cell) { ++m_vStarts[cell + 1]; });
    for (size_t i = 1; i < m_vStarts.size(); ++i) m_vStarts[i] += m_vStarts[i - 1];
    m_vNumbers.resize(m_vStarts.back());
    std::vector<uint32_t> vNext(m_vStarts.begin(), m_vStarts.end() - 1);
    for (uint32_t n = 0; n < vBoxes.size(); ++n)
        forEachCell(vBoxes[n], [&](size_t cell) { m_vNumbers[vNext[cell]++] = n; });
}

CCellGrid::TCell CCellGrid::CellAt(TInkVector pt) const {
    const auto at = [&](double d, size_t nCount) {
        const double n = d * m_dInverse;
        return n <= 0 ? size_t{0} : std::min(static_cast<size_t>(std::min(n, MOST_CELLS * 2)), nCount - 1);
    };
    return {at(pt.x - m_ptLow.x, m_nWidth), at(pt.y - m_ptLow.y, m_nHeight)};
}
