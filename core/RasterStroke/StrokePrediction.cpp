#include "core/RasterStroke/StrokePrediction.h"

#include "core/RasterStroke/CtlPoint.h"

#include <algorithm>

std::vector<TCtlPoint> PredictPoints(const std::vector<TCtlPoint>& vPoints, int nPredict, uint32_t uWindow) {
    constexpr int MOST = 12;
    std::vector<TCtlPoint> v = vPoints;
    if (v.empty()) return v;
    if (v.size() >= 2) {
        const TCtlPoint last = v.back();
        const int32_t dx = last.x - v[v.size() - 2].x;
        const int32_t dy = last.y - v[v.size() - 2].y;
        for (int k = 1; k <= std::min(nPredict * 8 - 8, MOST); ++k)
            v.push_back({last.x + dx * 9 * k / 10, last.y + dy * 9 * k / 10, last.pressure, last.altitude});
    }
    v.insert(v.end(), uWindow + 2, TCtlPoint(v.back()));
    return v;
}

void FlagDifferences(CStrokePlane& plane, const CStrokePlane& shown) {
    plane.GetDirty().Or(shown.GetDirty());
    plane.ForEachBlock([&](CPoint pt) {
        if (plane.FindBlock(pt) != shown.FindBlock(pt)) plane.SetDirty(pt);
    });
}

boost::shared_ptr<CStrokePlane> MakePredictPlane(CStrokePlane& main, CStrokePlane* pOld) {
    auto spPlane = boost::static_pointer_cast<CStrokePlane>(main.ShallowCopy());
    spPlane->SetErase(main.IsErase());
    spPlane->GetDirty().Or(main.GetDirty());
    if (!pOld) return spPlane;
    FlagDifferences(*spPlane, *pOld);
    spPlane->ForEachBlock([&](CPoint pt) {
        if (pOld->FindBlock(pt)) spPlane->GetBlock(pt, true);
    });
    return spPlane;
}
