#include "core/PathObject/OpenPathStream.h"

#include "core/Base/Failure.h"
#include "core/PathOutline/OutlineBuilder.h"
#include "core/PathOutline/Wave.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <map>
#include <optional>

namespace {

constexpr uint32_t VERSION = 1; ///< version 0 had no wave
constexpr uint32_t WAVE_STEP = 32;
constexpr uint32_t WAVE_WIDTH = 4;
/// Bytes counted for a wave's width point, a third of its real size: a drawn stroke has so many bytes in
/// the file that no valid document comes near the limit.
constexpr uint64_t WAVE_POINT_BYTES = 2 * 3 * sizeof(CPoint);

uint32_t ReadWidth(CDeserializer& reader) {
    const auto uWidth = static_cast<uint32_t>(reader.ReadInt32());
    if (!IsStorableWidth(uWidth)) throw deserialize_error();
    return uWidth;
}

// Reads the counted marks; existing ones are reused.
template <class TPoints, class Make>
TPoints ReadMarks(CDeserializer& reader, uint32_t uCount, const TPoints& vKnown, Make make) {
    TPoints vPoints;
    for (uint32_t u = 0; u < uCount; ++u) {
        CDeserializer chunk;
        reader.ReadChunk(chunk);
        vPoints.push_back(u < vKnown.size() ? vKnown[u] : make());
        vPoints.back()->Deserialize(chunk);
    }
    return vPoints;
}

// Marks are clamped to the path, also those that a file has behind its end.
template <class TPoints>
void HoldOnPath(const TPoints& vPoints, uint32_t tLast) {
    for (const auto& spPoint : vPoints)
        spPoint->SetParameter(
            CDualValue<uint32_t>(std::min(spPoint->GetParameter()[STATE_COMMITTED], tLast)));
}

void ReadTerm(CDeserializer& reader, uint32_t uType, boost::shared_ptr<COpenPathTermBase>& spTerm) {
    const auto spNew = spTerm->GetType() == uType ? spTerm : CreateOpenPathTerm(uType, spTerm->IsBegin());
    CDeserializer chunk;
    reader.ReadChunk(chunk);
    spNew->Deserialize(chunk);
    spTerm = spNew;
}

uint32_t Scaled(uint32_t uValue, double dFactor) {
    return static_cast<uint32_t>(std::clamp(uValue * dFactor + 0.5, 1.0, double{INT32_MAX}));
}

TOutlineWave Scaled(const TOutlineWave& wave, double dFactor) {
    return {Scaled(wave.uStep, dFactor), Scaled(wave.uWidth, dFactor)};
}

// The marks of both states and one more.
template <class TPoints>
CDualValue<TPoints> DualWith(CDualValue<TPoints> points, const typename TPoints::value_type& spPoint) {
    for (const size_t state : {STATE_COMMITTED, STATE_LIVE}) points[state].push_back(spPoint);
    return points;
}

// The first and the last parameter that a mark at `t` reaches without passing another. Marks at one parameter
// would become one.
template <class TPoints>
std::pair<uint32_t, uint32_t> RangeAmong(const TPoints& vPoints, uint32_t t, size_t state, uint32_t tLast) {
    std::pair<uint32_t, uint32_t> range{0, std::max(t, tLast)};
    for (const auto& spPoint : vPoints) {
        const uint32_t tPoint = spPoint->GetParameter()[state];
        if (tPoint < t) range.first = std::max(range.first, tPoint + 1);
        if (tPoint > t) range.second = std::min(range.second, tPoint - 1);
    }
    return range;
}

} // namespace

COpenPathStream::COpenPathStream()
    : m_aspOutline{boost::make_shared<const TOutlines>(), boost::make_shared<const TOutlines>()},
      m_spBegin(CreateOpenPathTerm(TERM_SHARP, true)), m_spEnd(CreateOpenPathTerm(TERM_SHARP, false)),
      m_wave({WAVE_STEP, WAVE_WIDTH}) {}

