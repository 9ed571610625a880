#include "core/AppModule/PrivateMessages.h"

#include "core/AppModule/AppModule.h"
#include "core/AppModule/MessageQueue.h"

void PostToMainFrame(EMessage id, int64_t wParam, const std::wstring& strText) {
    IWindow* pWindow = g_AppModule.GetMainWindow();
    if (pWindow) g_AppModule.GetPlatform().queue.Post({pWindow, id, wParam, 0, strText});
}

void SendToMainFrame(EMessage id, int64_t wParam) { SendMessage({g_AppModule.GetMainWindow(), id, wParam}); }
