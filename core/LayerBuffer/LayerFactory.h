// Layers by their chunk tags.
#pragma once

#include "core/LayerBuffer/LayerBuffer.h"

/// A new layer of the class that a chunk tag names, to be deserialized; raises deserialize_error for a tag
/// that no class has.
TLayerPtr CreateLayerByTag(uint32_t uTag);
