// The ends of open paths.
#pragma once

#include "core/PathObject/PathMark.h"
#include "core/PathOutline/Outline.h"

enum EPathTerm : uint32_t { TERM_SHARP = 1, TERM_ROUND = 2, TERM_FLAT = 3 };

/// The shape of one end of an open path. Position, tangent (out of the stroke) and half-widths are caches.
class COpenPathTermBase : public CPathControlPointBase,
                          public boost::enable_shared_from_this<COpenPathTermBase> {
public:
    /// `bBegin` for the end at t = 0.
    explicit COpenPathTermBase(bool bBegin) : m_bBegin(bBegin) {}

    void Draw(IPathDevice&, const TPathMapper&, const TPathSelection&) const override {}
    TPathHit HitHandle(const TPathPick&) override { return {}; }
    void Commit() override {}
    void Cancel() override {}

    virtual EPathTerm GetType() const = 0;
    /// The width of a side where a wave starts.
    virtual CDualValue<uint32_t> WidthPair(EPathSide) const { return {}; }
    CDualValue<uint32_t> LeftPair() const { return WidthPair(SIDE_LEFT); }
    CDualValue<uint32_t> RightPair() const { return WidthPair(SIDE_RIGHT); }
    /// IOutlineTerm's functions for one state, in outline units.
    virtual CBezier WidthCurve(int32_t nLength, int32_t nWidth, EPathSide side, size_t state) const = 0;
    virtual void AdjustEnd(TOutlinePoint&, const CBezier&, size_t) const {}
    virtual TOutlinePoints BuildTip(TOutlinePoint p, TOutlinePoint q, size_t state) const = 0;

    bool IsBegin() const { return m_bBegin; }
    void SetPlace(size_t state, CPoint position, CPoint tangent, uint32_t uLeft, uint32_t uRight);
    CPoint GetPosition(size_t state) const { return m_position[state]; }
    CPoint GetTangent(size_t state) const { return m_tangent[state]; }

protected:
    /// Raises deserialize_error unless this is an empty chunk of the tag.
    static void ExpectEmpty(CDeserializer& reader, uint32_t uTag);
    uint32_t GetCachedWidth(EPathSide side, size_t state) const { return m_aWidth[side][state]; }
    /// The normal of the path toward a side.
    CPoint GetNormal(EPathSide side, size_t state) const;

private:
    bool m_bBegin;
    CDualValue<CPoint> m_position;
    CDualValue<CPoint> m_tangent;
    std::array<CDualValue<uint32_t>, 2> m_aWidth;
};

/// Tapers to a point.
class COpenPathSharpTerm : public COpenPathTermBase {
public:
    static constexpr uint32_t CHUNK_TAG = MakeTag("POTS");
    using COpenPathTermBase::COpenPathTermBase;

    CSerializer Serialize() const override;
    void Deserialize(CDeserializer& reader) override { ExpectEmpty(reader, CHUNK_TAG); }
    bool IsSettled() const override { return true; }
    EPathTerm GetType() const override { return TERM_SHARP; }
    CBezier WidthCurve(int32_t nLength, int32_t nWidth, EPathSide side, size_t state) const override;
    TOutlinePoints BuildTip(TOutlinePoint p, TOutlinePoint q, size_t state) const override;
};

/// A cap that protrudes by a multiple (16.16) of the half-width.
class COpenPathRoundTerm : public COpenPathTermBase {
public:
    static constexpr uint32_t CHUNK_TAG = MakeTag("POTR");
    using COpenPathTermBase::COpenPathTermBase;

    void Draw(IPathDevice& device, const TPathMapper& mapper, const TPathSelection& selection) const override;
    CSerializer Serialize() const override;
    void Deserialize(CDeserializer& reader) override;
    TPathHit HitHandle(const TPathPick& pick) override;
    bool IsSettled() const override { return m_grow.IsSettled(); }
    void Commit() override { m_grow.Commit(); }
    void Cancel() override { m_grow.Cancel(); }
    EPathTerm GetType() const override { return TERM_ROUND; }
    CDualValue<uint32_t> WidthPair(EPathSide side) const override;
    CBezier WidthCurve(int32_t nLength, int32_t nWidth, EPathSide side, size_t state) const override;
    TOutlinePoints BuildTip(TOutlinePoint p, TOutlinePoint q, size_t state) const override;

