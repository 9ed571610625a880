// The pointer shapes over a canvas.
#pragma once

enum class ECursor {
    Arrow,
    Forbidden, ///< the tool cannot work on the layer
    Cross,     ///< precise positioning; the tool draws its own circle or icon around it
    Hand,      ///< the canvas can be dragged
    HandGrip,  ///< the canvas is being dragged
};
