// vellumcraft FILE...: the desktop application.
#include "app/common/Module.h"
#include "core/AppModule/ErrorBox.h"
#include "core/AppModule/MessageQueue.h"
#include "core/Base/Text.h"
#include "core/MainFrame/MainFrame.h"
#include "core/MainFrame/SessionScope.h"
#include "system/ImageCodecs.h"
#include "system/Modules.h"
#include "system/SnapshotStore.h"
#include "ui/QtPlatform.h"

#include <cstdio>
#include <filesystem>

int main(int argc, char** argv) {
    if (!EnsureApplication()) {
        std::fprintf(stderr, "vellumcraft: there is no display\n");
        return 1;
    }
    CMessageQueue queue;
    CModules modules;
    CImageCodecs codecs(g_Module.GetFiles());
    CSnapshotStore snapshots(g_Module.GetLocations());
    const CQtPlatform platform(queue, g_Module.GetFiles(), g_Module.GetLocations(), modules, codecs,
                               snapshots);
    CSessionScope session(platform.GetPlatform());
    try {
        CreateMainFrame();
        for (int n = 1; n < argc; ++n)
            g_pMainFrame->QueueFile(FromUtf8(std::filesystem::absolute(argv[n]).native()));
        g_pMainFrame->QueueRecovery();
        session.Run();
        return 0;
    } catch (const std::exception& e) {
        ReportException(e);
        return 1;
    }
}
