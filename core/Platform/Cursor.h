// The pointer shapes over a canvas.
#pragma once

enum class ECursor {
    Arrow,
    Forbidden, ///< the tool cannot work on the layer
    Cross,     ///< precise positioning; the tool draws its own circle or icon around it
    Select,    ///< a press selects the path under the pointer
    Move,      ///< a press drags the point or handle under the pointer
    Add,       ///< a press adds a point
    Remove,    ///< a press removes the point under the pointer
    Join,      ///< a press or release joins two paths
    Width,     ///< a press begins a stretch of the path whose width changes
    Hand,      ///< the canvas can be dragged
    HandGrip,  ///< the canvas is being dragged
};
