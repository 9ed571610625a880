#include "core/PathSelect/StrokesHistory.h"

#include "core/PathObject/PathBytes.h"

#include <algorithm>
#include <numeric>

namespace {

void Apply(const TStrokes& vPaths, const TPathStates& vStates) {
    for (size_t n = 0; n < vPaths.size(); ++n) vPaths[n]->ApplySnapshot(*vStates[n]);
}

size_t BytesOf(const TPathStates& vStates) {
    return std::accumulate(vStates.begin(), vStates.end(), size_t{}, [](size_t n, const auto& spState) {
        return n + spState->chunk.GetWhole().size();
    });
}

bool IsSame(const TPathStates& vA, const TPathStates& vB) {
    return std::ranges::equal(vA, vB, [](const auto& spA, const auto& spB) {
        return spA->spSamples == spB->spSamples && spA->chunk.GetWhole() == spB->chunk.GetWhole();
    });
}

} // namespace

CStrokesChangeHistory::CStrokesChangeHistory(std::wstring strLabel, TStrokes vPaths, TPathStates vBefore,
                                             TPathStates vAfter)
    : CHistory(std::move(strLabel)), m_vPaths(std::move(vPaths)), m_vBefore(std::move(vBefore)),
      m_vAfter(std::move(vAfter)) {}

void CStrokesChangeHistory::Undo() { Apply(m_vPaths, m_vBefore); }
void CStrokesChangeHistory::Redo() { Apply(m_vPaths, m_vAfter); }
size_t CStrokesChangeHistory::CountBytes() const { return BytesOf(m_vBefore) + BytesOf(m_vAfter); }

CStrokesBefore::CStrokesBefore(const TStrokes& vPaths) : m_vPaths(vPaths), m_vBefore(StatesOf(vPaths)) {}

TPathStates CStrokesBefore::StatesOf(const TStrokes& vPaths) {
    TPathStates vStates;
    for (const auto& spPath : vPaths) vStates.push_back(spPath->CreateSnapshot());
    return vStates;
}

void CStrokesBefore::Restore() const { Apply(m_vPaths, m_vBefore); }

boost::shared_ptr<CStrokesChangeHistory> CStrokesBefore::MakeHistory(const std::wstring& strLabel) const {
    TPathStates vAfter = StatesOf(m_vPaths);
    if (IsSame(m_vBefore, vAfter)) return {};
    return boost::make_shared<CStrokesChangeHistory>(strLabel, m_vPaths, m_vBefore, std::move(vAfter));
}

template <bool bAdd>
CStrokesAddDelHistory<bAdd>::CStrokesAddDelHistory(std::wstring strLabel,
                                                   const boost::shared_ptr<CVectorLayerBuffer>& spLayer,
                                                   TStrokes vPaths)
    : CHistory(std::move(strLabel)), m_wpLayer(spLayer), m_vPaths(std::move(vPaths)),
      m_vPlaces(m_vPaths.size()) {
    std::iota(m_vPlaces.begin(), m_vPlaces.end(), static_cast<int>(spLayer->GetPaths().size()));
}

template <bool bAdd>
void CStrokesAddDelHistory<bAdd>::Apply(bool bInsert) {
    const auto spLayer = m_wpLayer.lock();
    if (!spLayer) return;
    if (bInsert)
        spLayer->InsertPaths(m_vPaths, m_vPlaces);
    else
        m_vPlaces = spLayer->RemovePaths(m_vPaths);
    m_bHolds = !bInsert;
}

template <bool bAdd>
size_t CStrokesAddDelHistory<bAdd>::CountBytes() const {
    if (!m_bHolds) return 0;
    return std::accumulate(m_vPaths.begin(), m_vPaths.end(), size_t{},
                           [](size_t n, const auto& spPath) { return n + GetPathBytes(*spPath); });
}

template class CStrokesAddDelHistory<true>;
template class CStrokesAddDelHistory<false>;
