#include "core/PathObject/PathControlPoint.h"

#include "core/Base/Failure.h"

namespace {

constexpr CPoint ABSENT{-1, -1};

bool IsAllZero(const CDualValue<CPoint>& value) { return IsZero(value[0]) && IsZero(value[1]); }

// A handle that can be stored: a component of -1 would be read as no handle, so it is moved by an eighth of
// a pixel immediately; an undo from the stored form then gives the same curve.
CPoint Storable(CPoint handle) { return {handle.x == -1 ? 0 : handle.x, handle.y == -1 ? 0 : handle.y}; }
CDualValue<CPoint> Storable(const CDualValue<CPoint>& value) {
    return DualOf([&](size_t state) { return Storable(value[state]); });
}

// The opposite of a handle that is not zero, with the length `uLength`.
CPoint Opposite(CPoint handle, uint32_t uLength) {
    const uint32_t uOwn = LengthDown(handle);
    return Storable(CPoint{MulDiv(-handle.x, uLength, uOwn), MulDiv(-handle.y, uLength, uOwn)});
}

// A handle that exists only in a drag is not committed.
void WriteHandle(CSerializer& writer, CPoint handle) { writer.WritePoint(IsZero(handle) ? ABSENT : handle); }

// A stored handle; -1 in either component means none.
void ReadHandle(CDeserializer& reader, bool& bHas, CDualValue<CPoint>& value) {
    const CPoint pt = reader.ReadPoint();
    bHas = pt.x != -1 && pt.y != -1 && !IsZero(pt);
    value.Set(bHas ? CheckedCoordinates(pt) : CPoint{});
}

} // namespace

void CPathControlPoint::Draw(IPathDevice& device, const TPathMapper& mapper,
                             const TPathSelection& selection) const {
    const CPoint pt = m_anchor[STATE_LIVE];
    const CPoint ptWindow = mapper(pt);
    if (selection.ShowsHandlesOf(*this)) {
        if (m_bBack) DrawHandle(device, ptWindow, mapper(pt + m_back[STATE_LIVE]), selection, HIT_BACK);
        if (m_bFore) DrawHandle(device, ptWindow, mapper(pt + m_fore[STATE_LIVE]), selection, HIT_FORE);
    }
    DrawMark(device, ptWindow, selection);
}

CSerializer CPathControlPoint::Serialize() const {
    CSerializer writer;
    writer.SetTag(CHUNK_TAG, 0);
    writer.WritePoint(m_anchor[STATE_COMMITTED]);
    WriteHandle(writer, GetBack(STATE_COMMITTED));
    WriteHandle(writer, GetFore(STATE_COMMITTED));
    return writer;
}

void CPathControlPoint::Deserialize(CDeserializer& reader) {
    reader.ExpectTag(CHUNK_TAG);
    m_anchor.Set(CheckedCoordinates(reader.ReadPoint()));
    ReadHandle(reader, m_bBack, m_back);
    ReadHandle(reader, m_bFore, m_fore);
    reader.ExpectEnd();
}

TPathHit CPathControlPoint::HitMark(const TPathPick& pick) {
    return pick.At(m_anchor[STATE_LIVE], HIT_ANCHOR, shared_from_this());
}

TPathHit CPathControlPoint::HitHandle(const TPathPick& pick) {
    if (!pick.selection.ShowsHandlesOf(*this)) return {};
    const CPoint pt = m_anchor[STATE_LIVE];
    TPathHit hit;
    if (m_bFore) hit = pick.At(pt + m_fore[STATE_LIVE], HIT_FORE, shared_from_this());
    if (m_bBack) hit = Nearer(hit, pick.At(pt + m_back[STATE_LIVE], HIT_BACK, shared_from_this()));
    return hit;
}

bool CPathControlPoint::IsSettled() const {
    return m_anchor.IsSettled() && (!m_bBack || m_back.IsSettled()) && (!m_bFore || m_fore.IsSettled());
}

void CPathControlPoint::Commit() {
    m_anchor.Commit();
    SetBack(CDualValue<CPoint>(GetBack(STATE_LIVE)));
    SetFore(CDualValue<CPoint>(GetFore(STATE_LIVE)));
}

