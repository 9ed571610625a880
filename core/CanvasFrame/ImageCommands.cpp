#include "core/CanvasFrame/ImageCommands.h"

#include "core/Base/Failure.h"
#include "core/CanvasBuffer/CanvasHistory.h"
#include "core/Commands/CommandIds.h"
#include "core/ImageDialogs/ResizeDialog.h"
#include "core/Platform/Platform.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace {

// The canvas and all that a dialog and long work need.
struct TImageRun {
    boost::shared_ptr<CCanvasBuffer> spCanvas;
    const TPlatform& platform;
    IWindow* pOwner;

    TLongWork LongWork() const { return {pOwner, L"処理中", true}; }
};

bool ChangeCanvasSize(const TImageRun& run) {
    const CSize szOld = run.spCanvas->GetSize();
    boost::shared_ptr<const TPicture> spPicture;
    {
        CLongWork work(run.platform, run.LongWork());
        spPicture = MakeSmallPicture(*run.spCanvas, work);
    }
    CResizeDialog dialog(run.platform.boxes, spPicture, szOld);
    if (!run.platform.dialogs.Run(run.pOwner, dialog)) return false;
    const CRect rcFrame = dialog.GetFrame();
    if (rcFrame == CRect({0, 0}, szOld)) return false;
    CLongWork work(run.platform, run.LongWork());
    ResizeCanvas(run.spCanvas, rcFrame.Size(), ShiftChange(CPoint{} - rcFrame.TopLeft()), L"画像サイズ変更",
                 work);
    return true;
}

struct TImageCommand {
    int nId;
    bool (*fnDo)(const TImageRun& run); ///< true when the canvas has changed
};

constexpr TImageCommand COMMANDS[] = {
    {ID_IMAGE_SIZE, ChangeCanvasSize},
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

bool DoImageCommand(const boost::shared_ptr<CCanvasBuffer>& spCanvas, int nId, const TPlatform& platform,
                    IWindow* pOwner) {
    const auto it = std::ranges::find(COMMANDS, nId, &TImageCommand::nId);
    SELF_CHECK(invalid_argument, it != std::end(COMMANDS));
    return it->fnDo({spCanvas, platform, pOwner});
}
