#include "core/PathObject/OpenPathStream.h"

#include "core/Base/Failure.h"
#include "core/PathOutline/OutlineBuilder.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <map>
#include <optional>

namespace {

uint32_t Scaled(uint32_t uValue, double dFactor) {
    return static_cast<uint32_t>(std::clamp(uValue * dFactor + 0.5, 1.0, double{INT32_MAX}));
}

TOutlineWave Scaled(const TOutlineWave& wave, double dFactor) {
    return {Scaled(wave.uStep, dFactor), Scaled(wave.uWidth, dFactor)};
}

// The values of marks in their order along the path; of several at one place the last one counts.
template <class TPoints, class Make>
auto SortedOnPath(const TPoints& vPoints, size_t state, uint32_t tLast, Make make) {
    std::map<uint32_t, decltype(make(0, vPoints.front()))> mapValues;
    for (const auto& spPoint : vPoints) {
        const uint32_t t = std::min(spPoint->GetParameter()[state], tLast);
        mapValues[t] = make(t, spPoint);
    }
    std::vector<decltype(make(0, vPoints.front()))> vValues;
    for (const auto& [t, value] : mapValues) vValues.push_back(value);
    return vValues;
}

} // namespace

COpenPathStream::COpenPathStream()
    : m_aspBuilt{boost::make_shared<const TBuilt>(), boost::make_shared<const TBuilt>()},
      m_spBegin(CreateOpenPathTerm(TERM_SHARP, true)), m_spEnd(CreateOpenPathTerm(TERM_SHARP, false)),
      m_wave(DEFAULT_WAVE) {}

std::vector<TOutlineWidth> COpenPathStream::GetWidths(size_t state, uint32_t tLast) const {
    return SortedOnPath(GetWidthPoints(state), state, tLast, [&](uint32_t t, const auto& spPoint) {
        return TOutlineWidth{t, {spPoint->GetWidth(SIDE_LEFT, state), spPoint->GetWidth(SIDE_RIGHT, state)}};
    });
}

std::vector<TOutlineAlpha> COpenPathStream::GetAlphas(size_t state, uint32_t tLast) const {
    return SortedOnPath(GetAlphaPoints(state), state, tLast, [&](uint32_t t, const auto& spPoint) {
        return TOutlineAlpha{t, spPoint->GetAlpha()[state]};
    });
}

uint32_t COpenPathStream::GetAlphaAt(uint32_t t, size_t state) const {
    const auto vSegments = GetSegments(state);
    const auto vAlphas = GetAlphas(state, static_cast<uint32_t>(vSegments.size()) * BEZIER_T_RESOLUTION);
    if (vAlphas.empty()) return CPathAlphaControlPoint::FULL_ALPHA;
    return EasedAt(CPathLengths(vSegments), vAlphas, t,
                   [](const TOutlineAlpha& alpha) { return alpha.uAlpha; });
}

void COpenPathStream::RefreshCaches(size_t state) {
    if (m_lstControlPoint.empty()) return;
    const auto vSegments = GetSegments(state);
    const auto tLast = static_cast<uint32_t>(vSegments.size()) * BEZIER_T_RESOLUTION;
    const auto placeAt = [&](uint32_t t) {
        return vSegments.empty() ? TLinePlace{m_lstControlPoint.front()->GetAnchor()[state], {}}
                                 : PlaceOnLine(vSegments, t);
    };
    ForEachKind([&](const auto& marks) {
        for (const auto& spPoint : marks[state]) {
            const auto [point, tangent] = placeAt(std::min(spPoint->GetParameter()[state], tLast));
            spPoint->SetPlace(state, point, tangent);
        }
    });
    for (const auto& spPoint : GetWidthPoints(state)) spPoint->SetBaseWidth(m_width);
    const auto vWidths = GetWidths(state, tLast);
    std::optional<CPathLengths> lengths;
    if (!GetTransPoints(state).empty()) lengths.emplace(vSegments);
    for (const auto& spPoint : GetTransPoints(state)) {
        const uint32_t t = std::min(spPoint->GetParameter()[state], tLast);
        spPoint->SetWidths(state, WidthAt(*lengths, vWidths, m_width[state], t, SIDE_LEFT),
                           WidthAt(*lengths, vWidths, m_width[state], t, SIDE_RIGHT));
    }
    const TOutlineWidth plain{0, {m_width[state], m_width[state]}};
    const auto placeTerm = [&](COpenPathTermBase& term, uint32_t t, const TOutlineWidth& nearest) {
        const auto [point, tangent] = placeAt(t);
        term.SetPlace(state, point, term.IsBegin() ? CPoint{-tangent.x, -tangent.y} : tangent,
                      nearest.auWidth[SIDE_LEFT], nearest.auWidth[SIDE_RIGHT]);
    };
    placeTerm(*m_spBegin, 0, vWidths.empty() ? plain : vWidths.front());
    placeTerm(*m_spEnd, tLast, vWidths.empty() ? plain : vWidths.back());
}

