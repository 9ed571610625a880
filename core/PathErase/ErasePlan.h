// The stretches that a vector eraser takes away, and the pieces that stay.
#pragma once

#include "core/PathErase/StrokeCrossing.h"
#include "core/PathToolBase/PathCut.h"

/// How much of a touched stroke goes. The numbers are stored in the settings.
enum EEraseMode : int {
    ERASE_WHOLE = 0,       ///< all of it
    ERASE_TO_CROSSING = 1, ///< from the crossing before the touched place to the next one
    ERASE_TOUCHED = 2,     ///< what the eraser covers
    ERASE_MODES
};

/// A stretch that goes, and the ends that the pieces on its sides get.
struct TErasedStretch {
    TLineStretch stretch;
    TCutEnd before;
    TCutEnd behind;
};

struct TErasedPath {
    boost::shared_ptr<CPathObject> spPath;
    boost::shared_ptr<const CStrokeLine> spLine;
    bool bWhole = false;
    std::vector<TErasedStretch>
        vStretches; ///< sorted, apart from each other; of a path that goes whole its line
};

/// All that goes of a layer's paths, the lowest path first. Closed paths go as a whole, by ERASE_WHOLE only.
std::vector<TErasedPath> PlanErase(const CVectorLayerBuffer& layer, CStrokeLines& lines,
                                   const TEraserWay& eraser, EEraseMode mode);

/// The pieces that stay, in the path's direction; none that has no paint. Raises refused_error when an
/// outline cannot be built.
std::vector<boost::shared_ptr<CPathObject>> MakeRest(const TErasedPath& erased);
