// Layers by their chunk tags.
#pragma once

#include "core/LayerBuffer/LayerBuffer.h"

/// Creates a layer of the class for a chunk tag, to be deserialized; raises deserialize_error for an
/// unknown tag.
TLayerPtr CreateLayerByTag(uint32_t uTag);
