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

boost::shared_ptr<CStrokePlane> MakePredictPlane(CStrokePlane& main, CStrokePlane* pOld) {
    auto spPlane = boost::static_pointer_cast<CStrokePlane>(main.ShallowCopy());
    spPlane->SetErase(main.IsErase());
    CBoolMatrix& dirty = spPlane->GetDirty();
    dirty.Or(main.GetDirty());
    if (!pOld) return spPlane;
    dirty.Or(pOld->GetDirty());
    // Tiles that both planes share look the same; every other one has changed.
    spPlane->ForEachBlock([&](CPoint pt) {
        if (spPlane->FindBlock(pt) == pOld->FindBlock(pt)) return;
        spPlane->GetBlock(pt, true);
        spPlane->DirtyAt(pt) = 1;
    });
    return spPlane;
}