TOutlineSource COpenPathStream::GetSource(size_t state) const {
    TOutlineSource source;
    for (const TOutlinePoint& anchor : GetAnchors(state))
        source.vAnchors.push_back({ToOutline(anchor.anchor), ToOutline(anchor.back), ToOutline(anchor.fore)});
    source.vWidths = GetWidths(state, LastParameter(source.vAnchors));
    for (TOutlineWidth& width : source.vWidths)
        for (uint32_t& uWidth : width.auWidth) uWidth = ToOutline(uWidth);
    for (const auto& spPoint : SortedByParameter(GetTransPoints(state), state))
        source.vCuts.push_back(spPoint->At(state));
    source.vAlphas = GetAlphas(state, LastParameter(source.vAnchors));
    source.uWidth = ToOutline(m_width[state]);
    if (m_bWave)
        source.wave = {ToOutline(std::min(GetWave(state).uStep, PATH_WIDTH_LIMIT)),
                       ToOutline(GetWave(state).uWidth)};
    return source;
}

boost::shared_ptr<const COpenPathStream::TBuilt> COpenPathStream::Build(size_t state) {
    TOutlineSource source = GetSource(state);
    const CTermAtState begin(*m_spBegin, state);
    const CTermAtState end(*m_spEnd, state);
    source.pBegin = &begin;
    source.pEnd = &end;
    if (!m_spBuilder) m_spBuilder = boost::make_shared<COutlineBuilder>();
    const auto spBuilt = boost::make_shared<TBuilt>();
    spBuilt->vOutlines = m_spBuilder->Build(source);
    if (!source.vAlphas.empty())
        spBuilt->spOpacity = boost::make_shared<const COpacityField>(m_spBuilder->GetRibs());
    return spBuilt;
}

bool COpenPathStream::AreStatesEqual() const {
    const auto isSettled = [](const auto& spPoint) { return spPoint->IsSettled(); };
    bool bSettled = m_width.IsSettled() && m_wave.IsSettled() &&
                    std::ranges::all_of(m_lstControlPoint, isSettled) && m_spBegin->IsSettled() &&
                    m_spEnd->IsSettled();
    ForEachKind([&](const auto& marks) {
        bSettled = bSettled && marks.IsSettled() && std::ranges::all_of(marks[STATE_COMMITTED], isSettled);
    });
    return bSettled;
}

size_t COpenPathStream::CountBuiltRuns() const { return m_spBuilder ? m_spBuilder->CountRuns() : 0; }

void COpenPathStream::Update() {
    RefreshCaches(STATE_COMMITTED);
    RefreshCaches(STATE_LIVE);
    // Both outlines are replaced, or none if that fails.
    const bool bEqual = AreStatesEqual();
    const auto spCommitted = Build(STATE_COMMITTED);
    m_aspBuilt = {spCommitted, bEqual ? spCommitted : Build(STATE_LIVE)};
    if (bEqual) m_spBuilder.reset();
}

void COpenPathStream::UpdateDrag() {
    RefreshCaches(STATE_LIVE);
    m_aspBuilt[STATE_LIVE] = Build(STATE_LIVE);
    if (AreStatesEqual()) m_spBuilder.reset(); // the drag was cancelled
}

void COpenPathStream::Commit() {
    const auto spSamples = m_fnLiveMap ? GetSamples() : nullptr;
    CPathStreamImpl::Commit();
    m_width.Commit();
    m_wave.Commit();
    ForEachKind([](auto& marks) {
        marks.Commit();
        for (const auto& spPoint : marks[STATE_COMMITTED]) spPoint->Commit();
    });
    m_spBegin->Commit();
    m_spEnd->Commit();
    if (spSamples) SetSamples(spSamples->Mapped(m_fnLiveMap));
    m_fnLiveMap.clear();
}

void COpenPathStream::Cancel() {
    CPathStreamImpl::Cancel();
    m_width.Cancel();
    m_wave.Cancel();
    ForEachKind([](auto& marks) {
        marks.Cancel();
        for (const auto& spPoint : marks[STATE_COMMITTED]) spPoint->Cancel();
    });
    m_spBegin->Cancel();
    m_spEnd->Cancel();
    m_fnLiveMap.clear();
}

CRect COpenPathStream::RectIncludingPath(size_t state) const {
    if (m_lstControlPoint.empty()) throw internal_error(L"RectIncludingPath: zero anchor");
    CRect rc;
    for (const TStretchOutline& stretch : GetOutline(state)) {
        rc = rc.Union(BezierBounds(stretch.vCurve));
        for (const TPolyBezier& vFold : stretch.vFolds) rc = rc.Union(BezierBounds(vFold));
    }
    return rc;
}

