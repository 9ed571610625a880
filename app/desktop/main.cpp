// vellumcraft FILE...: the desktop application.
#include "app/common/Module.h"
#include "app/desktop/Arguments.h"
#include "app/desktop/Instance.h"
#include "core/AppModule/AppModule.h"
#include "core/AppModule/ErrorBox.h"
#include "core/AppModule/MessageQueue.h"
#include "core/AppModule/PrivateMessages.h"
#include "core/Base/Text.h"
#include "core/MainFrame/MainFrame.h"
#include "core/MainFrame/SessionScope.h"
#include "system/ImageCodecs.h"
#include "system/Modules.h"
#include "system/SnapshotStore.h"
#include "ui/QtPlatform.h"

#include <QStandardPaths>

#include <cstdio>

namespace {

// Through the message queue: while a dialog is open the files wait.
void TakeFiles(const std::vector<std::string>& vFiles) {
    if (IWindow* pWindow = g_AppModule.GetMainWindow()) pWindow->Show();
    for (const std::string& strFile : vFiles) PostToMainFrame(EMessage::CopyData, 0, FromUtf8(strFile));
}

int Run(const TDesktopArguments& arguments, CInstance& instance, bool bFirst) {
    CMessageQueue queue;
    CModules modules;
    CImageCodecs codecs(g_Module.GetFiles());
    CSnapshotStore snapshots(g_Module.GetLocations());
    const CQtPlatform platform(queue, g_Module.GetFiles(), g_Module.GetLocations(), modules, codecs,
                               snapshots);
    CSessionScope session(platform.GetPlatform());
    try {
        CreateMainFrame();
        if (bFirst) instance.Listen(TakeFiles);
        for (const std::string& strFile : arguments.vFiles) g_pMainFrame->QueueFile(FromUtf8(strFile));
        g_pMainFrame->QueueRecovery();
        session.Run();
        return 0;
    } catch (const std::exception& e) {
        ReportException(e);
        return 1;
    }
}

} // namespace

int main(int argc, char** argv) {
    TDesktopArguments arguments;
    try {
        arguments = ParseDesktopArguments({argv + 1, argv + argc});
    } catch (const std::exception& e) {
        std::fprintf(stderr, "vellumcraft: %s\n\n%s", e.what(), DESKTOP_USAGE);
        return 2;
    }
    if (arguments.bHelp) {
        std::fputs(DESKTOP_USAGE, stdout);
        return 0;
    }
    if (!EnsureApplication()) {
        std::fprintf(stderr, "vellumcraft: there is no display\n");
        return 1;
    }
    CInstance instance(QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation).toStdString());
    const auto start = arguments.bNewWindow ? CInstance::EStart::Alone : instance.Begin(arguments.vFiles);
    if (start == CInstance::EStart::HandedOver) return 0;
    return Run(arguments, instance, start == CInstance::EStart::First);
}
