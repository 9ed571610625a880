// The part of a stroke that the pen has not drawn yet: shown, never kept.
#pragma once

#include "core/RasterStamp/StampTarget.h"

#include <vector>

struct TCtlPoint;

/// The points with the expected ones behind them: none at `nPredict` 1, eight at 2, twelve at 3, each 9/10 of
/// the last distance on, and then the last one `uWindow` + 2 more times, so that the smoothing reaches it.
std::vector<TCtlPoint> PredictPoints(const std::vector<TCtlPoint>& vPoints, int nPredict, uint32_t uWindow);

/// Flags what has to be painted again when `plane` takes the place of `shown` on the screen: what is flagged
/// in that, and every tile but those that both share.
void FlagDifferences(CStrokePlane& plane, const CStrokePlane& shown);

/// A plane that shares the tiles of `main` and takes the place of `pOld` (if any) on the screen: tiles that
/// only the old one has are there, empty; dirty is what is dirty in either, or differs from the old one.
boost::shared_ptr<CStrokePlane> MakePredictPlane(CStrokePlane& main, CStrokePlane* pOld);