std::vector<TPolyBezier> COpenPathStream::GetShape(size_t state) const {
    std::vector<TPolyBezier> vShape;
    for (const TStretchOutline& stretch : GetOutline(state)) {
        vShape.push_back(stretch.vCurve);
        vShape.insert(vShape.end(), stretch.vFolds.begin(), stretch.vFolds.end());
    }
    return vShape;
}

void COpenPathStream::RasterizePath(CPathFill& fill, CSize szPlane, CAlphaBlock8& tile, size_t state) const {
    if (m_lstControlPoint.empty()) throw internal_error(L"RasterizePath: zero anchor");
    const auto spOpacity = GetOpacity(state);
    const auto fillInto = [&](CAlphaBlock8& target) {
        for (const TStretchOutline& stretch : GetOutline(state)) {
            std::vector<CPathFill::TOutline> vShape{stretch.vCurve};
            vShape.insert(vShape.end(), stretch.vFolds.begin(), stretch.vFolds.end());
            fill.FillTile(vShape, {{}, szPlane}, target);
        }
    };
    if (spOpacity)
        spOpacity->Raise(tile, RectIncludingPath(state), fillInto);
    else
        fillInto(tile);
}

void COpenPathStream::DrawOutline(IPathDevice& device, const TPathMapper& mapper,
                                  const TPathSelection& selection, TColor color, bool bOutline) const {
    const auto drawCurve = [&](TPolyBezier vCurve) {
        for (CPoint& pt : vCurve) pt = mapper(pt);
        device.PolyBezier(vCurve, color);
    };
    drawCurve(BezierPoints(STATE_LIVE));
    if (bOutline)
        for (const TStretchOutline& stretch : GetOutline(STATE_LIVE)) drawCurve(stretch.vCurve);
    const auto drawMarks = [&](const auto& vMarks) {
        for (const auto& spPoint : vMarks) spPoint->Draw(device, mapper, selection);
    };
    drawMarks(GetAlphaPoints(STATE_LIVE));
    drawMarks(GetTransPoints(STATE_LIVE));
    drawMarks(GetWidthPoints(STATE_LIVE));
    m_spBegin->Draw(device, mapper, selection);
    m_spEnd->Draw(device, mapper, selection);
    for (const auto& spPoint : m_lstControlPoint) spPoint->Draw(device, mapper, selection);
}

TPathHit COpenPathStream::HitControlPoints(const TPathPick& pick, bool bAnchor, bool bHandle,
                                           bool bTerm) const {
    TPathHit hit = HitAnchors(pick, bAnchor, bHandle);
    if (!hit) hit = HitPoints(GetWidthPoints(STATE_LIVE), pick, bTerm, bTerm);
    if (!hit) hit = HitPoints(GetTransPoints(STATE_LIVE), pick, bTerm, bTerm);
    if (!hit) hit = HitPoints(GetAlphaPoints(STATE_LIVE), pick, bTerm, bTerm);
    if (!hit) hit = HitPoints(std::array{m_spBegin, m_spEnd}, pick, false, bTerm);
    return hit;
}

void COpenPathStream::SetWave(bool bEnable, const TOutlineWave& wave) {
    m_bWave = bEnable;
    m_wave.Set(wave);
}

void COpenPathStream::ScaleWidths(double dFactor) {
    for (const size_t state : {STATE_COMMITTED, STATE_LIVE}) {
        m_width[state] = Scaled(m_width[state], dFactor);
        m_wave[state] = Scaled(m_wave[state], dFactor);
    }
}

void COpenPathStream::TransformLive(const boost::function<CPoint(CPoint)>& fnMap, double dWidth) {
    CPathStreamImpl::TransformLive(fnMap, dWidth);
    if (m_spSamples) m_fnLiveMap = fnMap;
    const bool bScales = dWidth != 1;
    m_width[STATE_LIVE] = bScales ? Scaled(GetWidth(), dWidth) : GetWidth();
    m_wave[STATE_LIVE] = bScales ? Scaled(GetWave(), dWidth) : GetWave();
}

std::array<uint32_t, 2> COpenPathStream::GetWidthsAt(uint32_t t, size_t state) const {
    TOutlineSource source = GetSource(state);
    const CTermAtState begin(*m_spBegin, state);
    const CTermAtState end(*m_spEnd, state);
    source.pBegin = &begin;
    source.pEnd = &end;
    std::array<uint32_t, 2> auWidth = TaperedWidthsAt(source, std::min(t, LastParameter(source.vAnchors)));
    for (uint32_t& uWidth : auWidth) uWidth = (uWidth + OUTLINE_UNIT / 2) / OUTLINE_UNIT;
    return auWidth;
}

void COpenPathStream::SetTerm(const boost::shared_ptr<COpenPathTermBase>& spTerm) {
    (spTerm->IsBegin() ? m_spBegin : m_spEnd) = spTerm;
}
