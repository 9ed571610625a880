// Points that set the half-widths of an open path.
#pragma once

#include "core/PathObject/PathMark.h"
#include "core/PathOutline/Outline.h"

/// A point on an open path that sets its half-widths there, as multiples (16.16) of the path's base width.
class CPathWidthControlPoint : public CPathMark {
public:
    static constexpr uint32_t CHUNK_TAG = MakeTag("PCPW");
    /// Marks of widths are shown at ten times the width.
    static constexpr int64_t SHOWN_TIMES = 10;

    /// With both multiples 1.0.
    CPathWidthControlPoint(const boost::weak_ptr<const IPathLine>& wpLine, const CDualValue<uint32_t>& t,
                           uint32_t uBaseWidth)
        : CPathMark(wpLine, t), m_baseWidth(uBaseWidth) {}

    void Draw(IPathDevice& device, const TPathMapper& mapper, const TPathSelection& selection) const override;
    CSerializer Serialize() const override;
    void Deserialize(CDeserializer& reader) override;
    TPathHit HitHandle(const TPathPick& pick) override;
    void Commit() override;
    void Cancel() override;
    bool IsSettled() const override {
        return m_t.IsSettled() && m_aSides[SIDE_LEFT].value.IsSettled() &&
               m_aSides[SIDE_RIGHT].value.IsSettled();
    }

    bool HasSide(EPathSide side) const { return m_aSides[side].bHas; }
    /// The multiple of a side, 16.16; zeros for an absent one.
    CDualValue<uint32_t> GetMultiple(EPathSide side) const;
    void SetMultiple(EPathSide side, const CDualValue<uint32_t>& value) { m_aSides[side] = {true, value}; }
    /// The half-width of a side; 0 for an absent one.
    uint32_t GetWidth(EPathSide side, size_t state) const;
    void SetBaseWidth(const CDualValue<uint32_t>& baseWidth) { m_baseWidth = baseWidth; }

    /// The half-width of a side for a drag, in path units; a missing side is created as zeros. On release
    /// the multiple is set if the width was changed; a base width of 0 keeps it.
    boost::shared_ptr<CDualValue<uint32_t>> WidthHandle(EPathSide side);
    boost::shared_ptr<CDualValue<uint32_t>> LeftHandle() { return WidthHandle(SIDE_LEFT); }
    boost::shared_ptr<CDualValue<uint32_t>> RightHandle() { return WidthHandle(SIDE_RIGHT); }
    /// The same as the position of the side's mark; with `bBoth` the other side is set too.
    boost::shared_ptr<CDualValue<CPoint>> DragHandleImpl(bool bLeft, bool bBoth);

protected:
    uint32_t GetTag() const override { return CHUNK_TAG; }

private:
    struct TSide {
        bool bHas = true;
        CDualValue<uint32_t> value{FIXED_ONE};
    };
    // Creates a missing side as zeros.
    void MakeSide(EPathSide side);
    // Creates a missing side. Keeps the multiple when the base width is 0 or the width is unchanged, since
    // the width may be only an approximation of it.
    void SetWidth(EPathSide side, size_t state, uint32_t uWidth);
    CPoint GetDirection(EPathSide side, size_t state) const;
    CPoint GetMarkPosition(EPathSide side, size_t state) const;

    std::array<TSide, 2> m_aSides;
    CDualValue<uint32_t> m_baseWidth; ///< the path's, a cache
};

/// A width as a multiple of a base width that is not 0, halves upward; and back.
uint32_t MultipleOf(uint32_t uWidth, uint32_t uBaseWidth);
uint32_t WidthOf(uint32_t uMultiple, uint32_t uBaseWidth);
