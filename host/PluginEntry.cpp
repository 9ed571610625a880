#include "host/PluginEntry.h"

#include "core/MainFrame/AboutDialog.h"
#include "core/Platform/Dialogs.h"
#include "core/Platform/Platform.h"
#include "host/ChannelPorts/ChannelPortsImage.h"
#include "host/FilterStart.h"

#include <new>
#include <optional>

using namespace hostabi;

namespace {

void ShowAbout(const TPlatform& platform) {
    CAboutDialog dialog(platform.modules, platform.clipboard);
    platform.dialogs.Run(nullptr, dialog);
}

int16_t Start(void* pRecord, const TWithPlatform& withPlatform) {
    int16_t nResult = errPlugInHostInsufficient;
    const auto* pFilterRecord = static_cast<const FilterRecord*>(pRecord);
    // A host that cannot be served must not start the window system either.
    if (!CChannelPortsImage::CanOpen(pFilterRecord)) return nResult;
    withPlatform([&](const TPlatform& platform) {
        CChannelPortsImage image(pFilterRecord);
        nResult = FilterStart(image, platform);
    });
    return nResult;
}

/// Returns the call's result for the host, nullopt when the host's result stays unchanged.
std::optional<int16_t> Answer(int16_t nSelector, void* pRecord, const TWithPlatform& withPlatform) {
    switch (nSelector) {
    case filterSelectorAbout:
        withPlatform(ShowAbout);
        return std::nullopt;
    case filterSelectorStart:
        return Start(pRecord, withPlatform);
    case filterSelectorParameters:
    case filterSelectorPrepare:
    case filterSelectorContinue:
    case filterSelectorFinish:
        // All pixels are transferred during Start; there is nothing to prepare, to continue or to finish.
        return std::nullopt;
    default:
        return filterBadParameters;
    }
}

} // namespace

void RunSelector(int16_t nSelector, void* pRecord, int16_t* pnResult,
                 const TWithPlatform& withPlatform) noexcept {
    std::optional<int16_t> nAnswer;
    const bool bStart = nSelector == filterSelectorStart;
    // No exception may reach the host's stack frames.
    try {
        nAnswer = Answer(nSelector, pRecord, withPlatform);
    } catch (const std::bad_alloc&) {
        if (bStart) nAnswer = memFullErr;
    } catch (const std::exception&) {
        if (bStart) nAnswer = errPlugInHostInsufficient;
    }
    if (nAnswer && pnResult) *pnResult = *nAnswer;
}
