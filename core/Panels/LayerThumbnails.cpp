#include "core/Panels/LayerThumbnails.h"

#include "core/LayerBuffer/VectorLayerBuffer.h"

#include <algorithm>

namespace {

constexpr int BLOCKS_AT_ONCE = 8;  ///< composed in one call: about a millisecond
constexpr int LAYERS_AT_ONCE = 64; ///< looked through in one call

bool HasThumbnail(const CLayerBuffer& layer) {
    const bool bVector = dynamic_cast<const CVectorLayerBuffer*>(&layer) != nullptr;
    return layer.IsClipping() && (layer.IsVisible() || !bVector);
}

} // namespace

CLayerThumbnails::TPicturePtr CLayerThumbnails::Get(const TLayerPtr& spLayer) const {
    const auto it = m_mapPictures.find(spLayer);
    return it == m_mapPictures.end() ? TPicturePtr() : it->second;
}

void CLayerThumbnails::Clean() {
    std::erase_if(m_mapPictures, [](const auto& entry) { return entry.first.expired(); });
}

bool CLayerThumbnails::Update(CCanvasBuffer& canvas, const std::vector<TLayerPtr>& vLayers, uint32_t uTick,
                              bool& bChanged) {
    canvas.FlushCanvasUpdates();
    // A block that no view has composed since its last change is not counted again.
    const uint64_t uChanges = canvas.GetCounters().GetChanges() + canvas.GetHistory().GetChangeCount();
    const auto isSame = [](const TLayerPtr& sp, const CLayerBuffer* p) { return sp.get() == p; };
    if (uChanges != m_uChanges || !std::ranges::equal(vLayers, m_vLayers, isSame)) {
        m_uChanges = uChanges;
        m_vLayers.clear();
        for (const TLayerPtr& spLayer : vLayers) m_vLayers.push_back(spLayer.get());
        m_idxNext = 0;
        m_uChangedTick = uTick;
    }
    if (uTick - m_uChangedTick < PAUSE_MS) return false;
    int nBlocks = BLOCKS_AT_ONCE;
    for (int nLayers = LAYERS_AT_ONCE; m_idxNext < vLayers.size() && nLayers > 0; --nLayers) {
        const TLayerPtr& spLayer = vLayers[m_idxNext];
        if (HasThumbnail(*spLayer)) {
            const auto& spPlane = spLayer->GetDrawBuffer();
            while (const auto pt = spPlane->FindDirty()) {
                if (nBlocks-- == 0) return true;
                spLayer->GetPicture().UpdateBlock(*pt);
            }
            TPicturePtr& spPicture = m_mapPictures[spLayer];
            if (!spPicture || spLayer->GetPicture().IsThumbnailStale()) {
                spPicture = spLayer->GetPicture().CopyThumbnail();
                bChanged = true;
            }
        }
        ++m_idxNext;
    }
    return m_idxNext < vLayers.size();
}
