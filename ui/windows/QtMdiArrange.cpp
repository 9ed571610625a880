#include "ui/windows/QtMdiArrange.h"

#include <algorithm>

std::vector<QRect> CascadeRects(QSize szArea, int nCount, int nStep) {
    const QSize szChild(szArea.width() * 3 / 4, szArea.height() * 3 / 4);
    const int nRoom = std::min(szArea.width() - szChild.width(), szArea.height() - szChild.height());
    const int nPerRun = std::max(1, nRoom / std::max(1, nStep) + 1);
    std::vector<QRect> vRects;
    for (int i = 0; i < nCount; ++i) {
        const int nOffset = i % nPerRun * nStep;
        vRects.emplace_back(QPoint(nOffset, nOffset), szChild);
    }
    return vRects;
}

std::vector<QRect> TileRects(QSize szArea, int nCount, bool bStacked) {
    // Computed as stacked; side by side is the same with the axes exchanged.
    const QSize sz = bStacked ? szArea : szArea.transposed();
    int nColumns = 1;
    while ((nColumns + 1) * (nColumns + 1) <= nCount) ++nColumns;
    std::vector<QRect> vRects;
    for (int nColumn = 0; nColumn < nColumns; ++nColumn) {
        // Columns to the right take the remainder of the division.
        const int nRows = nCount / nColumns + (nColumn >= nColumns - nCount % nColumns ? 1 : 0);
        const int nLeft = sz.width() * nColumn / nColumns;
        const int nRight = sz.width() * (nColumn + 1) / nColumns;
        for (int nRow = 0; nRow < nRows; ++nRow) {
            const int nTop = sz.height() * nRow / nRows;
            const int nBottom = sz.height() * (nRow + 1) / nRows;
            const QRect rc(nLeft, nTop, nRight - nLeft, nBottom - nTop);
            vRects.push_back(bStacked ? rc : QRect(rc.y(), rc.x(), rc.height(), rc.width()));
        }
    }
    return vRects;
}
