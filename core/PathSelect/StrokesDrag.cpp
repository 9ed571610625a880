#include "core/PathSelect/StrokesDrag.h"

CStrokesDrag::CStrokesDrag(CVectorLayerBuffer& layer, const TStrokes& vPaths) : m_before(vPaths) {
    layer.SetLivePaths(vPaths);
}

void CStrokesDrag::Show(const TStrokeMap& map) {
    m_map = map;
    CPathObject::TransformLive(m_before.GetPaths(), map, map.dWidth);
}

boost::shared_ptr<CHistory> CStrokesDrag::Commit(const std::wstring& strLabel) {
    try {
        for (const auto& spPath : m_before.GetPaths()) spPath->CommitDrag();
        return m_before.MakeHistory(strLabel);
    } catch (...) {
        Cancel();
        throw;
    }
}

// Some may have been committed already.
void CStrokesDrag::Cancel() { m_before.Restore(); }
