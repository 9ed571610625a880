// Cuts across open paths.
#pragma once

#include "core/PathObject/PathMark.h"
#include "core/PathOutline/Outline.h"

/// A cut across an open path. Cuts come in pairs; the stretch between the two of a pair is not painted.
class CPathTransControlPoint : public CPathMark {
public:
    static constexpr uint32_t CHUNK_TAG = MakeTag("PCPT");

    /// Makes a cut square to the path.
    CPathTransControlPoint(const boost::weak_ptr<const IPathLine>& wpLine, const CDualValue<uint32_t>& t)
        : CPathMark(wpLine, t) {}

    void Draw(IPathDevice& device, const TPathMapper& mapper, const TPathSelection& selection) const override;
    CSerializer Serialize() const override;
    void Deserialize(CDeserializer& reader) override;
    TPathHit HitHandle(const TPathPick& pick) override;
    void Commit() override;
    void Cancel() override;
    bool IsSettled() const override { return m_t.IsSettled() && m_angle.IsSettled(); }

    /// Degrees between path and cut, 90 square.
    const CDualValue<uint32_t>& GetAngle() const { return m_angle; }
    void SetAngle(const CDualValue<uint32_t>& value) { m_angle = value; }
    /// The stroke's half-widths at the cut, which it reaches beyond; a cache.
    void SetWidths(size_t state, uint32_t uLeft, uint32_t uRight);
    TOutlineCut At(size_t state) const;

    /// The position of one of the angle's two marks for a drag: on release the cut is turned toward it.
    boost::shared_ptr<CDualValue<CPoint>> DragHandleImpl(bool bLeft);

protected:
    uint32_t GetTag() const override { return CHUNK_TAG; }

private:
    CPoint GetMarkPosition(EPathSide side, size_t state) const;

    CDualValue<uint32_t> m_angle{90};
    std::array<CDualValue<uint32_t>, 2> m_aWidth;
};
