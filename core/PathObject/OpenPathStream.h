// Stroked lines of varying width.
#pragma once

#include "core/PathObject/OpenPathTerm.h"
#include "core/PathObject/PathStream.h"

#include <tuple>

class COutlineBuilder;

/// A line whose width is set by points on it, with an end at each side, cuts and, optionally, random
/// unsteadiness. Only Update computes its outlines.
class COpenPathStream : public CPathStreamImpl<COpenPathControlPoint> {
public:
    static constexpr uint32_t CHUNK_TAG = MakeTag("POOP");
    using TOutlines = std::vector<TStretchOutline>;
    using TWidthPoints = TPathMarks<CPathWidthControlPoint>;
    using TTransPoints = TPathMarks<CPathTransControlPoint>;
    using TAlphaPoints = TPathMarks<CPathAlphaControlPoint>;

    /// With two sharp ends.
    COpenPathStream();

    void Update() override;
    void UpdateDrag() override;
    /// The next Update() takes over what the builder made of an earlier stroke where this one is the same.
    void UseBuilder(const boost::shared_ptr<COutlineBuilder>& spBuilder) { m_spBuilder = spBuilder; }
    bool IsStorable() const override {
        return IsStorableWidth(m_width[STATE_COMMITTED]) && IsStorableWidth(GetWave().uWidth) &&
               CPathStreamImpl::IsStorable();
    }
    void Commit() override;
    void Cancel() override;
    CRect RectIncludingPath(size_t state) const override;
    std::vector<TPolyBezier> GetShape(size_t state) const override;
    void RasterizePath(CPathFill& fill, CSize szPlane, CAlphaBlock8& tile, size_t state) const override;
    void DrawOutline(IPathDevice& device, const TPathMapper& mapper, const TPathSelection& selection,
                     TColor color, bool bOutline) const override;
    TPathHit HitControlPoints(const TPathPick& pick, bool bAnchor, bool bHandle, bool bTerm) const override;
    CSerializer Serialize() const override;
    void Deserialize(CDeserializer& reader) override;
    boost::shared_ptr<TPathSnapshot> CreateSnapshot() const override;
    void ApplySnapshot(const TPathSnapshot& snapshot) override;
    std::pair<uint32_t, uint32_t> GetMarkRange(uint32_t uMark, uint32_t t, size_t state) const override;

