#include "core/LayerBuffer/LayerFactory.h"

#include "core/Base/Failure.h"
#include "core/LayerBuffer/LayerSetBuffer.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/LayerBuffer/VectorLayerBuffer.h"

#include <boost/make_shared.hpp>

TLayerPtr CreateLayerByTag(uint32_t uTag) {
    if (uTag == CRasterLayerBuffer::CHUNK_TAG) return boost::make_shared<CRasterLayerBuffer>();
    if (uTag == CVectorLayerBuffer::CHUNK_TAG) return boost::make_shared<CVectorLayerBuffer>();
    if (uTag == CLayerSetBuffer::CHUNK_TAG) return boost::make_shared<CLayerSetBuffer>();
    throw deserialize_error();
}
