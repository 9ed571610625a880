#include "app/common/RunWithPlatform.h"

#include "app/common/Module.h"
#include "app/common/Recording.h"
#include "core/AppModule/MessageQueue.h"
#include "core/Base/Failure.h"
#include "core/Base/Text.h"
#include "core/IniConfig/IniConfig.h"
#include "session/scripts/SessionPlatform.h"
#include "system/environment/Modules.h"
#include "system/files/SnapshotStore.h"
#include "system/pictures/ImageCodecs.h"
#include "ui/platform/QtPlatform.h"

#include <optional>

namespace {

// Plays the script in windows without a display, shown by real ones if the settings request it. Writes a
// failure to the settings, where the program that set the script's name reads it.
void RunScripted(CModule& module, const std::wstring& strScript, CIniConfigData& section, IModules& modules,
                 IImageCodecs& codecs, const std::function<void(const TPlatform&)>& fn) {
    CMessageQueue queue;
    CSnapshotStore snapshots(module.GetLocations(), false);
    TSessionParts parts{module.GetFiles(), module.GetLocations(), modules, codecs};
    parts.pSnapshots = &snapshots;
    std::optional<CQtPlatform> windows;
    if (section.GetInt(L"Windows", 0) != 0) {
        if (!EnsureApplication()) throw internal_error(L"RunWithPlatform: there is no window system.");
        windows.emplace(queue, module.GetFiles(), module.GetLocations(), modules, codecs, snapshots);
        parts.pWindows = &windows->GetWindows();
        parts.pQueue = &queue;
        parts.fnScreenshot = [&](const std::wstring& strPath) { return windows->SaveScreenshot(strPath); };
    }
    std::string strFailure;
    try {
        CSessionPlatform session(parts, ReadScript(strScript, module.GetFiles()));
        CRecording recording(session.GetPlatform(), FindRecordPath(module.GetConfig()));
        session.SetWatch([&](const std::string& strLine) { recording.NoteLine(strLine); });
        fn(recording.GetPlatform());
        strFailure = session.GetFailure();
    } catch (const script_error& e) {
        strFailure = e.what();
    }
    section.SetString(L"Failure", FromUtf8(strFailure));
}

} // namespace

void RunWithPlatform(CModule& module, const std::function<void(const TPlatform&)>& fn) {
    CModules modules;
    CImageCodecs codecs(module.GetFiles());
    const auto spSection = module.GetConfig().GetSection(L"Session");
    if (const std::wstring strScript = spSection->GetString(L"Script", L""); !strScript.empty())
        return RunScripted(module, strScript, *spSection, modules, codecs, fn);
    if (!EnsureApplication()) throw internal_error(L"RunWithPlatform: there is no window system.");
    CMessageQueue queue;
    const std::wstring strRecord = FindRecordPath(module.GetConfig());
    CSnapshotStore snapshots(module.GetLocations(), strRecord.empty());
    const CQtPlatform platform(queue, module.GetFiles(), module.GetLocations(), modules, codecs, snapshots);
    const CRecording recording(platform.GetPlatform(), strRecord);
    fn(recording.GetPlatform());
}
