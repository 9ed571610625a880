#include "core/LayerBuffer/LayerSetBuffer.h"

#include <boost/make_shared.hpp>

TLayerPtr CLayerSetBuffer::CreateLike(const TCanvasPtr& spCanvas) const { return CreateLayerSet(spCanvas); }

boost::shared_ptr<CLayerSetBuffer> CreateLayerSet(const TCanvasPtr& spCanvas) {
    auto spLayer = boost::make_shared<CLayerSetBuffer>();
    spLayer->Create(spCanvas);
    return spLayer;
}
