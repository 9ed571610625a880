// The canvas of an operation on the image, and the window that asked for it.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/Platform/Platform.h"

struct TImageRun {
    boost::shared_ptr<CCanvasBuffer> spCanvas; ///< complete strokes have been merged
    const TPlatform& platform;
    IWindow* pOwner = nullptr; ///< of dialogs and boxes
    CPoint ptCentre;           ///< the canvas pixel in the middle of the user's view, where a preview begins

    /// Work that can be cancelled without a loss.
    TLongWork GetLongWork() const { return {pOwner, L"処理中", true}; }
};
