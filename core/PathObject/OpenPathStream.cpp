#include "core/PathObject/OpenPathStream.h"

#include "core/Base/Failure.h"
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
void ReadMarks(CDeserializer& reader, uint32_t uCount, TPoints& vKnown, Make make) {
    TPoints vPoints;
    for (uint32_t u = 0; u < uCount; ++u) {
        CDeserializer chunk;
        reader.ReadChunk(chunk);
        vPoints.push_back(u < vKnown.size() ? vKnown[u] : make());
        vPoints.back()->Deserialize(chunk);
    }
    vKnown = std::move(vPoints);
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

// The marks sorted along the path.
template <class TPoints>
TPoints SortedByParameter(TPoints vPoints, size_t state) {
    std::stable_sort(vPoints.begin(), vPoints.end(), [&](const auto& spA, const auto& spB) {
        return spA->GetParameter()[state] < spB->GetParameter()[state];
    });
    return vPoints;
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

// The new parameter after the segment before the anchor `idx` was divided at the fraction `f`.
uint32_t AfterInsertion(uint32_t t, size_t idx, uint32_t f) {
    const uint32_t tDivided = static_cast<uint32_t>(idx == 0 ? 0 : idx - 1) * BEZIER_T_RESOLUTION;
    if (t < tDivided || (idx > 0 && t == tDivided)) return t;
    if (idx == 0 || t - tDivided >= BEZIER_T_RESOLUTION) return t + BEZIER_T_RESOLUTION;
    const uint32_t uFraction = t - tDivided;
    if (uFraction < f) return tDivided + static_cast<uint32_t>(MulDiv(uFraction, BEZIER_T_RESOLUTION, f));
    const uint32_t uRest = BEZIER_T_RESOLUTION - f;
    return tDivided + BEZIER_T_RESOLUTION +
           (uRest == 0 ? 0 : static_cast<uint32_t>(MulDiv(uFraction - f, BEZIER_T_RESOLUTION, uRest)));
}

// The marks of the segment that is removed with the path's first or last anchor.
struct TEndRemoval {
    uint32_t tBegin; ///< of that segment
    bool bFirst;     ///< the first anchor is removed

    bool Drops(uint32_t t) const {
        const uint32_t tEnd = tBegin + BEZIER_T_RESOLUTION;
        return bFirst ? t < tEnd : t > tBegin;
    }
};

} // namespace

COpenPathStream::COpenPathStream()
    : m_aspOutline{boost::make_shared<const TOutlines>(), boost::make_shared<const TOutlines>()},
      m_spBegin(CreateOpenPathTerm(TERM_SHARP, true)),
      m_spEnd(CreateOpenPathTerm(TERM_SHARP, false)), m_wave{WAVE_STEP, WAVE_WIDTH} {}

std::vector<TOutlineWidth> COpenPathStream::GetWidths(size_t state, uint32_t tLast) const {
    std::map<uint32_t, TOutlineWidth> mapWidthOrig;
    for (const auto& spPoint : m_vWidth) {
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
    for (const auto& spPoint : m_vWidth) {
        spPoint->SetBaseWidth(m_uWidth);
        const auto [point, tangent] = placeAt(spPoint->GetParameter()[state]);
        spPoint->SetPlace(state, point, tangent);
    }
    const auto vWidths = GetWidths(state, tLast);
    std::optional<CPathLengths> lengths;
    if (!m_vTrans.empty()) lengths.emplace(vSegments);
    for (const auto& spPoint : m_vTrans) {
        const uint32_t t = std::min(spPoint->GetParameter()[state], tLast);
        const auto [point, tangent] = placeAt(t);
        spPoint->SetPlace(state, point, tangent);
        spPoint->SetWidths(state, WidthAt(*lengths, vWidths, m_uWidth, t, SIDE_LEFT),
                           WidthAt(*lengths, vWidths, m_uWidth, t, SIDE_RIGHT));
    }
    const TOutlineWidth plain{0, {m_uWidth, m_uWidth}};
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
    for (const auto& spPoint : SortedByParameter(m_vTrans, state)) source.vCuts.push_back(spPoint->At(state));
    source.uWidth = ToOutline(m_uWidth);
    if (m_bWave)
        source.wave = {ToOutline(std::min(m_wave.uStep, PATH_WIDTH_LIMIT)), ToOutline(m_wave.uWidth)};
    return source;
}

void COpenPathStream::Rebuild(size_t state) {
    TOutlineSource source = GetSource(state);
    const CTermAtState begin(*m_spBegin, state);
    const CTermAtState end(*m_spEnd, state);
    source.pBegin = &begin;
    source.pEnd = &end;
    m_aspOutline[state] = boost::make_shared<const TOutlines>(BuildOutline(source));
}

bool COpenPathStream::AreStatesEqual() const {
    const auto isSettled = [](const auto& spPoint) { return spPoint->IsSettled(); };
    return std::all_of(m_lstControlPoint.begin(), m_lstControlPoint.end(), isSettled) &&
           std::all_of(m_vWidth.begin(), m_vWidth.end(), isSettled) &&
           std::all_of(m_vTrans.begin(), m_vTrans.end(), isSettled) && m_spBegin->IsSettled() &&
           m_spEnd->IsSettled();
}

void COpenPathStream::Update() {
    RefreshCaches(STATE_COMMITTED);
    RefreshCaches(STATE_LIVE);
    Rebuild(STATE_COMMITTED);
    if (AreStatesEqual()) {
        m_aspOutline[STATE_LIVE] = m_aspOutline[STATE_COMMITTED];
        return;
    }
    Rebuild(STATE_LIVE);
}

void COpenPathStream::UpdateDrag() {
    RefreshCaches(STATE_LIVE);
    Rebuild(STATE_LIVE);
}

void COpenPathStream::Commit() {
    CPathStreamImpl::Commit();
    for (const auto& spPoint : m_vWidth) spPoint->Commit();
    for (const auto& spPoint : m_vTrans) spPoint->Commit();
    m_spBegin->Commit();
    m_spEnd->Commit();
}

void COpenPathStream::Cancel() {
    CPathStreamImpl::Cancel();
    for (const auto& spPoint : m_vWidth) spPoint->Cancel();
    for (const auto& spPoint : m_vTrans) spPoint->Cancel();
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
    for (const auto& spPoint : m_vTrans) spPoint->Draw(device, mapper, selection);
    for (const auto& spPoint : m_vWidth) spPoint->Draw(device, mapper, selection);
    m_spBegin->Draw(device, mapper, selection);
    m_spEnd->Draw(device, mapper, selection);
    for (const auto& spPoint : m_lstControlPoint) spPoint->Draw(device, mapper, selection);
}

TPathHit COpenPathStream::HitControlPoints(const TPathPick& pick, bool bAnchor, bool bHandle,
                                           bool bTerm) const {
    TPathHit hit = HitAnchors(pick, bAnchor, bHandle);
    if (!hit) hit = HitPoints(m_vWidth, pick, bTerm, bTerm);
    if (!hit) hit = HitPoints(m_vTrans, pick, bTerm, bTerm);
    if (!hit) hit = HitPoints(std::array{m_spBegin, m_spEnd}, pick, false, bTerm);
    return hit;
}

CSerializer COpenPathStream::Serialize() const {
    CSerializer writer;
    writer.SetTag(CHUNK_TAG, VERSION);
    for (const size_t n : {size_t{m_uWidth}, m_vWidth.size(), m_vTrans.size(), size_t{m_spBegin->GetType()},
                           size_t{m_spEnd->GetType()}})
        writer.WriteInt32(static_cast<int32_t>(n));
    writer.WriteBool(m_bWave);
    writer.WriteInt32(static_cast<int32_t>(m_wave.uStep));
    writer.WriteInt32(static_cast<int32_t>(m_wave.uWidth));
    writer.WriteChunk(SerializePoints());
    for (const auto& spPoint : m_vWidth) writer.WriteChunk(spPoint->Serialize());
    for (const auto& spPoint : m_vTrans) writer.WriteChunk(spPoint->Serialize());
    writer.WriteChunk(m_spBegin->Serialize());
    writer.WriteChunk(m_spEnd->Serialize());
    return writer;
}

void COpenPathStream::Deserialize(CDeserializer& reader) {
    reader.ExpectTag(CHUNK_TAG);
    m_uWidth = ReadWidth(reader);
    const auto uWidths = static_cast<uint32_t>(reader.ReadInt32());
    const auto uTrans = static_cast<uint32_t>(reader.ReadInt32());
    const auto uBegin = static_cast<uint32_t>(reader.ReadInt32());
    const auto uEnd = static_cast<uint32_t>(reader.ReadInt32());
    m_bWave = false;
    m_wave = {WAVE_STEP, WAVE_WIDTH};
    if (reader.GetVersion() >= 1) {
        m_bWave = reader.ReadBool();
        m_wave.uStep = static_cast<uint32_t>(reader.ReadInt32());
        m_wave.uWidth = ReadWidth(reader);
    }
    DeserializePoints(reader);
    ReadMarks(reader, uWidths, m_vWidth, [&] { return MakeWidthPoint(0); });
    ReadMarks(reader, uTrans, m_vTrans, [&] { return MakeTransPoint(0); });
    const uint32_t tLast = LastParameter(GetAnchors(STATE_COMMITTED));
    HoldOnPath(m_vWidth, tLast);
    HoldOnPath(m_vTrans, tLast);
    ReadTerm(reader, uBegin, m_spBegin);
    ReadTerm(reader, uEnd, m_spEnd);
    reader.ExpectEnd();
    // A few bytes can request an outline of millions of points.
    if (m_bWave && m_wave.uWidth != 0)
        reader.Claim(CountWaveWidths(GetSource(STATE_COMMITTED)) * WAVE_POINT_BYTES);
}

boost::shared_ptr<TPathSnapshot> COpenPathStream::CreateSnapshot() const {
    const auto spSnapshot = boost::make_shared<TOpenPathSnapshot>();
    spSnapshot->chunk = Serialize();
    spSnapshot->lstControlPoint = m_lstControlPoint;
    spSnapshot->vWidth = m_vWidth;
    spSnapshot->vTrans = m_vTrans;
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
    return RangeAmong(m_vWidth, t, state, LastParameter(GetAnchors(state)));
}

std::pair<uint32_t, uint32_t> COpenPathStream::GetTransRange(uint32_t t, size_t state) const {
    return RangeAmong(m_vTrans, t, state, LastParameter(GetAnchors(state)));
}

void COpenPathStream::SetWave(bool bEnable, const TOutlineWave& wave) {
    m_bWave = bEnable;
    m_wave = wave;
}

boost::shared_ptr<CPathWidthControlPoint> COpenPathStream::MakeWidthPoint(uint32_t t) const {
    return boost::make_shared<CPathWidthControlPoint>(weak_from_this(), CDualValue<uint32_t>(t), m_uWidth);
}

boost::shared_ptr<CPathTransControlPoint> COpenPathStream::MakeTransPoint(uint32_t t) const {
    return boost::make_shared<CPathTransControlPoint>(weak_from_this(), CDualValue<uint32_t>(t));
}

boost::shared_ptr<CPathWidthControlPoint> COpenPathStream::AddWidthPoint(uint32_t t) {
    m_vWidth.push_back(MakeWidthPoint(t));
    return m_vWidth.back();
}

boost::shared_ptr<CPathTransControlPoint> COpenPathStream::AddTransPoint(uint32_t t) {
    m_vTrans.push_back(MakeTransPoint(t));
    return m_vTrans.back();
}

void COpenPathStream::SetWidthPoints(TWidthPoints vWidth) {
    for (const auto& spPoint : vWidth) spPoint->SetLine(weak_from_this());
    m_vWidth = std::move(vWidth);
}

void COpenPathStream::SetTransPoints(TTransPoints vTrans) {
    for (const auto& spPoint : vTrans) spPoint->SetLine(weak_from_this());
    m_vTrans = std::move(vTrans);
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

void COpenPathStream::OnInserted(size_t idx, uint32_t f) {
    const auto move = [&](const auto& spMark) {
        CDualValue<uint32_t> t = spMark->GetParameter();
        for (const size_t state : {STATE_COMMITTED, STATE_LIVE}) t[state] = AfterInsertion(t[state], idx, f);
        spMark->SetParameter(t);
    };
    std::for_each(m_vWidth.begin(), m_vWidth.end(), move);
    std::for_each(m_vTrans.begin(), m_vTrans.end(), move);
}

// The segments beside an inner anchor become one; their marks move to the nearest places of it, in their
// order and at least a unit apart. Marks at its ends stay there.
template <class TPoints>
void COpenPathStream::KeepOnMerged(const TPoints& vMarks, size_t idx) {
    const uint32_t tBegin = static_cast<uint32_t>(idx - 1) * BEZIER_T_RESOLUTION;
    const uint32_t tEnd = tBegin + 2 * BEZIER_T_RESOLUTION;
    std::vector<CDualValue<uint32_t>> vPlaces;
    for (const auto& spMark : vMarks) vPlaces.push_back(spMark->GetParameter());
    for (const size_t state : {STATE_COMMITTED, STATE_LIVE}) {
        const TPoints vSorted = SortedByParameter(vMarks, state);
        const std::vector<CBezier> vMerged{
            SegmentOf(GetControlPoint(idx - 1)->At(state), GetControlPoint(idx + 1)->At(state))};
        TPoints vInside;
        for (const auto& spMark : vSorted) {
            const uint32_t t = spMark->GetParameter()[state];
            if (t > tBegin && t < tEnd) vInside.push_back(spMark);
        }
        std::vector<uint32_t> vNew(vInside.size());
        const auto nLeast = [](size_t i) { return static_cast<uint32_t>(i + 1); };
        for (size_t i = 0; i < vInside.size(); ++i) {
            const uint32_t t = vInside[i]->GetParameter()[state];
            const uint32_t f = SearchNearOnLine(vMerged, PointAt(t, state)).t;
            vNew[i] = std::max(f, i == 0 ? nLeast(0) : vNew[i - 1] + 1);
        }
        for (size_t i = vInside.size(); i-- > 0;)
            vNew[i] = std::min(vNew[i], i + 1 == vInside.size() ? BEZIER_T_RESOLUTION - 1 : vNew[i + 1] - 1);
        for (size_t m = 0; m < vMarks.size(); ++m) {
            const auto it = std::find(vInside.begin(), vInside.end(), vMarks[m]);
            uint32_t& t = vPlaces[m][state];
            if (it != vInside.end())
                t = tBegin + vNew[static_cast<size_t>(it - vInside.begin())];
            else if (t >= tEnd)
                t -= BEZIER_T_RESOLUTION;
        }
    }
    for (size_t m = 0; m < vMarks.size(); ++m) vMarks[m]->SetParameter(vPlaces[m]);
}

void COpenPathStream::OnRemoving(size_t idx) {
    const size_t nCount = m_lstControlPoint.size();
    if (nCount == 1) throw internal_error(L"RemoveControlPoint: zero anchor");
    if (idx != 0 && idx + 1 != nCount) {
        KeepOnMerged(m_vWidth, idx);
        KeepOnMerged(m_vTrans, idx);
        return;
    }
    const bool bFirst = idx == 0;
    const TEndRemoval removal{bFirst ? 0 : static_cast<uint32_t>(idx - 1) * BEZIER_T_RESOLUTION, bFirst};
    const auto drops = [&](const auto& spMark) {
        return removal.Drops(spMark->GetParameter()[STATE_COMMITTED]);
    };
    std::erase_if(m_vWidth, drops);
    // Cuts are removed in pairs: a single one would hide the rest of the stroke.
    const TTransPoints vSorted = SortedByParameter(m_vTrans, STATE_COMMITTED);
    TTransPoints lst;
    for (size_t i = 0; i + 1 < vSorted.size(); i += 2)
        if (!drops(vSorted[i]) && !drops(vSorted[i + 1])) lst.insert(lst.end(), {vSorted[i], vSorted[i + 1]});
    SELF_CHECK(defect_logic, lst.size() % 2 == 0);
    m_vTrans = std::move(lst);
    if (!bFirst) return;
    const auto move = [](const auto& spMark) {
        CDualValue<uint32_t> t = spMark->GetParameter();
        for (const size_t state : {STATE_COMMITTED, STATE_LIVE}) t[state] -= BEZIER_T_RESOLUTION;
        spMark->SetParameter(t);
    };
    std::for_each(m_vWidth.begin(), m_vWidth.end(), move);
    std::for_each(m_vTrans.begin(), m_vTrans.end(), move);
}
