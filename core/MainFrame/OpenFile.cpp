// Opening files in document windows.
#include "core/AppModule/AppModule.h"
#include "core/AppModule/ErrorBox.h"
#include "core/AppModule/PrivateMessages.h"
#include "core/Base/Failure.h"
#include "core/ImageFile/ImageFile.h"
#include "core/MainFrame/MainFrame.h"
#include "core/Platform/Progress.h"

bool CMainFrame::OpenFile(const std::wstring& strPath) {
    const TPlatform& platform = g_AppModule.GetPlatform();
    boost::shared_ptr<CCanvasFrame> spFrame;
    try {
        const auto open = [&] {
            CLongWork work(platform, {m_pWindow, L"開く", true});
            return OpenDocument(strPath, platform.files, platform.codecs, work);
        };
        spFrame = CreateCanvasFrame(open());
        OpenFrame(spFrame);
        PostToMainFrame(WM_REFRESH_ALL);
        return true;
    } catch (const cancelled_error&) {
        throw;
    } catch (const std::exception& e) {
        AbandonFrame(spFrame);
        ReportFileException(e, strPath);
    }
    return false;
}
