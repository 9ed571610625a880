#include "host/KeepResult.h"

#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/Recovery/Recovery.h"
#include "host/Exchange.h"

namespace {

// The store is this function's alone or a session's, whose keys count from 1.
constexpr uint32_t RESULT_KEY = 0xFFFFFFFF;

} // namespace

bool KeepResult(IHostImage& image, const std::wstring& strTitle, ISnapshotStore& snapshots) {
    const CRect rc = image.GetRect();
    const auto spCanvas = CreateCanvas(rc.Size());
    const auto spLayer = CreateRasterLayer(spCanvas);
    ReadHostChannels(*spLayer->GetRaster(), image.GetChannels(), image, rc.left, rc.top);
    spCanvas->GetRoot().AddLayer(spLayer, -1);
    spCanvas->GetRoot().SetActiveChild(spLayer);
    snapshots.Write(RESULT_KEY, SerializeDocument(*spCanvas), {{}, strTitle, {}});
    return snapshots.Finish(RESULT_KEY);
}
