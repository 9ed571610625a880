// Filled shapes.
#pragma once

#include "core/PathObject/PathStream.h"

/// A filled shape: its anchors are its outline.
class CClosedPathStream : public CPathStreamImpl<CPathControlPoint> {
public:
    static constexpr uint32_t CHUNK_TAG = MakeTag("POCP");

    void Update() override {}
    void UpdateDrag() override {}
    CRect RectIncludingPath(size_t state) const override;
    std::vector<TPolyBezier> GetShape(size_t state) const override { return {BezierPoints(state)}; }
    void RasterizePath(CPathFill& fill, CSize szPlane, CAlphaBlock8& tile, size_t state) const override;
    void DrawOutline(IPathDevice& device, const TPathMapper& mapper, const TPathSelection& selection,
                     TColor color, bool bOutline) const override;
    TPathHit HitControlPoints(const TPathPick& pick, bool bAnchor, bool bHandle, bool bTerm) const override;
    CSerializer Serialize() const override;
    void Deserialize(CDeserializer& reader) override;
    boost::shared_ptr<TPathSnapshot> CreateSnapshot() const override;
    void ApplySnapshot(const TPathSnapshot& snapshot) override;
    std::pair<uint32_t, uint32_t> GetMarkRange(uint32_t, uint32_t, size_t) const override { return {0, 0}; }

protected:
    bool IsClosed() const override { return true; }
};
