// The layers' thumbnails on white paper, brought up to date a few blocks at a time.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/Platform/Tree.h"

#include <cstdint>
#include <map>
#include <vector>

class CLayerThumbnails {
public:
    using TPicturePtr = boost::shared_ptr<const TPicture>;

    /// The thumbnail as it was last brought up to date; null before that, and for a layer set.
    TPicturePtr Get(const TLayerPtr& spLayer) const;
    /// Once the canvas has not changed for PAUSE_MS milliseconds (`uTick` is the time now), composes some of
    /// the stale blocks of these layers, which belong to the canvas, and makes the thumbnails of those that
    /// have no stale block left: a hand that goes on drawing is not delayed. A hidden vector layer keeps its
    /// thumbnail. True while there is more to do now; `bChanged` is set when there is a new thumbnail.
    bool Update(CCanvasBuffer& canvas, const std::vector<TLayerPtr>& vLayers, uint32_t uTick, bool& bChanged);
    static constexpr uint32_t PAUSE_MS = 200;
    /// Forgets the layers that no longer exist.
    void Clean();

private:
    std::map<boost::weak_ptr<CLayerBuffer>, TPicturePtr> m_mapPictures;
    uint64_t m_uChanges = UINT64_MAX; ///< of the canvas, when it was last seen to change
    uint32_t m_uChangedTick = 0;      ///< when that was
    std::vector<const CLayerBuffer*> m_vLayers;
    size_t m_idxNext = 0; ///< the layer to go on with
};
