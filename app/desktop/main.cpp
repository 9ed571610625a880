// vellumcraft FILE...: the desktop application.
#include "app/common/Console.h"
#include "app/common/Module.h"
#include "app/common/Recording.h"
#include "app/desktop/Arguments.h"
#include "app/desktop/Handover.h"
#include "app/desktop/Instance.h"
#include "core/AppModule/AppModule.h"
#include "core/AppModule/ErrorBox.h"
#include "core/AppModule/MessageQueue.h"
#include "core/Base/Failure.h"
#include "core/Base/Text.h"
#include "core/Commands/CommandIds.h"
#include "core/MainFrame/MainFrame.h"
#include "core/MainFrame/SessionScope.h"
#include "core/Platform/Window.h"
#include "system/environment/Modules.h"
#include "system/files/SnapshotStore.h"
#include "system/pictures/ImageCodecs.h"
#include "ui/platform/QtPlatform.h"

#include <cstdio>
#include <span>

namespace {

CModule g_Module;
constexpr char TOKEN_NAME[] = "XDG_ACTIVATION_TOKEN";

// Posts the files to the message queue, so that they wait while a dialog is open. A recorder sees them as
// external.
void TakeFiles(const std::vector<std::string>& vFiles, IMessageQueue& queue) {
    IWindow* pWindow = g_AppModule.GetMainWindow();
    if (!pWindow) return;
    const bool bToken = !vFiles.empty() && vFiles.front().starts_with(ACTIVATION);
    // Qt shows it to the desktop when it brings the window to the front.
    if (bToken) qputenv(TOKEN_NAME, vFiles.front().substr(ACTIVATION.size()).c_str());
    pWindow->Show();
    for (const std::string& strFile : std::span(vFiles).subspan(bToken ? 1 : 0)) {
        const bool bNew = strFile == NEW_DOCUMENT;
        queue.Post(bNew ? TMessage{pWindow, EMessage::Command, ID_FILE_NEW}
                        : TMessage{pWindow, EMessage::CopyData, 0, 0, FromUtf8(strFile)});
    }
}

int Run(const TDesktopArguments& arguments, CInstance& instance, bool bFirst) {
    CMessageQueue queue;
    CModules modules;
    CImageCodecs codecs(g_Module.GetFiles());
    const std::wstring strRecord =
        arguments.strRecord.empty() ? FindRecordPath(g_Module.GetConfig()) : FromUtf8(arguments.strRecord);
    CSnapshotStore snapshots(g_Module.GetLocations(), strRecord.empty());
    const CQtPlatform platform(queue, g_Module.GetFiles(), g_Module.GetLocations(), modules, codecs,
                               snapshots);
    const CRecording recording(platform.GetPlatform(), strRecord);
    CSessionScope session(recording.GetPlatform());
    try {
        CreateMainFrame();
        if (bFirst) instance.Listen([&](const CInstance::TPaths& vFiles) { TakeFiles(vFiles, queue); });
        TakeFiles(arguments.vFiles, queue);
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
    const CConsole console(argc, argv);
    TDesktopArguments arguments;
    try {
        arguments = ParseDesktopArguments(console.GetArguments());
    } catch (const std::exception& e) {
        console.Say(stderr, std::string("vellumcraft: ") + e.what() + "\n\n" + DESKTOP_USAGE);
        return 2;
    }
    if (arguments.bHelp) {
        console.Say(stdout, DESKTOP_USAGE);
        return 0;
    }
    if (!EnsureApplication()) {
        console.Say(stderr, "vellumcraft: there is no display\n");
        return 1;
    }
    const struct CApplicationEnd {
        ~CApplicationEnd() { EndApplication(); }
    } end;
    try {
        CInstance instance(FindInstanceFolder(g_Module.GetLocations()));
        const auto vHanded = WithActivation(arguments.vFiles, qgetenv(TOKEN_NAME).toStdString());
        const auto start = arguments.bNewWindow ? CInstance::EStart::Alone : instance.Begin(vHanded);
        if (start == CInstance::EStart::HandedOver) return 0;
        return Run(arguments, instance, start == CInstance::EStart::First);
    } catch (const std::exception& e) {
        // No session exists yet that could show a box.
        console.Say(stderr, "vellumcraft: " + ToUtf8(DescribeException(e)) + "\n");
        return 1;
    }
}