    const CDualValue<uint32_t>& GetGrow() const { return m_grow; }
    void SetGrow(const CDualValue<uint32_t>& value) { m_grow = value; }
    /// The cap's reach in path units, for a drag.
    boost::shared_ptr<CDualValue<uint32_t>> GrowHandle();
    /// The same as the position of its mark.
    boost::shared_ptr<CDualValue<CPoint>> DragGrowHandle(bool bSymmetric);

private:
    uint32_t GetBase(size_t state) const;
    uint32_t GetReach(size_t state) const;
    // Keeps the multiple when the reach is unchanged or the width is 0.
    void SetReach(size_t state, uint32_t uReach);
    CPoint GetMarkPosition(size_t state) const;

    CDualValue<uint32_t> m_grow{FIXED_ONE};
};

/// A straight cut at an angle, with multiples (16.16) of the half-widths.
class COpenPathFlatTerm : public COpenPathTermBase {
public:
    static constexpr uint32_t CHUNK_TAG = MakeTag("POTF");
    static constexpr uint32_t LEAST_MULTIPLE = 10;
    using COpenPathTermBase::COpenPathTermBase;

    void Draw(IPathDevice& device, const TPathMapper& mapper, const TPathSelection& selection) const override;
    CSerializer Serialize() const override;
    void Deserialize(CDeserializer& reader) override;
    TPathHit HitHandle(const TPathPick& pick) override;
    bool IsSettled() const override {
        return m_aMultiple[SIDE_LEFT].IsSettled() && m_aMultiple[SIDE_RIGHT].IsSettled() &&
               m_angle.IsSettled();
    }
    void Commit() override;
    void Cancel() override;
    EPathTerm GetType() const override { return TERM_FLAT; }
    CDualValue<uint32_t> WidthPair(EPathSide side) const override;
    CBezier WidthCurve(int32_t nLength, int32_t nWidth, EPathSide side, size_t state) const override;
    void AdjustEnd(TOutlinePoint& point, const CBezier& piece, size_t state) const override;
    TOutlinePoints BuildTip(TOutlinePoint p, TOutlinePoint q, size_t state) const override;

    const CDualValue<uint32_t>& GetMultiple(EPathSide side) const { return m_aMultiple[side]; }
    void SetMultiple(EPathSide side, const CDualValue<uint32_t>& value);
    /// Degrees between path and cut, 90 square.
    const CDualValue<uint32_t>& GetAngle() const { return m_angle; }
    void SetAngle(const CDualValue<uint32_t>& value) { m_angle = value; }
    /// The half-width of a side, in path units, for a drag.
    boost::shared_ptr<CDualValue<uint32_t>> WidthHandle(EPathSide side);
    boost::shared_ptr<CDualValue<uint32_t>> LeftHandle() { return WidthHandle(SIDE_LEFT); }
    boost::shared_ptr<CDualValue<uint32_t>> RightHandle() { return WidthHandle(SIDE_RIGHT); }
    /// The position of a side's mark: its distance is the width (of both sides with `bBoth`), its direction
    /// the cut's angle.
    boost::shared_ptr<CDualValue<CPoint>> DragHandleImpl(bool bLeft, bool bBoth);

private:
    uint32_t GetWidth(EPathSide side, size_t state) const;
    // Keeps the multiple when the width is unchanged or the path's width is 0.
    void SetWidth(EPathSide side, size_t state, uint32_t uWidth);
    CPoint GetMarkPosition(EPathSide side, size_t state) const;

    std::array<CDualValue<uint32_t>, 2> m_aMultiple{CDualValue<uint32_t>(FIXED_ONE),
                                                    CDualValue<uint32_t>(FIXED_ONE)};
    CDualValue<uint32_t> m_angle{90};
};

/// Creates an end of a type; raises deserialize_error for an unknown number.
boost::shared_ptr<COpenPathTermBase> CreateOpenPathTerm(uint32_t uType, bool bBegin);

/// One state of an end, for building outlines.
class CTermAtState : public IOutlineTerm {
public:
    CTermAtState(const COpenPathTermBase& term, size_t state) : m_term(term), m_state(state) {}
    uint32_t GetWidth(EPathSide side) const override { return ToOutline(m_term.WidthPair(side)[m_state]); }
    CBezier WidthCurve(int32_t nLength, int32_t nWidth, EPathSide side) const override {
        return m_term.WidthCurve(nLength, nWidth, side, m_state);
    }
    void AdjustEnd(TOutlinePoint& point, const CBezier& piece) const override {
        m_term.AdjustEnd(point, piece, m_state);
    }
    TOutlinePoints BuildTip(TOutlinePoint p, TOutlinePoint q) const override {
        return m_term.BuildTip(p, q, m_state);
    }

private:
    const COpenPathTermBase& m_term;
    size_t m_state;
};
