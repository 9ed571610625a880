#include "core/RasterTransform/TransformRender.h"

#include "core/RasterKernel/SampleKernel.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

constexpr int32_t AFTER = SAMPLE_TAPS - SAMPLE_BEFORE - 1;
/// Prepared pixels of a part of a block, as many as the processor's cache holds.
constexpr int64_t MOST_PREPARED = 128 * 1024;
constexpr double FAR_AWAY = 1e9;
constexpr int32_t LEAST_SIDE = 12; ///< parts become no smaller
/// Positions in each direction for a pixel. Beyond, the picture is shrunk to a stamp.
constexpr double MOST_POSITIONS = 64;
/// So much shrinking in a direction needs no further positions.
constexpr double SLACK = 0.125;

// The buffers of a thread: a block needs so many pages that getting them each time would take longer than
// the sampling.
struct TScratch {
    CSourceWindow window;
    std::vector<int32_t> vX, vY;
    std::vector<int16_t> vSamples, vRows;
    std::vector<uint16_t> vCover;
};

class CBlockRender {
public:
    CBlockRender(const TTransformSource& source, const CTransformMap& map, CRasterBlockBuffer& tile,
                 TScratch& scratch)
        : m_source(source), m_map(map), m_tile(tile), m_nChannels(CountPlanes(tile)), m_scratch(scratch) {}

    void Move(const CRect& rc, const TPixelMove& move);
    void Resample(const CRect& rc);

private:
    struct TPart {
        CRect rc;
        int32_t nAcross, nDown; ///< positions for a pixel
        CRect rcWindow;         ///< the source's pixels that are needed
    };

    TPart MeasurePart(const CRect& rc) const;
    void SamplePart(const TPart& part);
    void SampleLine(const TPart& part, double y, int16_t* pDest);
    void FinishLine(const TPart& part, int32_t y, const int16_t* pSamples, bool bCovered);
    uint8_t* PixelPtr(CPoint pt, size_t nChannel) const {
        return m_tile.GetPixelPtr(pt - m_tile.GetPosition()) + nChannel * m_tile.GetPlaneBytes();
    }

    const TTransformSource& m_source;
    const CTransformMap& m_map;
    CRasterBlockBuffer& m_tile;
    size_t m_nChannels;
    TScratch& m_scratch;
};

int32_t PositionsFor(double dStep) {
    return static_cast<int32_t>(std::clamp(std::ceil(dStep - SLACK), 1.0, MOST_POSITIONS));
}

double LengthOf(TPosition pt) { return std::sqrt(pt.x * pt.x + pt.y * pt.y); }

// Pixels on each side that the filter of a reduction reaches over.
int32_t ReachOf(int32_t nPositions) { return nPositions == 1 ? 0 : REDUCE_REACH; }

void CBlockRender::Move(const CRect& rc, const TPixelMove& move) {
    const CPoint a = move(rc.TopLeft()), b = move({rc.right - 1, rc.bottom - 1});
    const CRect rcFrom(std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x) + 1,
                       std::max(a.y, b.y) + 1);
    if (!m_source.HasTiles(rcFrom)) return;
    m_scratch.window.Read(m_source, rcFrom, m_nChannels);
    const ptrdiff_t nStep = move.ptRight.x + ptrdiff_t{move.ptRight.y} * rcFrom.Width();
    for (size_t n = 0; n < m_nChannels; ++n)
        for (int32_t y = rc.top; y < rc.bottom; ++y) {
            const CPoint ptFrom = move({rc.left, y}) - rcFrom.TopLeft();
            const uint8_t* pFrom =
                m_scratch.window.GetPlane(n) + ptFrom.x + ptrdiff_t{ptFrom.y} * rcFrom.Width();
            uint8_t* pTo = PixelPtr({rc.left, y}, n);
            for (int32_t x = 0; x < rc.Width(); ++x, pFrom += nStep) pTo[x] = *pFrom;
        }
}

