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
    // A host that cannot be served gets no window system either.
    if (!CChannelPortsImage::CanOpen(pFilterRecord)) return nResult;
    withPlatform([&](const TPlatform& platform) {
        CChannelPortsImage image(pFilterRecord);
        nResult = FilterStart(image, platform);
    });
    return nResult;
}

/// What the call means for the host, nothing when its result stays as it is.
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
        // All pixels have passed inside Start; there is nothing to prepare, to advance or to give back.
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
    // The host's frames below must not see an exception.
    try {
        nAnswer = Answer(nSelector, pRecord, withPlatform);
    } catch (const std::bad_alloc&) {
        if (bStart) nAnswer = memFullErr;
    } catch (const std::exception&) {
        if (bStart) nAnswer = errPlugInHostInsufficient;
    }
    if (nAnswer && pnResult) *pnResult = *nAnswer;
}
