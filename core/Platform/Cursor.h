// The shapes that the pointer takes over a canvas.
#pragma once

enum class ECursor {
    Arrow,
    Forbidden, ///< the tool cannot work on the layer
    Cross,     ///< precise placing; the tool draws its own circle or icon around
    Hand,      ///< the canvas can be dragged
    HandGrip,  ///< the canvas is being dragged
};
