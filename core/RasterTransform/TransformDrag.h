// How a drag changes the corners of the quadrilateral that pixels are mapped to.
#pragma once

#include "core/RasterTransform/TransformMap.h"

#include <cstdint>
#include <optional>

/// The numbers of the settings and of the option pane's rows.
enum ETransformMode : int {
    TRANSFORM_SCALE,
    TRANSFORM_SKEW,
    TRANSFORM_ROTATE,
    TRANSFORM_FREE,
};
constexpr int TRANSFORM_MODES = 4;

/// The part that a press takes hold of.
struct TTransformGrip {
    enum class EKind { Corner, Inside, Outside };
    EKind kind = EKind::Outside;
    size_t nCorner = 0;
};

struct TTransformDrag {
    ETransformMode mode;
    TTransformGrip grip;
    TQuad quad;        ///< at the press
    TPosition ptPress; ///< of the pointer
};

/// The corners while the pointer is at `ptNow`. Shift keeps proportions (scale), keeps to steps of 15 degrees
/// (rotate) and to one direction (inside); with Alt corners move around the centre. A rectangle's corners
/// stay on whole pixels when it is scaled or moved.
TQuad DragQuad(const TTransformDrag& drag, TPosition ptNow, uint32_t flags);

/// The fixed changes of the option pane.
enum class EFixedTransform { TurnRight, TurnHalf, TurnLeft, FlipAcross, FlipDown };
/// Turns of a rectangle of w by h at whole pixels by a quarter put its left top at left + (w - h) / 2 and
/// top + (h - w) / 2, divided toward zero; others turn around the middle.
TQuad FixedQuad(const TQuad& quad, EFixedTransform fixed);

/// The mean of the corners.
TPosition MiddleOf(const TQuad& quad);