void CPathControlPoint::Cancel() {
    m_anchor.Cancel();
    SetBack(CDualValue<CPoint>(GetBack(STATE_COMMITTED)));
    SetFore(CDualValue<CPoint>(GetFore(STATE_COMMITTED)));
}

void CPathControlPoint::SetBack(const CDualValue<CPoint>& value) {
    m_back = Storable(value);
    m_bBack = !IsAllZero(m_back);
}

void CPathControlPoint::SetFore(const CDualValue<CPoint>& value) {
    m_fore = Storable(value);
    m_bFore = !IsAllZero(m_fore);
}

boost::shared_ptr<CDualValue<CPoint>> CPathControlPoint::DragHandle(THandle (CPathControlPoint::*fnOwn)(),
                                                                    THandle (CPathControlPoint::*fnOther)(),
                                                                    bool bSymmetric) {
    const THandle own = (this->*fnOwn)();
    if (!own.bHas) own.value = {};
    auto spCopy =
        MakeDragCopy<CPoint>(own.value, [=, spThis = shared_from_this()](const CDualValue<CPoint>& copy) {
            const THandle handle = (spThis.get()->*fnOwn)();
            const THandle other = (spThis.get()->*fnOther)();
            const CDualValue<CPoint> value = Storable(copy);
            if (IsAllZero(value)) {
                handle.bHas = false;
                return;
            }
            if (bSymmetric && other.bHas) {
                const uint32_t uLength = LengthDown(other.value[STATE_COMMITTED]);
                const auto turns = [&](size_t state) {
                    return value[state] != handle.value[state] && !IsZero(value[state]);
                };
                if (turns(STATE_COMMITTED)) other.value.Set(Opposite(value[STATE_COMMITTED], uLength));
                if (turns(STATE_LIVE)) other.value[STATE_LIVE] = Opposite(value[STATE_LIVE], uLength);
            }
            handle.value = value;
        });
    own.bHas = true;
    return spCopy;
}

boost::shared_ptr<CDualValue<CPoint>> CPathControlPoint::DragBackHandle(bool bSymmetric) {
    return DragHandle(&CPathControlPoint::Back, &CPathControlPoint::Fore, bSymmetric);
}

boost::shared_ptr<CDualValue<CPoint>> CPathControlPoint::DragForeHandle(bool bSymmetric) {
    return DragHandle(&CPathControlPoint::Fore, &CPathControlPoint::Back, bSymmetric);
}

boost::shared_ptr<CDualValue<CPoint>> CPathControlPoint::DragAnchorPoint(bool) {
    return MakeDragCopy<CPoint>(
        m_anchor, [spThis = shared_from_this()](const CDualValue<CPoint>& copy) { spThis->m_anchor = copy; });
}

void CPathControlPoint::MapTo(size_t state, size_t from, const boost::function<CPoint(CPoint)>& fnMap) {
    const CPoint ptFrom = m_anchor[from];
    const CPoint ptAnchor = fnMap(ptFrom);
    const auto mapHandle = [&](CDualValue<CPoint>& handle) {
        handle[state] = Storable(fnMap(ptFrom + handle[from]) - ptAnchor);
    };
    if (m_bBack) mapHandle(m_back);
    if (m_bFore) mapHandle(m_fore);
    m_anchor[state] = ptAnchor;
}

void CPathControlPoint::Transform(const boost::function<CPoint(CPoint)>& fnMap) {
    for (const size_t state : {STATE_COMMITTED, STATE_LIVE}) MapTo(state, state, fnMap);
}

void CPathControlPoint::TransformLive(const boost::function<CPoint(CPoint)>& fnMap) {
    MapTo(STATE_LIVE, STATE_COMMITTED, fnMap);
}

void CPathControlPoint::Assign(const CPathControlPoint& from) {
    m_anchor = from.m_anchor;
    m_bBack = from.m_bBack;
    m_back = from.m_back;
    m_bFore = from.m_bFore;
    m_fore = from.m_fore;
}
