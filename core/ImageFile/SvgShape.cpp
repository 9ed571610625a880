#include "core/ImageFile/SvgShape.h"

#include "core/LayerBuffer/PathCoverage.h"
#include "core/PathFill/PathFill.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

// Fewer points fill nothing.
constexpr size_t LEAST_POINTS = 4;

// A shape as one outline: lines there and back, which cancel each other, join its curves.
class CJoined {
public:
    explicit CJoined(TPolyBezier vFirst) : m_vPoints(std::move(vFirst)) {}

    void Add(const TPolyBezier& vCurve) {
        const CPoint ptHere = m_vPoints.back();
        const CPoint ptThere = vCurve.front();
        m_vPoints.insert(m_vPoints.end(), {ptHere, ptThere, ptThere});
        m_vPoints.insert(m_vPoints.end(), vCurve.begin() + 1, vCurve.end());
        m_vPoints.insert(m_vPoints.end(), {ptThere, ptHere, ptHere});
    }
    const TPolyBezier& Get() const { return m_vPoints; }

private:
    TPolyBezier m_vPoints;
};

enum class EFit { Hidden, Fits, Cancels };

class CGrouping {
public:
    explicit CGrouping(CSize szCanvas) : m_szCanvas(szCanvas) {}

    void Add(const TPolyBezier& vCurve) {
        for (auto& [joined, vShape] : m_vGroups) {
            const EFit fit = Try(joined, vCurve);
            if (fit == EFit::Hidden) return;
            if (fit == EFit::Cancels) continue;
            joined.Add(vCurve);
            vShape.push_back(vCurve);
            return;
        }
        m_vGroups.push_back({CJoined(vCurve), {vCurve}});
    }
    std::vector<TSvgShape> Take() {
        std::vector<TSvgShape> vShapes;
        for (auto& group : m_vGroups) vShapes.push_back(std::move(group.vShape));
        return vShapes;
    }

private:
    struct TGroup {
        CJoined joined;
        TSvgShape vShape;
    };

    EFit Try(const CJoined& joined, const TPolyBezier& vCurve) {
        const CRect rc = CoveredPixels(BezierBounds(vCurve)).Intersect({{0, 0}, m_szCanvas});
        if (rc.IsEmpty()) return EFit::Fits; // beyond the canvas
        CJoined both = joined;
        both.Add(vCurve);
        const TBytes vBefore = Fill({joined.Get()}, rc);
        const TBytes vUnion = Fill({joined.Get(), vCurve}, rc);
        if (vUnion == vBefore) return EFit::Hidden;
        return Fill({both.Get()}, rc) == vUnion ? EFit::Fits : EFit::Cancels;
    }
    TBytes Fill(std::initializer_list<CPathFill::TOutline> outlines, const CRect& rc) {
        CAlphaBlock8 tile;
        tile.Create(rc.Size(), rc.TopLeft());
        m_fill.FillTile({outlines.begin(), outlines.size()}, {{}, m_szCanvas}, tile);
        return {tile.GetPixelPtr({0, 0}), tile.GetPixelPtr({0, 0}) + tile.GetBytes()};
    }

    const CSize m_szCanvas;
    CPathFill m_fill;
    std::vector<TGroup> m_vGroups;
};

} // namespace

std::vector<TSvgShape> GroupOutlines(const std::vector<TPolyBezier>& vOutlines, CSize szCanvas) {
    CGrouping grouping(szCanvas);
    for (const TPolyBezier& vCurve : vOutlines)
        if (vCurve.size() >= LEAST_POINTS) grouping.Add(vCurve);
    return grouping.Take();
}
