// Points that set the opacity of an open path.
#pragma once

#include "core/PathObject/PathMark.h"

/// A point on an open path that sets its opacity there.
class CPathAlphaControlPoint : public CPathMark {
public:
    static constexpr uint32_t CHUNK_TAG = MakeTag("PCPO");
    static constexpr uint32_t FULL_ALPHA = 255;

    /// Makes an opaque mark.
    CPathAlphaControlPoint(const boost::weak_ptr<const IPathLine>& wpLine, const CDualValue<uint32_t>& t)
        : CPathMark(wpLine, t) {}

    /// A filled square; its handle on the left side is the longer, the higher the opacity.
    void Draw(IPathDevice& device, const TPathMapper& mapper, const TPathSelection& selection) const override;
    CSerializer Serialize() const override;
    void Deserialize(CDeserializer& reader) override;
    TPathHit HitHandle(const TPathPick& pick) override;
    void Commit() override;
    void Cancel() override;
    bool IsSettled() const override { return m_t.IsSettled() && m_alpha.IsSettled(); }

    /// From 0, transparent, to 255.
    const CDualValue<uint32_t>& GetAlpha() const { return m_alpha; }
    /// Higher values become 255.
    void SetAlpha(const CDualValue<uint32_t>& value);

    /// The position of the handle for a drag: on release the opacity is set if the handle was moved.
    boost::shared_ptr<CDualValue<CPoint>> DragHandleImpl();

protected:
    uint32_t GetTag() const override { return CHUNK_TAG; }

private:
    CPoint GetDirection(size_t state) const { return Rot90(GetTangent(state)); }
    CPoint GetMarkPosition(size_t state) const;

    CDualValue<uint32_t> m_alpha{FULL_ALPHA};
};
