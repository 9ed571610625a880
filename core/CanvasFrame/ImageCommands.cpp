#include "core/CanvasFrame/ImageCommands.h"

#include "core/Base/Failure.h"
#include "core/CanvasBuffer/CanvasHistory.h"
#include "core/Commands/CommandIds.h"
#include "core/ImageDialogs/ImageRun.h"
#include "core/ImageDialogs/PixelCommands.h"
#include "core/ImageDialogs/RescaleDialog.h"
#include "core/ImageDialogs/ResizeDialog.h"
#include "core/ImageOperation/RescaleCanvas.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace {

bool ChangeCanvasSize(const TImageRun& run) {
    const CSize szOld = run.spCanvas->GetSize();
    boost::shared_ptr<const TPicture> spPicture;
    {
        // A script's line that cancels is for the change itself; here the dialog is still to come.
        CLongWork work(run.platform, {run.pOwner, L"処理中"});
        spPicture = MakeSmallPicture(*run.spCanvas, work);
    }
    CResizeDialog dialog(run.platform.boxes, spPicture, szOld);
    if (!run.platform.dialogs.Run(run.pOwner, dialog)) return false;
    const CRect rcFrame = dialog.GetFrame();
    if (rcFrame == CRect({0, 0}, szOld)) return false;
    CLongWork work(run.platform, run.GetLongWork());
    ResizeCanvas(run.spCanvas, rcFrame.Size(), ShiftChange(CPoint{} - rcFrame.TopLeft()), L"画像サイズ変更",
                 work);
    return true;
}

bool ChangeResolution(const TImageRun& run) {
    CRescaleDialog dialog(run.platform.boxes, run.spCanvas->GetSize());
    if (!run.platform.dialogs.Run(run.pOwner, dialog)) return false;
    CLongWork work(run.platform, run.GetLongWork());
    return RescaleCanvas(run.spCanvas, dialog.GetSize(), dialog.GetMode(), work);
}

struct TImageCommand {
    int nId;
    bool (*fnDo)(const TImageRun& run); ///< true when the canvas has changed
};

constexpr TImageCommand COMMANDS[] = {
    {ID_IMAGE_RESOLUTION, ChangeResolution},
    {ID_IMAGE_SIZE, ChangeCanvasSize},
    {ID_IMAGE_LEVEL, CorrectLevels},
    {ID_IMAGE_HSV, ChangeHueAndBrightness},
};

} // namespace

std::span<const int> GetImageCommands() {
    static const std::vector<int> vIds = [] {
        std::vector<int> v;
        std::ranges::transform(COMMANDS, std::back_inserter(v), &TImageCommand::nId);
        return v;
    }();
    return vIds;
}

bool DoImageCommand(const TImageRun& run, int nId) {
    const auto it = std::ranges::find(COMMANDS, nId, &TImageCommand::nId);
    SELF_CHECK(invalid_argument, it != std::end(COMMANDS));
    return it->fnDo(run);
}
