// Positions of the MDI children for cascade and tile: arithmetic only.
#pragma once

#include <QRect>
#include <QSize>

#include <vector>

/// Overlapping children, each shifted by a step to the right and down; starts again at the top left near
/// the area's end.
std::vector<QRect> CascadeRects(QSize szArea, int nCount, int nStep);
/// Children that fill the area. Stacked: from top to bottom, in floor(sqrt(count)) columns; otherwise side
/// by side, in as many rows.
std::vector<QRect> TileRects(QSize szArea, int nCount, bool bStacked);
