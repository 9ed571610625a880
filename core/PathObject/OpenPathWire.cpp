// The stored form of an open path, and its undo states.
#include "core/PathObject/OpenPathStream.h"

#include "core/Base/Failure.h"
#include "core/PathOutline/Wave.h"

#include <boost/make_shared.hpp>

#include <algorithm>

namespace {

constexpr uint32_t VERSION = 1; ///< version 0 had no wave
/// The opacity marks are attached to the path: a reader that does not know them shows it opaque.
constexpr uint32_t TAG_ALPHAS = MakeTag("POOA");
/// Bytes counted for a wave's width point, a third of its real size: a drawn stroke has so many bytes in
/// the file that no valid document comes near the limit.
constexpr uint64_t WAVE_POINT_BYTES = 2 * 3 * sizeof(CPoint);

uint32_t ReadWidth(CDeserializer& reader) {
    const auto uWidth = static_cast<uint32_t>(reader.ReadInt32());
    if (!IsStorableWidth(uWidth)) throw deserialize_error();
    return uWidth;
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

template <class TPoint>
void WriteMarks(CSerializer& writer, const TPathMarks<TPoint>& vMarks) {
    for (const auto& spMark : vMarks) writer.WriteChunk(spMark->Serialize());
}

} // namespace

// Reads the counted marks; existing ones are reused.
template <class TPoint>
void COpenPathStream::ReadMarks(CDeserializer& reader, uint32_t uCount) {
    const auto& vKnown = GetMarks<TPoint>();
    TPathMarks<TPoint> vMarks;
    for (uint32_t u = 0; u < uCount; ++u) {
        CDeserializer chunk;
        reader.ReadChunk(chunk);
        vMarks.push_back(u < vKnown.size() ? vKnown[u] : MakeMark<TPoint>(0));
        vMarks.back()->Deserialize(chunk);
    }
    SetMarks(std::move(vMarks));
}

CSerializer COpenPathStream::Serialize() const {
    CSerializer writer = SerializeShape();
    if (const auto spSamples = GetSamples()) writer.Attach(spSamples->Serialize());
    return writer;
}

CSerializer COpenPathStream::SerializeShape() const {
    CSerializer writer;
    writer.SetTag(CHUNK_TAG, VERSION);
    for (const size_t n : {size_t{GetWidth()}, GetWidthPoints().size(), GetTransPoints().size(),
                           size_t{m_spBegin->GetType()}, size_t{m_spEnd->GetType()}})
        writer.WriteInt32(static_cast<int32_t>(n));
    writer.WriteBool(m_bWave);
    writer.WriteInt32(static_cast<int32_t>(GetWave().uStep));
    writer.WriteInt32(static_cast<int32_t>(GetWave().uWidth));
    writer.WriteChunk(SerializePoints());
    WriteMarks(writer, GetWidthPoints());
    WriteMarks(writer, GetTransPoints());
    writer.WriteChunk(m_spBegin->Serialize());
    writer.WriteChunk(m_spEnd->Serialize());
    if (GetAlphaPoints().empty()) return writer;
    CSerializer alphas;
    alphas.SetTag(TAG_ALPHAS, 0);
    alphas.WriteInt32(static_cast<int32_t>(GetAlphaPoints().size()));
    WriteMarks(alphas, GetAlphaPoints());
    writer.Attach(std::move(alphas));
    return writer;
}

void COpenPathStream::Deserialize(CDeserializer& reader) {
    reader.ExpectTag(CHUNK_TAG);
    SetWidth(ReadWidth(reader));
    const auto uWidths = static_cast<uint32_t>(reader.ReadInt32());
    const auto uTrans = static_cast<uint32_t>(reader.ReadInt32());
    const auto uBegin = static_cast<uint32_t>(reader.ReadInt32());
    const auto uEnd = static_cast<uint32_t>(reader.ReadInt32());
    m_bWave = false;
    TOutlineWave wave = DEFAULT_WAVE;
    if (reader.GetVersion() >= 1) {
        m_bWave = reader.ReadBool();
        wave.uStep = static_cast<uint32_t>(reader.ReadInt32());
        wave.uWidth = ReadWidth(reader);
    }
    m_wave.Set(wave);
    DeserializePoints(reader);
    ReadMarks<CPathWidthControlPoint>(reader, uWidths);
    ReadMarks<CPathTransControlPoint>(reader, uTrans);
    CDeserializer alphas;
    const bool bAlphas = reader.FindAttached(TAG_ALPHAS, alphas);
    ReadMarks<CPathAlphaControlPoint>(alphas, bAlphas ? static_cast<uint32_t>(alphas.ReadInt32()) : 0);
    if (bAlphas) alphas.ExpectEnd();
    const uint32_t tLast = LastParameter(GetAnchors(STATE_COMMITTED));
    ForEachKind([&](const auto& marks) { HoldOnPath(marks[STATE_COMMITTED], tLast); });
    ReadTerm(reader, uBegin, m_spBegin);
    ReadTerm(reader, uEnd, m_spEnd);
    reader.ExpectEnd();
    CDeserializer samples;
    m_spSamples =
        reader.FindAttached(TInkSamples::CHUNK_TAG, samples) ? TInkSamples::Deserialize(samples) : nullptr;
    m_fnLiveMap.clear();
    // A few bytes can request an outline of millions of points.
    if (m_bWave && GetWave().uWidth != 0)
        reader.Claim(CountWaveWidths(GetSource(STATE_COMMITTED)) * WAVE_POINT_BYTES);
}

boost::shared_ptr<TPathSnapshot> COpenPathStream::CreateSnapshot() const {
    const auto spSnapshot = boost::make_shared<TOpenPathSnapshot>();
    spSnapshot->chunk = SerializeShape();
    spSnapshot->spSamples = m_spSamples;
    spSnapshot->lstControlPoint = m_lstControlPoint;
    spSnapshot->vWidth = GetWidthPoints();
    spSnapshot->vTrans = GetTransPoints();
    spSnapshot->vAlpha = GetAlphaPoints();
    return spSnapshot;
}

void COpenPathStream::ApplySnapshot(const TPathSnapshot& snapshot) {
    const auto& open = dynamic_cast<const TOpenPathSnapshot&>(snapshot);
    m_lstControlPoint = open.lstControlPoint;
    SetWidthPoints(open.vWidth);
    SetTransPoints(open.vTrans);
    SetAlphaPoints(open.vAlpha);
    CDeserializer reader(open.chunk);
    Deserialize(reader);
    m_spSamples = open.spSamples;
}

uint32_t COpenPathStream::HashShape() const {
    uint32_t uHash = 2166136261; // FNV-1a
    const auto add = [&](auto value) {
        for (int nShift = 0; nShift < 32; nShift += 8)
            uHash = (uHash ^ (static_cast<uint32_t>(value) >> nShift & 0xFF)) * 16777619;
    };
    for (const auto& spPoint : m_lstControlPoint) {
        const TOutlinePoint point = spPoint->At(STATE_COMMITTED);
        for (const CPoint pt : {point.anchor, point.back, point.fore}) add(pt.x), add(pt.y);
    }
    ForEachKind([&](const auto& marks) {
        add(marks[STATE_COMMITTED].size());
        for (const auto& spMark : marks[STATE_COMMITTED]) add(spMark->GetParameter()[STATE_COMMITTED]);
    });
    for (const auto& spMark : GetWidthPoints())
        for (const EPathSide side : {SIDE_LEFT, SIDE_RIGHT}) add(spMark->GetMultiple(side)[STATE_COMMITTED]);
    for (const auto& spMark : GetAlphaPoints()) add(spMark->GetAlpha()[STATE_COMMITTED]);
    return uHash;
}

boost::shared_ptr<const TInkSamples> COpenPathStream::GetSamples() const {
    return m_spSamples && m_spSamples->uShape == HashShape() ? m_spSamples : nullptr;
}

void COpenPathStream::SetSamples(TInkSamples samples) {
    samples.uShape = HashShape();
    m_spSamples = boost::make_shared<const TInkSamples>(std::move(samples));
}

void COpenPathStream::Transform(const boost::function<CPoint(CPoint)>& fnMap) {
    const auto spSamples = GetSamples();
    CPathStreamImpl::Transform(fnMap);
    if (spSamples) SetSamples(spSamples->Mapped(fnMap));
}
