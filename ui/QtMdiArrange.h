// Where the MDI children go when they are laid out: arithmetic only.
#pragma once

#include <QRect>
#include <QSize>

#include <vector>

/// Overlapping children, each a step further to the right and down, starting anew when the area's end is
/// near.
std::vector<QRect> CascadeRects(QSize szArea, int nCount, int nStep);
/// Children that fill the area. Stacked: from top to bottom, in as many columns as the square root of the
/// count has whole units; otherwise side by side, in as many rows.
std::vector<QRect> TileRects(QSize szArea, int nCount, bool bStacked);
