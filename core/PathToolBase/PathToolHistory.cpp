#include "core/PathToolBase/PathToolHistory.h"

#include "core/Base/Failure.h"
#include "core/PathObject/PathBytes.h"
#include "core/PathObject/PathObjects.h"

#include <algorithm>
#include <numeric>

namespace {

size_t BytesOfAll(const CReplacePathsHistory::TPaths& vPaths) {
    return std::accumulate(vPaths.begin(), vPaths.end(), size_t{},
                           [](size_t n, const auto& spPath) { return n + GetPathBytes(*spPath); });
}

// Nothing is changed unless all paths are there.
void ExpectOnLayer(const CVectorLayerBuffer& layer, const CReplacePathsHistory::TPaths& vPaths) {
    for (const auto& spPath : vPaths)
        if (!layer.HasPath(*spPath)) throw internal_error(L"CReplacePathsHistory: object not found");
}

bool IsOpen(const boost::shared_ptr<CPathObject>& spPath) {
    return dynamic_cast<const COpenPathObject*>(spPath.get());
}

} // namespace

template <int kind>
CAddDelPathHistory<kind>::CAddDelPathHistory(const boost::shared_ptr<CVectorLayerBuffer>& spLayer,
                                             const boost::shared_ptr<CPathObject>& spPath, int idx,
                                             const wchar_t* pszLabel)
    : CHistory(pszLabel), m_wpLayer(spLayer), m_spPath(spPath), m_idx(idx),
      m_bHolds(!spLayer->HasPath(*spPath)) {}

template <int kind>
void CAddDelPathHistory<kind>::Apply(bool bInsert) {
    const auto spLayer = m_wpLayer.lock();
    if (!spLayer) return;
    if (bInsert) {
        spLayer->InsertPath(m_spPath, m_idx);
    } else if (spLayer->RemovePath(m_spPath) < 0) {
        throw internal_error(kind == 0 ? L"CAddPathHistory: object not found"
                                       : L"CDelPathHistory: object not found");
    }
    m_bHolds = !bInsert;
}

template <int kind>
size_t CAddDelPathHistory<kind>::CountBytes() const {
    return m_bHolds ? GetPathBytes(*m_spPath) : 0;
}

template class CAddDelPathHistory<0>;
template class CAddDelPathHistory<1>;

CReplacePathsHistory::CReplacePathsHistory(std::wstring strLabel,
                                           const boost::shared_ptr<CVectorLayerBuffer>& spLayer,
                                           const TPaths& vOld, const TPaths& vNew)
    : CHistory(std::move(strLabel)), m_wpLayer(spLayer), m_vOld(vOld), m_vNew(vNew), m_vPlaces(vOld.size()) {}

void CReplacePathsHistory::Redo() {
    const auto spLayer = m_wpLayer.lock();
    if (!spLayer) return;
    ExpectOnLayer(*spLayer, m_vOld);
    int idx = 0;
    for (size_t i = 0; i < m_vOld.size(); ++i) {
        m_vPlaces[i] = spLayer->RemovePath(m_vOld[i]);
        // The first one's place moves down with each path that is removed below it.
        if (i == 0)
            idx = m_vPlaces[i];
        else if (m_vPlaces[i] < idx)
            --idx;
    }
    for (const auto& spPath : m_vNew) spLayer->InsertPath(spPath, idx++);
    m_bDone = true;
}

void CReplacePathsHistory::Undo() {
    const auto spLayer = m_wpLayer.lock();
    if (!spLayer) return;
    ExpectOnLayer(*spLayer, m_vNew);
    for (const auto& spPath : m_vNew) spLayer->RemovePath(spPath);
    for (size_t i = m_vOld.size(); i-- > 0;) spLayer->InsertPath(m_vOld[i], m_vPlaces[i]);
    m_bDone = false;
}

size_t CReplacePathsHistory::CountBytes() const { return BytesOfAll(m_bDone ? m_vOld : m_vNew); }

CCombinePathHistory::CCombinePathHistory(const wchar_t* pszLabel,
                                         const boost::shared_ptr<CVectorLayerBuffer>& spLayer,
                                         const TPaths& vOld, const boost::shared_ptr<CPathObject>& spJoined)
    : CReplacePathsHistory(pszLabel, spLayer, vOld, {spJoined}) {
    if (!IsOpen(vOld.front()) || !IsOpen(spJoined))
        throw internal_error(L"CCombinePathHistory: strmOrigin isn't OpenPath");
    if (!IsOpen(vOld.back())) throw internal_error(L"CCombinePathHistory: strmRemove isn't OpenPath");
}