CBlockRender::TPart CBlockRender::MeasurePart(const CRect& rc) const {
    TPart part{rc, 1, 1, {}};
    // If the directions across and down are nearly the same in the source, a reduction across has removed
    // most of the detail that one down would have to, and the other way round.
    double dAcross = 0, dDown = 0, dAcrossRest = 0, dDownRest = 0;
    const TPosition ptMiddle{(rc.left + rc.right) / 2.0, (rc.top + rc.bottom) / 2.0};
    const TQuad quad = QuadOf(rc);
    for (const TPosition& pt : {quad[0], quad[1], quad[2], quad[3], ptMiddle}) {
        double dDepth;
        m_map.MapBack(pt, dDepth);
        if (dDepth < LEAST_DIVISOR) continue;
        const auto [right, down] = m_map.GetSteps(pt);
        const double dRight = LengthOf(right), dLow = LengthOf(down);
        const double dArea = std::abs(Cross(right, down));
        const double dAlong = std::abs(right.x * down.x + right.y * down.y);
        dAcross = std::max(dAcross, dRight);
        dDown = std::max(dDown, dLow);
        dAcrossRest = std::max(dAcrossRest, std::min(dRight, (dArea + dAlong / dLow) / dLow));
        dDownRest = std::max(dDownRest, std::min(dLow, (dArea + dAlong / dRight) / dRight));
    }
    const std::array across{PositionsFor(dAcross), PositionsFor(dDownRest)};
    const std::array down{PositionsFor(dAcrossRest), PositionsFor(dDown)};
    const auto& best = across[0] * across[1] <= down[0] * down[1] ? across : down;
    part.nAcross = best[0];
    part.nDown = best[1];
    const int32_t nX = ReachOf(part.nAcross), nY = ReachOf(part.nDown);
    double l = m_source.rc.right, t = m_source.rc.bottom, r = m_source.rc.left, b = m_source.rc.top;
    for (const TPosition& pt : QuadOf({rc.left - nX, rc.top - nY, rc.right + nX, rc.bottom + nY})) {
        double dDepth;
        const TPosition from = m_map.MapBack(pt, dDepth);
        if (dDepth < LEAST_DIVISOR) { // the rectangle's image has no bounds
            l = t = -FAR_AWAY, r = b = FAR_AWAY;
            break;
        }
        l = std::min(l, from.x), r = std::max(r, from.x);
        t = std::min(t, from.y), b = std::max(b, from.y);
    }
    // A position's pixel lies at most so far outside that all its taps are the same.
    const auto low = [](double d, int32_t nLow, int32_t nHigh) {
        return static_cast<int32_t>(std::floor(std::clamp<double>(d - 1, nLow - AFTER, nHigh + 1)));
    };
    const CRect& rcAll = m_source.rc;
    part.rcWindow = {
        low(l, rcAll.left, rcAll.right) - SAMPLE_BEFORE, low(t, rcAll.top, rcAll.bottom) - SAMPLE_BEFORE,
        low(r + 1, rcAll.left, rcAll.right) + AFTER + 1, low(b + 1, rcAll.top, rcAll.bottom) + AFTER + 1};
    return part;
}

void CBlockRender::Resample(const CRect& rc) {
    if (rc.IsEmpty() || m_map.Holds(rc) == false) return;
    const TPart part = MeasurePart(rc);
    const CRect& rcWindow = part.rcWindow;
    if (int64_t{rcWindow.Width()} * rcWindow.Height() > MOST_PREPARED &&
        std::max(rc.Width(), rc.Height()) > LEAST_SIDE) {
        CRect rcFirst = rc, rcSecond = rc;
        if (rc.Width() >= rc.Height())
            rcFirst.right = rcSecond.left = rc.left + rc.Width() / 2;
        else
            rcFirst.bottom = rcSecond.top = rc.top + rc.Height() / 2;
        Resample(rcFirst);
        Resample(rcSecond);
    } else if (m_source.HasTiles(rcWindow)) {
        SamplePart(part);
    }
}

