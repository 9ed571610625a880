// How often each level stands in a picture.
#pragma once

#include "core/Base/Geometry.h"
#include "core/RasterKernel/LevelKernel.h"

class CRasterBuffer;
class CSelectBuffer;

/// Counts the plane's pixels by the largest of the channels whose bits are set (bit 0 alpha, 1 blue or grey,
/// 2 green, 3 red), without transparent ones and, with a selection, without those that are not selected.
TLevelCounts CountPicture(CRasterBuffer& plane, CSelectBuffer* pSelect, uint32_t uChannels);

/// Limits every counter to one percent of a picture's pixels, at least 1, so that its paper does not flatten
/// the rest.
void LimitCounts(TLevelCounts& aCounts, CSize szPicture);