    /// The outlines of a state, one for each visible stretch.
    const TOutlines& GetOutline(size_t state) const { return m_aspBuilt[state]->vOutlines; }
    boost::shared_ptr<const COpacityField> GetOpacity(size_t state) const override {
        return m_aspBuilt[state]->spOpacity;
    }
    /// The runs (a side of a segment each) that the last event of a drag built; 0 without a drag, when
    /// nothing is kept for the next.
    size_t CountBuiltRuns() const;
    /// Base half-width.
    uint32_t GetWidth(size_t state = STATE_COMMITTED) const { return m_width[state]; }
    void SetWidth(uint32_t uWidth) { m_width.Set(uWidth); }
    void SetWave(bool bEnable, const TOutlineWave& wave);
    bool HasWave() const { return m_bWave; }
    /// The base width and the wave. Width points are multiples, which stay.
    void ScaleWidths(double dFactor) override;
    void TransformLive(const boost::function<CPoint(CPoint)>& fnMap, double dWidth) override;
    void Transform(const boost::function<CPoint(CPoint)>& fnMap) override;
    /// The samples of a pen stroke; null without any. They belong to the committed anchors and marks, and
    /// follow them when all positions are mapped: after another change there are none, until it is undone.
    boost::shared_ptr<const TInkSamples> GetSamples() const;
    void SetSamples(TInkSamples samples);
    /// The wave's step and strength, also while it is off.
    const TOutlineWave& GetWave(size_t state = STATE_COMMITTED) const { return m_wave[state]; }
    /// The marks of one class, in order of creation.
    template <class TPoint>
    const TPathMarks<TPoint>& GetMarks(size_t state = STATE_COMMITTED) const {
        return std::get<CDualValue<TPathMarks<TPoint>>>(m_marks)[state];
    }
    const TWidthPoints& GetWidthPoints(size_t state = STATE_COMMITTED) const {
        return GetMarks<CPathWidthControlPoint>(state);
    }
    const TTransPoints& GetTransPoints(size_t state = STATE_COMMITTED) const {
        return GetMarks<CPathTransControlPoint>(state);
    }
    const TAlphaPoints& GetAlphaPoints(size_t state = STATE_COMMITTED) const {
        return GetMarks<CPathAlphaControlPoint>(state);
    }
    /// Replaces the marks, which may come from another path or from none. Multiples of width points refer
    /// to this path's base width from now on. Cuts must come in pairs.
    void SetWidthPoints(TWidthPoints vWidth) { SetMarks(std::move(vWidth)); }
    void SetTransPoints(TTransPoints vTrans) { SetMarks(std::move(vTrans)); }
    void SetAlphaPoints(TAlphaPoints vAlpha) { SetMarks(std::move(vAlpha)); }
    /// The same for the live state only: a drag shows other marks, until Commit or Cancel.
    template <class TPoint>
    void SetLiveMarks(TPathMarks<TPoint> vMarks);
    void SetLiveWidthPoints(TWidthPoints vWidth) { SetLiveMarks(std::move(vWidth)); }
    void SetLiveTransPoints(TTransPoints vTrans) { SetLiveMarks(std::move(vTrans)); }
    void SetLiveAlphaPoints(TAlphaPoints vAlpha) { SetLiveMarks(std::move(vAlpha)); }
    /// Exchanges the marks of both states, which must be the path's own. The caller updates the path.
    template <class TPoint>
    void Exchange(CDualValue<TPathMarks<TPoint>>& points) noexcept {
        std::swap(std::get<CDualValue<TPathMarks<TPoint>>>(m_marks), points);
    }
    /// The half-widths at `t` by side: between the width points eased over the arc length, towards the ends
    /// as these shape them, without the wave.
    std::array<uint32_t, 2> GetWidthsAt(uint32_t t, size_t state) const;
    /// The opacity at `t`, 0 to 255: eased as widths are, opaque without marks.
    uint32_t GetAlphaAt(uint32_t t, size_t state) const;
    /// Adds a point with multiples 1.0, a square cut, or an opaque mark at `t`.
    boost::shared_ptr<CPathWidthControlPoint> AddWidthPoint(uint32_t t);
    boost::shared_ptr<CPathTransControlPoint> AddTransPoint(uint32_t t);
    boost::shared_ptr<CPathAlphaControlPoint> AddAlphaPoint(uint32_t t);
    /// A mark with such values that is not on the path yet.
    template <class TPoint>
    boost::shared_ptr<TPoint> MakeMark(uint32_t t) const;
    const boost::shared_ptr<COpenPathTermBase>& GetTerm(bool bBegin) const {
        return bBegin ? m_spBegin : m_spEnd;
    }
    void SetTerm(const boost::shared_ptr<COpenPathTermBase>& spTerm);

protected:
    bool IsClosed() const override { return false; }
    void OnInserted(size_t idx, uint32_t f) override;
    void OnRemoving(size_t idx) override;

private:
    static constexpr TOutlineWave DEFAULT_WAVE{32, 4};

    struct TBuilt {
        TOutlines vOutlines;
        boost::shared_ptr<const COpacityField> spOpacity; ///< null without opacity marks
    };

    // Calls a function with each class's marks, a CDualValue.
    template <class Function>
    void ForEachKind(Function fn) {
        std::apply([&](auto&... marks) { (fn(marks), ...); }, m_marks);
    }
    template <class Function>
    void ForEachKind(Function fn) const {
        std::apply([&](const auto&... marks) { (fn(marks), ...); }, m_marks);
    }
    template <class TPoint>
    void SetMarks(TPathMarks<TPoint> vMarks);
    template <class TPoint>
    boost::shared_ptr<TPoint> AddMark(uint32_t t);
    template <class TPoint>
    void ReadMarks(CDeserializer& reader, uint32_t uCount);
    template <class TPoints>
    void KeepOnMerged(const TPoints& vMarks, size_t idx);
    std::vector<TOutlineWidth> GetWidths(size_t state, uint32_t tLast) const;
    std::vector<TOutlineAlpha> GetAlphas(size_t state, uint32_t tLast) const;
    void RefreshCaches(size_t state);
    TOutlineSource GetSource(size_t state) const;
    boost::shared_ptr<const TBuilt> Build(size_t state);
    bool AreStatesEqual() const;
    CSerializer SerializeShape() const;
    // A hash of the committed anchors and marks.
    uint32_t HashShape() const;

    std::array<boost::shared_ptr<const TBuilt>, 2> m_aspBuilt; ///< shared while both states are equal
    boost::shared_ptr<COutlineBuilder> m_spBuilder;            ///< only while the states differ
    std::tuple<CDualValue<TWidthPoints>, CDualValue<TTransPoints>, CDualValue<TAlphaPoints>> m_marks;
    CDualValue<uint32_t> m_width{8};
    boost::shared_ptr<COpenPathTermBase> m_spBegin;
    boost::shared_ptr<COpenPathTermBase> m_spEnd;
    CDualValue<TOutlineWave> m_wave;
    bool m_bWave = false;
    boost::shared_ptr<const TInkSamples> m_spSamples;
    boost::function<CPoint(CPoint)> m_fnLiveMap; ///< of the last TransformLive, until it ends
};
