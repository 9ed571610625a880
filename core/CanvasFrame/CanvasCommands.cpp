#include "core/CanvasFrame/CanvasCommands.h"

#include "core/AppModule/AppModule.h"
#include "core/CanvasFrame/CanvasFrame.h"
#include "core/CanvasFrame/ImageCommands.h"
#include "core/CanvasFrame/LayerCommands.h"
#include "core/Commands/CommandIds.h"
#include "core/Commands/Commands.h"
#include "core/ImageDialogs/ImageRun.h"
#include "core/Platform/Progress.h"
#include "core/RasterMove/SelectionCommands.h"

namespace {

using TFrameAct = void (*)(CCanvasFrame& frame);
using TFrameTest = bool (*)(CCanvasFrame& frame);
using TToolAct = bool (CTools::*)();
using TToolTest = bool (CTools::*)() const;

CCommandTable::TAct WithFrame(const boost::function<void(CCanvasFrame&, int)>& fn) {
    return [fn](int nId) {
        const auto spFrame = g_wpActiveFrame.lock();
        if (spFrame && spFrame->GetWindow()) fn(*spFrame, nId);
    };
}

CCommandTable::TTest AskFrame(const boost::function<bool(CCanvasFrame&, int)>& fn) {
    return [fn](int nId) {
        const auto spFrame = g_wpActiveFrame.lock();
        return spFrame && fn(*spFrame, nId);
    };
}

bool IsIdle(CCanvasFrame& frame) {
    const auto spTool = frame.GetInput().GetTool();
    return !spTool || spTool->GetState() == STATE_IDLE;
}

bool IsToolOpen(CCanvasFrame& frame) {
    const auto spTool = frame.GetInput().GetTool();
    return spTool && spTool->IsOpen();
}

bool IsOwnDocument(CCanvasFrame&) { return !g_bFilterBuild; }
bool IsAnyFrame(CCanvasFrame&) { return true; }

bool CanUndo(CCanvasFrame& frame) {
    CCanvasBuffer& canvas = *frame.GetCanvas();
    // While something is dragged or drawn, undo takes that back.
    if (canvas.GetHistory().IsUnfinished()) return true;
    // A stroke is undoable as soon as it ends, even while it is still being rendered.
    return IsIdle(frame) && (canvas.GetHistory().CanUndo() || canvas.HasPendingWork() || IsToolOpen(frame));
}

bool CanRedo(CCanvasFrame& frame) {
    CCanvasBuffer& canvas = *frame.GetCanvas();
    return IsIdle(frame) && !canvas.GetHistory().IsUnfinished() && canvas.GetHistory().CanRedo() &&
           !canvas.HasPendingWork() && !IsToolOpen(frame);
}

void Turn(CCanvasFrame& frame, int nDegrees) {
    TViewState view = frame.GetView().GetState();
    view.uAngle = static_cast<uint16_t>((view.uAngle + nDegrees) % 360);
    frame.ApplyView(view);
}

void Flip(CCanvasFrame& frame, bool TViewState::*pFlip) {
    TViewState view = frame.GetView().GetState();
    view.*pFlip = !(view.*pFlip);
    frame.ApplyView(view);
}

void ShowInitially(CCanvasFrame& frame) { frame.ApplyView({frame.GetView().GetState().uZoom}); }

// By the tool where it selects something itself, else of the canvas.
void ChangeSelected(CCanvasFrame& frame, int nId,
                    bool (*pfnChange)(const boost::shared_ptr<CCanvasBuffer>& spCanvas)) {
    const auto spTool = frame.GetInput().GetTool();
    frame.EditTree([&] {
        return spTool && spTool->CanCommand(nId) ? spTool->OnCommand(nId) : pfnChange(frame.GetCanvas());
    });
}

struct TFrameCommand {
    int nId;
    TFrameAct fnDo;
    TFrameTest fnEnabled;
    TFrameTest fnChecked;
};

const TFrameCommand FRAME_COMMANDS[] = {
    {ID_FILE_SAVE, [](CCanvasFrame& frame) { frame.Save(false); }, IsOwnDocument, nullptr},
    {ID_FILE_SAVE_AS, [](CCanvasFrame& frame) { frame.Save(true); }, IsOwnDocument, nullptr},
    {ID_FILE_EXPORT, [](CCanvasFrame& frame) { frame.Export(); }, IsAnyFrame, nullptr},
    {ID_EDIT_UNDO, [](CCanvasFrame& frame) { frame.StepHistory(true); }, CanUndo, nullptr},
    {ID_EDIT_REDO, [](CCanvasFrame& frame) { frame.StepHistory(false); }, CanRedo, nullptr},
    // Both work with any tool and layer.
    {ID_SELECT_ALL, [](CCanvasFrame& frame) { ChangeSelected(frame, ID_SELECT_ALL, SelectAll); }, IsIdle,
     nullptr},
    {ID_SELECT_NONE, [](CCanvasFrame& frame) { ChangeSelected(frame, ID_SELECT_NONE, Deselect); }, IsIdle,
     nullptr},
    {ID_VIEW_FIT, [](CCanvasFrame& frame) { frame.FitView(); }, IsAnyFrame, nullptr},
    {ID_VIEW_FLIP_V, [](CCanvasFrame& frame) { Flip(frame, &TViewState::bFlipV); }, IsAnyFrame,
     [](CCanvasFrame& frame) { return frame.GetView().GetState().bFlipV; }},
    {ID_VIEW_FLIP_H, [](CCanvasFrame& frame) { Flip(frame, &TViewState::bFlipH); }, IsAnyFrame,
     [](CCanvasFrame& frame) { return frame.GetView().GetState().bFlipH; }},
    {ID_VIEW_ROTATE_RIGHT, [](CCanvasFrame& frame) { Turn(frame, 90); }, IsAnyFrame, nullptr},
    {ID_VIEW_ROTATE_LEFT, [](CCanvasFrame& frame) { Turn(frame, 270); }, IsAnyFrame, nullptr},
    {ID_VIEW_INITIAL, ShowInitially, IsAnyFrame, nullptr},
};

struct TEditCommand {
    int nId;
    TToolAct pfnDo;
    TToolTest pfnCan;
};

constexpr TEditCommand EDIT_COMMANDS[] = {
    {ID_EDIT_CUT, &CTools::Cut, &CTools::CanCut},
    {ID_EDIT_COPY, &CTools::Copy, &CTools::CanCopy},
    {ID_EDIT_PASTE, &CTools::Paste, &CTools::CanPaste},
};

CCommandTable::TTest AskTool(const boost::function<bool(const CTools&, int)>& fn) {
    return AskFrame([fn](CCanvasFrame& frame, int nId) {
        const auto spTool = frame.GetInput().GetTool();
        return spTool && fn(*spTool, nId);
    });
}

} // namespace

