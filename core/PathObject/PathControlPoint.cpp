#include "core/PathObject/PathControlPoint.h"

#include "core/Base/Failure.h"

namespace {

constexpr CPoint ABSENT{-1, -1};

bool IsAllZero(const CDualValue<CPoint>& value) { return IsZero(value[0]) && IsZero(value[1]); }

// The opposite of a handle, with the length `uLength`.
CPoint Opposite(CPoint handle, uint32_t uLength) {
    const uint32_t uOwn = LengthDown(handle);
    if (uOwn == 0) return {};
    return {MulDiv(-handle.x, uLength, uOwn), MulDiv(-handle.y, uLength, uOwn)};
}

// A handle as it is stored: a component of -1 would be read as no handle, so it moves by an eighth of a
// pixel. A handle that so far only a drag has is none yet.
CPoint Storable(CPoint handle) {
    const CPoint pt{handle.x == -1 ? 0 : handle.x, handle.y == -1 ? 0 : handle.y};
    return IsZero(pt) ? ABSENT : pt;
}

// A stored handle; -1 in either component stands for none.
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
    if (selection.bAllHandles || selection.setSelected.contains(this)) {
        if (m_bBack) DrawHandle(device, ptWindow, mapper(pt + m_back[STATE_LIVE]), selection);
        if (m_bFore) DrawHandle(device, ptWindow, mapper(pt + m_fore[STATE_LIVE]), selection);
    }
    DrawMark(device, ptWindow, selection);
}

CSerializer CPathControlPoint::Serialize() const {
    CSerializer writer;
    writer.SetTag(CHUNK_TAG, 0);
    writer.WritePoint(m_anchor[STATE_COMMITTED]);
    writer.WritePoint(Storable(GetBack(STATE_COMMITTED)));
    writer.WritePoint(Storable(GetFore(STATE_COMMITTED)));
    return writer;
}

void CPathControlPoint::Deserialize(CDeserializer& reader) {
    reader.ExpectTag(CHUNK_TAG);
    m_anchor.Set(CheckedCoordinates(reader.ReadPoint()));
    ReadHandle(reader, m_bBack, m_back);
    ReadHandle(reader, m_bFore, m_fore);
    reader.ExpectEnd();
}

TPathHit CPathControlPoint::HitHandle(const TPathPick& pick) {
    const CPoint pt = m_anchor[STATE_LIVE];
    // The anchor first: a short handle must not cover it.
    if (pick.IsNear(pt)) return {HIT_ANCHOR, shared_from_this()};
    if (m_bFore && pick.IsNear(pt + m_fore[STATE_LIVE])) return {HIT_FORE, shared_from_this()};
    if (m_bBack && pick.IsNear(pt + m_back[STATE_LIVE])) return {HIT_BACK, shared_from_this()};
    return {};
}

bool CPathControlPoint::IsSettled() const {
    return m_anchor.IsSettled() && (!m_bBack || m_back.IsSettled()) && (!m_bFore || m_fore.IsSettled());
}

void CPathControlPoint::SetBack(const CDualValue<CPoint>& value) {
    m_back = value;
    m_bBack = !IsAllZero(value);
}

void CPathControlPoint::SetFore(const CDualValue<CPoint>& value) {
    m_fore = value;
    m_bFore = !IsAllZero(value);
}

boost::shared_ptr<CDualValue<CPoint>> CPathControlPoint::DragHandle(THandle (CPathControlPoint::*fnOwn)(),
                                                                    THandle (CPathControlPoint::*fnOther)(),
                                                                    bool bSymmetric) {
    const THandle own = (this->*fnOwn)();
    if (!own.bHas) own.value = {};
    own.bHas = true;
    return MakeDragCopy<CPoint>(own.value, [=, spThis = shared_from_this()](const CDualValue<CPoint>& copy) {
        const THandle handle = (spThis.get()->*fnOwn)();
        const THandle other = (spThis.get()->*fnOther)();
        if (IsAllZero(copy)) {
            handle.bHas = false;
            return;
        }
        if (bSymmetric && other.bHas) {
            const uint32_t uLength = LengthDown(other.value[STATE_COMMITTED]);
            if (copy[STATE_COMMITTED] != handle.value[STATE_COMMITTED])
                other.value.Set(Opposite(copy[STATE_COMMITTED], uLength));
            if (copy[STATE_LIVE] != handle.value[STATE_LIVE])
                other.value[STATE_LIVE] = Opposite(copy[STATE_LIVE], uLength);
        }
        handle.value = copy;
    });
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

void CPathControlPoint::Transform(const boost::function<CPoint(CPoint)>& fnMap) {
    const auto mapHandle = [&](CDualValue<CPoint>& handle, size_t state, CPoint ptAnchor) {
        handle[state] = fnMap(m_anchor[state] + handle[state]) - ptAnchor;
    };
    for (const size_t state : {STATE_COMMITTED, STATE_LIVE}) {
        const CPoint ptAnchor = fnMap(m_anchor[state]);
        if (m_bBack) mapHandle(m_back, state, ptAnchor);
        if (m_bFore) mapHandle(m_fore, state, ptAnchor);
        m_anchor[state] = ptAnchor;
    }
}

void CPathControlPoint::Assign(const CPathControlPoint& from) {
    m_anchor = from.m_anchor;
    m_bBack = from.m_bBack;
    m_back = from.m_back;
    m_bFore = from.m_bFore;
    m_fore = from.m_fore;
}
