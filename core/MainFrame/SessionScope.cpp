#include "core/MainFrame/SessionScope.h"

#include "core/AppModule/AppModule.h"
#include "core/MainFrame/MainFrame.h"
#include "core/Platform/Bitmap.h"

#include <boost/make_shared.hpp>

namespace {

// Destroys the windows left by an interrupted loop. No questions are asked, since no loop could receive the
// answer.
void DestroyWindows() {
    while (!g_lstCanvasFrame.empty()) {
        const auto spFrame = g_lstCanvasFrame.front();
        if (spFrame->GetWindow()) spFrame->GetWindow()->Destroy();
        g_lstCanvasFrame.remove(spFrame);
    }
    if (g_pMainFrame && g_pMainFrame->GetWindow()) g_pMainFrame->GetWindow()->Destroy();
}

// Empties the queue up to the end that the main frame's destruction posted, so that the next session
// receives neither that end nor a message to a destroyed window.
void DropMessages(IMessageQueue& queue) {
    TMessage msg;
    while (queue.Peek() && queue.Get(msg) == 1) {
    }
}

} // namespace

CSessionScope::CLoan::CLoan(const TPlatform& platform) { g_AppModule.SetPlatform(&platform); }
CSessionScope::CLoan::~CLoan() { g_AppModule.SetPlatform(nullptr); }

CSessionScope::CSessionScope(const TPlatform& platform)
    : m_platform(platform), m_spLoop(boost::make_shared<CMessageLoop>()), m_loan(platform),
      m_uCodecs(platform.codecs.Startup()) {
    g_AppModule.AddMessageLoop(m_spLoop);
}

void CSessionScope::Run() { m_spLoop->Run(m_platform.queue); }

CSessionScope::~CSessionScope() {
    if (!m_bAbandoned) {
        const bool bInterrupted = g_pMainFrame && g_pMainFrame->GetWindow();
        DestroyWindows();
        if (bInterrupted) DropMessages(m_platform.queue);
        g_lstCanvasFrame.clear();
        g_wpActiveFrame.reset();
        g_pMainFrame.reset();
        g_AppModule.RemoveMessageLoop();
        m_platform.codecs.Shutdown(m_uCodecs);
    }
    m_spLoop->Clear();
}
