// How the path tool finds the ends of paths, and joins two that are dragged together.
#include "core/PathToolBase/PathTool.h"
#include "core/PathToolBase/PathToolHistory.h"

#include <boost/pointer_cast.hpp>

#include <utility>

namespace {

CPoint EndOf(const TPathEnd& end, size_t state) {
    const COpenPathStream& stream = end.spPath->GetStream();
    return stream.GetControlPoint(end.bFirst ? 0 : stream.ControlPointCount() - 1)->GetAnchor()[state];
}

} // namespace

TPathEnd CPathTool::FindEnd(CVectorLayerBuffer& layer, CPoint pt, uint32_t flags,
                            const CPathObject* pExcept) const {
    const int32_t nReach = GetReach(flags);
    int64_t nNearest = int64_t{nReach} * nReach;
    TPathEnd found;
    for (const auto& spPath : layer.GetPaths()) {
        const auto spOpen = boost::dynamic_pointer_cast<COpenPathObject>(spPath);
        if (!spOpen || spOpen.get() == pExcept) continue;
        for (const bool bFirst : {true, false}) {
            const TPathEnd end{spOpen, bFirst};
            const int64_t nDistance = WindowDistance(EndOf(end, STATE_COMMITTED), pt);
            if (nDistance > nNearest || (nDistance == nNearest && found.spPath)) continue;
            nNearest = nDistance;
            found = end;
        }
    }
    return found;
}

// The open path's end that is dragged; null for any other drag.
TPathEnd CPathTool::DraggedEnd() const {
    if (!m_spHandle || m_spInstallPath || m_spHandle->GetPart().kind != HIT_ANCHOR) return {};
    const auto spPath = boost::dynamic_pointer_cast<COpenPathObject>(m_spHandle->GetPath());
    const auto spPoint = boost::dynamic_pointer_cast<CPathControlPoint>(m_spHandle->GetPart().spPoint);
    if (!spPath || !spPoint) return {};
    const size_t idx = spPath->GetStream().IndexOf(*spPoint);
    if (idx != 0 && idx + 1 != spPath->GetStream().ControlPointCount()) return {};
    return {spPath, idx == 0};
}

void CPathTool::OnDragged(CPoint pt, uint32_t flags) {
    m_join = {};
    const TPathEnd dragged = DraggedEnd();
    if (!dragged.spPath || (flags & POINTER_ALT)) return;
    const auto spLayer = GetVectorLayer();
    m_join = FindEnd(*spLayer, pt, flags, dragged.spPath.get());
    // The ends are shown as one.
    if (m_join.spPath)
        m_spHandle->OnDrag(EndOf(m_join, STATE_COMMITTED) - EndOf(dragged, STATE_COMMITTED), flags);
}

void CPathTool::CommitHandle() {
    const TPathEnd target = std::exchange(m_join, {});
    const TPathEnd dragged = DraggedEnd();
    if (!target.spPath || !dragged.spPath) return CPathToolBase::CommitHandle();
    m_spHandle->OnCancel();
    const auto spLayer = GetVectorLayer();
    const TOpenPathPtr spJoined = JoinPaths(dragged, target);
    const auto spHistory = boost::make_shared<CCombinePathHistory>(
        L"パスの結合", spLayer, CReplacePathsHistory::TPaths{dragged.spPath, target.spPath}, spJoined);
    spHistory->Redo();
    RegisterHistory(spHistory);
    Select(*spLayer, spJoined);
}
