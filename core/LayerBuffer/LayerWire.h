// The wire form of layers: the `LAYB` chunk that every layer has, and the chunks of the kinds around it.
#pragma once

#include "core/LayerBuffer/LayerBuffer.h"

/// The chunk of a layer's state and of its children.
CSerializer SerializeBase(const CLayerBuffer& layer);

/// Reads that chunk into a layer that was just created; raises deserialize_error.
void DeserializeBase(CLayerBuffer& layer, CDeserializer& reader);
