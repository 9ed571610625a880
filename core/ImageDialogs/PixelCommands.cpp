#include "core/ImageDialogs/PixelCommands.h"

#include "core/Base/Failure.h"
#include "core/ImageDialogs/HSBDlg.h"
#include "core/ImageDialogs/LevelDlg.h"
#include "core/LayerBuffer/FloatHistory.h"
#include "core/RasterMove/SelectionCommands.h"

namespace {

// Runs a dialog on the active layer's pixels and applies its operation, `fnOperation(dialog)`.
template <class Dialog, class Function>
bool ChangeActiveLayer(const TImageRun& run, Function fnOperation) {
    const auto spLayer = ActiveRasterLayer(*run.spCanvas);
    if (!spLayer) {
        run.platform.boxes.Show(run.pOwner, L"この処理はラスタレイヤーを対象としたものです。", L"Vellumcraft",
                                EBoxKind::Exclamation);
        return false;
    }
    const CFloatDrop drop(run.spCanvas);
    const auto rstData = spLayer->GetRaster();
    SELF_CHECK(illegal_data, rstData.get() != NULL);
    Dialog dialog({rstData, run.spCanvas->GetSelect(), run.ptCentre});
    if (!run.platform.dialogs.Run(run.pOwner, dialog)) return false;
    CLongWork work(run.platform, run.GetLongWork());
    return ChangePixels(spLayer, fnOperation(dialog), dialog.GetTitle(), work);
}

} // namespace

bool CorrectLevels(const TImageRun& run) {
    return ChangeActiveLayer<CLevelDlg>(
        run, [](const CLevelDlg& dialog) { return LevelOperation(dialog.GetLut(), dialog.GetChannels()); });
}

bool ChangeHueAndBrightness(const TImageRun& run) {
    return ChangeActiveLayer<CHSBDlg>(run,
                                      [](const CHSBDlg& dialog) { return HsbOperation(dialog.GetValues()); });
}