void BindCanvasCommands(CCommandTable& table) {
    for (const auto& [nId, fnDo, fnEnabled, fnChecked] : FRAME_COMMANDS) {
        CCommandTable::TTest fnIsChecked;
        if (fnChecked)
            fnIsChecked = AskFrame([fn = fnChecked](CCanvasFrame& frame, int) { return fn(frame); });
        table.Bind(nId, WithFrame([fn = fnDo](CCanvasFrame& frame, int) { fn(frame); }),
                   AskFrame([fn = fnEnabled](CCanvasFrame& frame, int) { return fn(frame); }), fnIsChecked);
    }
    // An operation in progress needs the present layers.
    const auto layerState = [](CCanvasFrame& frame, int n) {
        return IsIdle(frame) ? GetLayerCommandState(*frame.GetCanvas(), n) : TCommandState();
    };
    for (const int nId : GetLayerCommands())
        table.Bind(nId, WithFrame([](CCanvasFrame& frame, int n) {
                       frame.EditTree([&] {
                           CLongWork work(frame.GetOutside().platform, {frame.GetWindow(), L"処理中", true});
                           return DoLayerCommand(frame.GetCanvas(), n, work);
                       });
                   }),
                   AskFrame([=](CCanvasFrame& frame, int n) { return layerState(frame, n).bEnabled; }),
                   AskFrame([=](CCanvasFrame& frame, int n) { return layerState(frame, n).bChecked; }));
    for (const int nId : GetImageCommands())
        table.Bind(nId, WithFrame([](CCanvasFrame& frame, int n) {
                       frame.EditTree([&] {
                           return DoImageCommand({frame.GetCanvas(), frame.GetOutside().platform,
                                                  frame.GetWindow(), frame.GetView().GetCentre()},
                                                 n);
                       });
                   }),
                   AskFrame([](CCanvasFrame& frame, int) { return IsIdle(frame); }));
    for (const auto& [nId, pfnDo, pfnCan] : EDIT_COMMANDS)
        table.Bind(nId, WithFrame([pfn = pfnDo](CCanvasFrame& frame, int) {
                       const auto spTool = frame.GetInput().GetTool();
                       if (spTool) frame.EditTree([&] { return (*spTool.*pfn)(); });
                   }),
                   AskTool([pfn = pfnCan](const CTools& tool, int) { return (tool.*pfn)(); }));
    // The tool returns whether a redraw is due.
    table.BindOthers(WithFrame([](CCanvasFrame& frame, int n) {
                         const auto spTool = frame.GetInput().GetTool();
                         if (spTool && spTool->OnCommand(n)) frame.RequestRedraw();
                     }),
                     AskTool([](const CTools& tool, int n) { return tool.CanCommand(n); }));
}
