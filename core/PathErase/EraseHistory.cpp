#include "core/PathErase/EraseHistory.h"

#include "core/Base/Failure.h"
#include "core/PathObject/PathBytes.h"

#include <algorithm>

CErasePathsHistory::CErasePathsHistory(std::wstring strLabel,
                                       const boost::shared_ptr<CVectorLayerBuffer>& spLayer)
    : CHistory(std::move(strLabel)), m_wpLayer(spLayer) {
    int nPlace = 0;
    for (const auto& spPath : spLayer->GetPaths()) m_mapPlaces[spPath.get()] = nPlace++;
}

void CErasePathsHistory::Erase(const boost::shared_ptr<CPathObject>& spPath, const TPaths& vPieces) {
    const auto spLayer = m_wpLayer.lock();
    if (!spLayer || !spLayer->HasPath(*spPath)) throw internal_error(L"CErasePathsHistory: object not found");
    const auto itPlace = m_mapPlaces.find(spPath.get());
    std::vector<TErased> vErased = m_vErased;
    if (itPlace != m_mapPlaces.end()) {
        const auto it = std::ranges::upper_bound(vErased, itPlace->second, {}, &TErased::nPlace);
        vErased.insert(it, {spPath, vPieces, itPlace->second});
    } else {
        const auto holds = [&](const TErased& erased) {
            return std::ranges::count(erased.vPieces, spPath) != 0;
        };
        const auto it = std::ranges::find_if(vErased, holds);
        if (it == vErased.end()) throw internal_error(L"CErasePathsHistory: not a piece");
        const auto itPiece = it->vPieces.erase(std::ranges::find(it->vPieces, spPath));
        it->vPieces.insert(itPiece, vPieces.begin(), vPieces.end());
    }
    int idx = spLayer->RemovePath(spPath);
    const int nFirst = idx;
    try {
        for (const auto& spPiece : vPieces) spLayer->InsertPath(spPiece, idx++);
    } catch (...) {
        for (const auto& spPiece : vPieces) spLayer->RemovePath(spPiece);
        spLayer->InsertPath(spPath, nFirst);
        throw;
    }
    m_vErased = std::move(vErased);
}

void CErasePathsHistory::Undo() {
    const auto spLayer = m_wpLayer.lock();
    if (!spLayer) return;
    for (const TErased& erased : m_vErased)
        for (const auto& spPiece : erased.vPieces) spLayer->RemovePath(spPiece);
    for (const TErased& erased : m_vErased) spLayer->InsertPath(erased.spPath, erased.nPlace);
    m_bDone = false;
}

void CErasePathsHistory::Redo() {
    const auto spLayer = m_wpLayer.lock();
    if (!spLayer) return;
    for (const TErased& erased : m_vErased) spLayer->RemovePath(erased.spPath);
    // From the top: the places below are not moved by what is inserted.
    for (size_t n = m_vErased.size(); n-- > 0;) {
        int idx = m_vErased[n].nPlace - static_cast<int>(n);
        for (const auto& spPiece : m_vErased[n].vPieces) spLayer->InsertPath(spPiece, idx++);
    }
    m_bDone = true;
}

size_t CErasePathsHistory::CountBytes() const {
    size_t nBytes = 0;
    for (const TErased& erased : m_vErased) {
        if (m_bDone) nBytes += GetPathBytes(*erased.spPath);
        for (size_t n = 0; !m_bDone && n < erased.vPieces.size(); ++n)
            nBytes += GetPathBytes(*erased.vPieces[n]);
    }
    return nBytes;
}
