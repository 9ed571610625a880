// Strokes for tests, given by knots, and their coverage of a small plane.
#pragma once

#include "core/PathFill/PathFill.h"
#include "tests/support/Paths.h"
#include "tests/support/Planes.h"

#include <cmath>

/// In pixels.
constexpr CSize PLANE{288, 288};

/// An anchor of a smooth stroke, in path units.
struct TKnot {
    CPoint anchor;
    CPoint handle; ///< forward; the backward one is its opposite
};

/// A drawn line inside the plane: anchors along a path, handles along it, as fitted to a pen's trace.
inline std::vector<TKnot> HandKnots(std::mt19937& random, int nAnchors) {
    std::vector<TKnot> vKnots;
    const double dTurn = random() % 100 / 60.0;
    for (int n = 0; n < nAnchors; ++n)
        vKnots.push_back(
            {{320 + 1600 * n / nAnchors + static_cast<int32_t>(random() % 40),
              1100 + static_cast<int32_t>(500 * std::sin(n * dTurn)) + static_cast<int32_t>(random() % 40)},
             {}});
    for (size_t n = 0; n < vKnots.size(); ++n) {
        const CPoint before = vKnots[n == 0 ? 0 : n - 1].anchor;
        const CPoint behind = vKnots[std::min(n + 1, vKnots.size() - 1)].anchor;
        vKnots[n].handle = {(behind.x - before.x) / 6, (behind.y - before.y) / 6};
    }
    return vKnots;
}

/// A stroke through the knots with sharp ends, its half-width in path units; not yet updated.
inline boost::shared_ptr<COpenPathObject> MakePath(const std::vector<TKnot>& vKnots, uint32_t uWidth) {
    const auto spPath = boost::make_shared<COpenPathObject>();
    spPath->GetStream().SetWidth(uWidth);
    for (const auto& [anchor, handle] : vKnots)
        AddAnchor(spPath->GetStream(), anchor, {-handle.x, -handle.y}, handle);
    spPath->GetStream().GetControlPoints().front()->SetBack({});
    spPath->GetStream().GetControlPoints().back()->SetFore({});
    return spPath;
}

/// Multiples of the half-width, 16.16, at `t`.
inline void AddWidth(COpenPathStream& stream, uint32_t t, uint32_t uLeft, uint32_t uRight) {
    const auto spPoint = stream.AddWidthPoint(t);
    spPoint->SetMultiple(SIDE_LEFT, CDualValue<uint32_t>(uLeft));
    spPoint->SetMultiple(SIDE_RIGHT, CDualValue<uint32_t>(uRight));
}

/// Row by row.
inline std::vector<uint8_t> CoverageOf(const CPathObject& path) {
    const auto spPlane = MakePlane<CAlphaBufferImpl<uint8_t>>(PLANE);
    CPathFill fill;
    spPlane->ForEachBlock([&](CPoint pt) {
        path.RasterizePath(fill, PLANE, static_cast<CAlphaBlock8&>(*spPlane->GetBlock(pt, true)));
    });
    return ValuesOf<uint8_t>(*spPlane);
}

inline int At(const std::vector<uint8_t>& v, int x, int y) {
    return v[static_cast<size_t>(y * PLANE.cx + x)];
}
