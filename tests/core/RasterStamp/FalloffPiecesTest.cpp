#include "core/RasterStamp/FalloffPieces.h"

#include "tests/support/TargetTest.h"

using FalloffPieces = CTargetTest;

TEST_P(FalloffPieces, AreTheSameToTheBit) {
    struct TEdge {
        double dInner;
        size_t nWidth; // half cells
    };
    // From the centre on, beside it, behind a core, wide as the largest brush's.
    for (const TEdge edge : {TEdge{0, 2000}, {1, 1500}, {37, 641}, {900, 2500}, {0, 23998}}) {
        const auto dOuter = edge.dInner + static_cast<double>(edge.nWidth);
        const double dRate = 3.6f / static_cast<float>(edge.nWidth);
        const TFalloff falloff{edge.dInner, -0.5 * (dRate * dRate)};
        const double dInner2 = edge.dInner * edge.dInner;
        CFalloffPieces pieces(falloff, static_cast<uint64_t>(dInner2),
                              static_cast<uint64_t>(dOuter * dOuter));
        for (size_t nRow = 0; nRow < edge.nWidth / 3; nRow += 1 + nRow / 8) {
            const double y = static_cast<double>(2 * nRow + 1);
            const auto limit = [&](double dSquare) {
                return static_cast<size_t>((std::sqrt(std::max(dSquare - y * y, 0.0)) + 1) / 2);
            };
            const size_t nFirst = std::max(limit(dInner2), nRow);
            const size_t nCount = limit(dOuter * dOuter) - nFirst;
            std::vector<uint16_t> vExpected(nCount);
            PlainStampKernels().pFalloff(vExpected.data(), nFirst, nCount, nRow, falloff);
            std::vector<uint16_t> vCells(nCount + CELL_MARGIN);
            pieces.SetRow(nRow);
            pieces.Fill(vCells.data(), nFirst, nFirst + nCount, falloff);
            vCells.resize(nCount);
            ASSERT_EQ(vCells, vExpected) << edge.dInner << ' ' << edge.nWidth << ' ' << nRow;
        }
    }
}

ON_EVERY_TARGET(FalloffPieces);