std::vector<TOutlineWidth> COpenPathStream::GetWidths(size_t state, uint32_t tLast) const {
    std::map<uint32_t, TOutlineWidth> mapWidthOrig;
    for (const auto& spPoint : m_widthPoints[state]) {
        const uint32_t t = std::min(spPoint->GetParameter()[state], tLast);
        mapWidthOrig[t] = {t, {spPoint->GetWidth(SIDE_LEFT, state), spPoint->GetWidth(SIDE_RIGHT, state)}};
    }
    std::vector<TOutlineWidth> vWidths;
    for (const auto& [t, width] : mapWidthOrig) vWidths.push_back(width);
    return vWidths;
}

void COpenPathStream::RefreshCaches(size_t state) {
    if (m_lstControlPoint.empty()) return;
    const auto vSegments = GetSegments(state);
    const auto tLast = static_cast<uint32_t>(vSegments.size()) * BEZIER_T_RESOLUTION;
    const auto placeAt = [&](uint32_t t) {
        return vSegments.empty() ? TLinePlace{m_lstControlPoint.front()->GetAnchor()[state], {}}
                                 : PlaceOnLine(vSegments, t);
    };
    for (const auto& spPoint : m_widthPoints[state]) {
        spPoint->SetBaseWidth(m_width);
        const auto [point, tangent] = placeAt(spPoint->GetParameter()[state]);
        spPoint->SetPlace(state, point, tangent);
    }
    const auto vWidths = GetWidths(state, tLast);
    std::optional<CPathLengths> lengths;
    if (!m_transPoints[state].empty()) lengths.emplace(vSegments);
    for (const auto& spPoint : m_transPoints[state]) {
        const uint32_t t = std::min(spPoint->GetParameter()[state], tLast);
        const auto [point, tangent] = placeAt(t);
        spPoint->SetPlace(state, point, tangent);
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
    for (const auto& spPoint : SortedByParameter(m_transPoints[state], state))
        source.vCuts.push_back(spPoint->At(state));
    source.uWidth = ToOutline(m_width[state]);
    if (m_bWave)
        source.wave = {ToOutline(std::min(GetWave(state).uStep, PATH_WIDTH_LIMIT)),
                       ToOutline(GetWave(state).uWidth)};
    return source;
}

boost::shared_ptr<const COpenPathStream::TOutlines> COpenPathStream::Build(size_t state) {
    TOutlineSource source = GetSource(state);
    const CTermAtState begin(*m_spBegin, state);
    const CTermAtState end(*m_spEnd, state);
    source.pBegin = &begin;
    source.pEnd = &end;
    if (!m_spBuilder) m_spBuilder = boost::make_shared<COutlineBuilder>();
    return boost::make_shared<const TOutlines>(m_spBuilder->Build(source));
}

bool COpenPathStream::AreStatesEqual() const {
    const auto isSettled = [](const auto& spPoint) { return spPoint->IsSettled(); };
    return std::all_of(m_lstControlPoint.begin(), m_lstControlPoint.end(), isSettled) &&
           m_width.IsSettled() && m_wave.IsSettled() && m_widthPoints.IsSettled() &&
           m_transPoints.IsSettled() && std::ranges::all_of(GetWidthPoints(), isSettled) &&
           std::ranges::all_of(GetTransPoints(), isSettled) && m_spBegin->IsSettled() && m_spEnd->IsSettled();
}

size_t COpenPathStream::CountBuiltRuns() const { return m_spBuilder ? m_spBuilder->CountRuns() : 0; }

void COpenPathStream::Update() {
    RefreshCaches(STATE_COMMITTED);
    RefreshCaches(STATE_LIVE);
    // Both outlines are replaced, or none if that fails.
    const bool bEqual = AreStatesEqual();
    const auto spCommitted = Build(STATE_COMMITTED);
    m_aspOutline = {spCommitted, bEqual ? spCommitted : Build(STATE_LIVE)};
    if (bEqual) m_spBuilder.reset();
}

void COpenPathStream::UpdateDrag() {
    RefreshCaches(STATE_LIVE);
    m_aspOutline[STATE_LIVE] = Build(STATE_LIVE);
    if (AreStatesEqual()) m_spBuilder.reset(); // the drag was cancelled
}

void COpenPathStream::Commit() {
    CPathStreamImpl::Commit();
    m_width.Commit();
    m_wave.Commit();
    m_widthPoints.Commit();
    m_transPoints.Commit();
    for (const auto& spPoint : GetWidthPoints()) spPoint->Commit();
    for (const auto& spPoint : GetTransPoints()) spPoint->Commit();
    m_spBegin->Commit();
    m_spEnd->Commit();
}

void COpenPathStream::Cancel() {
    CPathStreamImpl::Cancel();
    m_width.Cancel();
    m_wave.Cancel();
    m_widthPoints.Cancel();
    m_transPoints.Cancel();
    for (const auto& spPoint : GetWidthPoints()) spPoint->Cancel();
    for (const auto& spPoint : GetTransPoints()) spPoint->Cancel();
    m_spBegin->Cancel();
    m_spEnd->Cancel();
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
    for (const TStretchOutline& stretch : GetOutline(state)) {
        std::vector<CPathFill::TOutline> vShape{stretch.vCurve};
        vShape.insert(vShape.end(), stretch.vFolds.begin(), stretch.vFolds.end());
        fill.FillTile(vShape, {{}, szPlane}, tile);
    }
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
    for (const auto& spPoint : m_transPoints[STATE_LIVE]) spPoint->Draw(device, mapper, selection);
    for (const auto& spPoint : m_widthPoints[STATE_LIVE]) spPoint->Draw(device, mapper, selection);
    m_spBegin->Draw(device, mapper, selection);
    m_spEnd->Draw(device, mapper, selection);
    for (const auto& spPoint : m_lstControlPoint) spPoint->Draw(device, mapper, selection);
}

TPathHit COpenPathStream::HitControlPoints(const TPathPick& pick, bool bAnchor, bool bHandle,
                                           bool bTerm) const {
    TPathHit hit = HitAnchors(pick, bAnchor, bHandle);
    if (!hit) hit = HitPoints(m_widthPoints[STATE_LIVE], pick, bTerm, bTerm);
    if (!hit) hit = HitPoints(m_transPoints[STATE_LIVE], pick, bTerm, bTerm);
    if (!hit) hit = HitPoints(std::array{m_spBegin, m_spEnd}, pick, false, bTerm);
    return hit;
}

CSerializer COpenPathStream::Serialize() const {
    CSerializer writer;
    writer.SetTag(CHUNK_TAG, VERSION);
    for (const size_t n : {size_t{GetWidth()}, GetWidthPoints().size(), GetTransPoints().size(),
                           size_t{m_spBegin->GetType()}, size_t{m_spEnd->GetType()}})
        writer.WriteInt32(static_cast<int32_t>(n));
    writer.WriteBool(m_bWave);
    writer.WriteInt32(static_cast<int32_t>(GetWave().uStep));
    writer.WriteInt32(static_cast<int32_t>(GetWave().uWidth));
    writer.WriteChunk(SerializePoints());
    for (const auto& spPoint : GetWidthPoints()) writer.WriteChunk(spPoint->Serialize());
    for (const auto& spPoint : GetTransPoints()) writer.WriteChunk(spPoint->Serialize());
    writer.WriteChunk(m_spBegin->Serialize());
    writer.WriteChunk(m_spEnd->Serialize());
    return writer;
}

void COpenPathStream::Deserialize(CDeserializer& reader) {
    reader.ExpectTag(CHUNK_TAG);
    SetWidth(ReadWidth(reader));
    const auto uWidths = static_cast<uint32_t>(reader.ReadInt32());
    const auto uTrans = static_cast<uint32_t>(reader.ReadInt32());
    const auto uBegin = static_cast<uint32_t>(reader.ReadInt32());
    const auto uEnd = static_cast<uint32_t>(reader.ReadInt32());
    bool bWave = false;
    TOutlineWave wave{WAVE_STEP, WAVE_WIDTH};
    if (reader.GetVersion() >= 1) {
        bWave = reader.ReadBool();
        wave.uStep = static_cast<uint32_t>(reader.ReadInt32());
        wave.uWidth = ReadWidth(reader);
    }
    SetWave(bWave, wave);
    DeserializePoints(reader);
    m_widthPoints.Set(ReadMarks(reader, uWidths, GetWidthPoints(), [&] { return MakeWidthPoint(0); }));
    m_transPoints.Set(ReadMarks(reader, uTrans, GetTransPoints(), [&] { return MakeTransPoint(0); }));
    const uint32_t tLast = LastParameter(GetAnchors(STATE_COMMITTED));
    HoldOnPath(GetWidthPoints(), tLast);
    HoldOnPath(GetTransPoints(), tLast);
    ReadTerm(reader, uBegin, m_spBegin);
    ReadTerm(reader, uEnd, m_spEnd);
    reader.ExpectEnd();
    // A few bytes can request an outline of millions of points.
    if (m_bWave && GetWave().uWidth != 0)
        reader.Claim(CountWaveWidths(GetSource(STATE_COMMITTED)) * WAVE_POINT_BYTES);
}

boost::shared_ptr<TPathSnapshot> COpenPathStream::CreateSnapshot() const {
    const auto spSnapshot = boost::make_shared<TOpenPathSnapshot>();
    spSnapshot->chunk = Serialize();
    spSnapshot->lstControlPoint = m_lstControlPoint;
    spSnapshot->vWidth = GetWidthPoints();
    spSnapshot->vTrans = GetTransPoints();
    return spSnapshot;
}

void COpenPathStream::ApplySnapshot(const TPathSnapshot& snapshot) {
    const auto& open = dynamic_cast<const TOpenPathSnapshot&>(snapshot);
    m_lstControlPoint = open.lstControlPoint;
    SetWidthPoints(open.vWidth);
    SetTransPoints(open.vTrans);
    CDeserializer reader(open.chunk);
    Deserialize(reader);
}

std::pair<uint32_t, uint32_t> COpenPathStream::GetWidthRange(uint32_t t, size_t state) const {
    return RangeAmong(m_widthPoints[state], t, state, LastParameter(GetAnchors(state)));
}

std::pair<uint32_t, uint32_t> COpenPathStream::GetTransRange(uint32_t t, size_t state) const {
    return RangeAmong(m_transPoints[state], t, state, LastParameter(GetAnchors(state)));
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
    const bool bScales = dWidth != 1;
    m_width[STATE_LIVE] = bScales ? Scaled(GetWidth(), dWidth) : GetWidth();
    m_wave[STATE_LIVE] = bScales ? Scaled(GetWave(), dWidth) : GetWave();
}

boost::shared_ptr<CPathWidthControlPoint> COpenPathStream::MakeWidthPoint(uint32_t t) const {
    return boost::make_shared<CPathWidthControlPoint>(weak_from_this(), CDualValue<uint32_t>(t), GetWidth());
}

boost::shared_ptr<CPathTransControlPoint> COpenPathStream::MakeTransPoint(uint32_t t) const {
    return boost::make_shared<CPathTransControlPoint>(weak_from_this(), CDualValue<uint32_t>(t));
}

boost::shared_ptr<CPathWidthControlPoint> COpenPathStream::AddWidthPoint(uint32_t t) {
    const auto spPoint = MakeWidthPoint(t);
    m_widthPoints = DualWith(m_widthPoints, spPoint);
    return spPoint;
}

boost::shared_ptr<CPathTransControlPoint> COpenPathStream::AddTransPoint(uint32_t t) {
    const auto spPoint = MakeTransPoint(t);
    m_transPoints = DualWith(m_transPoints, spPoint);
    return spPoint;
}

void COpenPathStream::SetWidthPoints(TWidthPoints vWidth) {
    SetLiveWidthPoints(std::move(vWidth));
    m_widthPoints.Commit();
}

void COpenPathStream::SetTransPoints(TTransPoints vTrans) {
    SetLiveTransPoints(std::move(vTrans));
    m_transPoints.Commit();
}

void COpenPathStream::SetLiveWidthPoints(TWidthPoints vWidth) {
    for (const auto& spPoint : vWidth) spPoint->SetLine(weak_from_this());
    m_widthPoints[STATE_LIVE] = std::move(vWidth);
}

void COpenPathStream::SetLiveTransPoints(TTransPoints vTrans) {
    for (const auto& spPoint : vTrans) spPoint->SetLine(weak_from_this());
    m_transPoints[STATE_LIVE] = std::move(vTrans);
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
