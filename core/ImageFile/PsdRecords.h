// Conversion of a layer tree to the flat list of records that a layered PSD file holds.
#pragma once

#include "core/LayerBuffer/LayerBuffer.h"

#include <vector>

enum class EPsdRecord {
    Content,    ///< pixels: the layer's own content
    Picture,    ///< pixels: the layer composed with everything below it
    GroupEnd,   ///< the lower bracket of a group, no pixels
    GroupStart, ///< the upper bracket, which carries the group's name
};

struct TPsdRecord {
    EPsdRecord kind;
    CLayerBuffer* pLayer;
    bool bVisible;
    bool bClipped; ///< clipped to the next record below that is not clipped
};

/// The records of everything below `root`, the bottom one first.
std::vector<TPsdRecord> ListPsdRecords(const CLayerBuffer& root);