// Samples all positions of a line of pixels, and reduces them to the pixels.
void CBlockRender::SampleLine(const TPart& part, double y, int16_t* pDest) {
    const int32_t nReach = ReachOf(part.nAcross);
    const auto nCount = static_cast<size_t>((part.rc.Width() + 2 * nReach) * part.nAcross);
    m_scratch.vX.resize(nCount);
    m_scratch.vY.resize(nCount);
    const CRect& rcAll = m_source.rc;
    const CRect& rcWindow = part.rcWindow;
    TSampleLine line = m_map.GetLine(y);
    line.dFirst = part.rc.left - nReach;
    line.dStep = 1.0 / part.nAcross;
    // To the centres of the window's pixels.
    line.dAcross = rcAll.left - rcWindow.left - 0.5;
    line.dDown = rcAll.top - rcWindow.top - 0.5;
    line.dLow = rcAll.left - AFTER - rcWindow.left;
    line.dLowDown = rcAll.top - AFTER - rcWindow.top;
    line.dHigh = rcAll.right + 1 - rcWindow.left;
    line.dHighDown = rcAll.bottom + 1 - rcWindow.top;
    line.pX = m_scratch.vX.data();
    line.pY = m_scratch.vY.data();
    line.nCount = nCount;
    SampleKernels().pLocate(line);
    const bool bReduce = part.nAcross > 1;
    if (bReduce) m_scratch.vSamples.resize(nCount * m_nChannels);
    SampleRow({m_scratch.window.GetPrepared(), part.rcWindow.Width() * static_cast<ptrdiff_t>(m_nChannels),
               m_scratch.vX.data(), m_scratch.vY.data(), nCount, bReduce ? m_scratch.vSamples.data() : pDest},
              m_nChannels);
    if (!bReduce) return;
    ReduceAcross(pDest, m_scratch.vSamples.data(), part.nAcross, m_nChannels,
                 static_cast<size_t>(part.rc.Width()));
}

void CBlockRender::FinishLine(const TPart& part, int32_t y, const int16_t* pSamples, bool bCovered) {
    uint8_t* apPlanes[4];
    for (size_t n = 0; n < m_nChannels; ++n) apPlanes[n] = PixelPtr({part.rc.left, y}, n);
    const auto nCount = static_cast<size_t>(part.rc.Width());
    if (!bCovered) {
        m_scratch.vCover.resize(nCount);
        for (size_t i = 0; i < nCount; ++i)
            m_scratch.vCover[i] =
                static_cast<uint16_t>(m_map.GetCover({part.rc.left + static_cast<int32_t>(i), y}));
    }
    FinishRow({apPlanes, pSamples, bCovered ? nullptr : m_scratch.vCover.data(), nCount}, m_nChannels);
}

void CBlockRender::SamplePart(const TPart& part) {
    const bool bCovered = m_map.Holds(part.rc) == true;
    m_scratch.window.Prepare(m_source, part.rcWindow, m_nChannels);
    const int32_t nReach = ReachOf(part.nDown);
    const size_t nRow = static_cast<size_t>(part.rc.Width()) * m_nChannels;
    const auto nLines = static_cast<size_t>((nReach * 2 + part.rc.Height()) * part.nDown);
    const size_t nKept = part.nDown == 1 ? 1 : nLines;
    // One row more, which takes the reduced one.
    m_scratch.vRows.resize(nRow * (nKept + 1));
    int16_t* pRows = m_scratch.vRows.data();
    for (size_t i = 0; i < nLines; ++i) {
        const double y = part.rc.top - nReach + (static_cast<double>(i) + 0.5) / part.nDown;
        SampleLine(part, y, pRows + (nKept == 1 ? 0 : i * nRow));
        if (nKept == 1) FinishLine(part, part.rc.top + static_cast<int32_t>(i), pRows, bCovered);
    }
    if (nKept == 1) return;
    for (int32_t y = 0; y < part.rc.Height(); ++y) {
        ReduceDown(pRows + nKept * nRow, pRows + static_cast<size_t>(y * part.nDown) * nRow, part.nDown,
                   nRow);
        FinishLine(part, part.rc.top + y, pRows + nKept * nRow, bCovered);
    }
}

} // namespace

bool RenderTransform(const TTransformSource& source, const CTransformMap& map, const CRect& rcLimit,
                     CRasterBlockBuffer& tile) {
    static thread_local TScratch scratch;
    const CRect rc = BoundsOf(map.GetQuad(), tile.GetRect().Intersect(rcLimit));
    if (rc.IsEmpty()) return false;
    CBlockRender render(source, map, tile, scratch);
    if (map.GetPixelMove())
        render.Move(rc, *map.GetPixelMove());
    else
        render.Resample(rc);
    const uint8_t* pFirst = tile.GetPixelPtr({0, 0});
    return std::any_of(pFirst, pFirst + tile.GetBytes(), [](uint8_t u) { return u != 0; });
}
