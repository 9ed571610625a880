// The predicted continuation of a stroke: shown, never kept.
#pragma once

#include "core/RasterStamp/StampTarget.h"

#include <vector>

struct TCtlPoint;

/// Appends the predicted points: none at `nPredict` 1, eight at 2, twelve at 3, each 9/10 of the last
/// distance on, then repeats the last one `uWindow` + 2 times, so that the smoothing reaches it.
std::vector<TCtlPoint> PredictPoints(const std::vector<TCtlPoint>& vPoints, int nPredict, uint32_t uWindow);

/// Flags what must be repainted when `plane` replaces `shown` on the screen: the flags of `shown`, and
/// every tile that the planes do not share.
void FlagDifferences(CStrokePlane& plane, const CStrokePlane& shown);

/// Makes a plane that shares the tiles of `main` and replaces `pOld` (if any) on the screen. Tiles that
/// only the old one has are added empty; a tile is dirty if it is in either, or differs from the old one.
boost::shared_ptr<CStrokePlane> MakePredictPlane(CStrokePlane& main, CStrokePlane* pOld);
