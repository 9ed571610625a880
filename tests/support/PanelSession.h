// A session with one document, in which a test acts on panels.
#pragma once

#include "session/seam/SessionPanelWindow.h"
#include "tests/support/TestPlatform.h"

class CPanelSession : public testing::Test {
protected:
    void Play(const std::vector<std::function<void()>>& vSteps) {
        for (const auto& fn : vSteps)
            m_outside.AddStep([this, fn](CPlayer& player) {
                m_pStage = &player.GetStage();
                fn();
            });
        m_outside.Play([] { CTestPlatform::Open(MakePage({100, 80})); });
    }
    static CSessionPanelWindow& Window(int nPanel) {
        return dynamic_cast<CSessionPanelWindow&>(*g_pMainFrame->GetPanels().Find(nPanel)->GetWindow());
    }
    static const TPanelControl& Control(int nPanel, TPanelControl::EKind kind) {
        return *std::ranges::find(Window(nPanel).GetControls(), kind, &TPanelControl::kind);
    }
    static void Send(int nPanel, EMessage id, int64_t wParam, int64_t lParam, const std::wstring& str = {}) {
        SendMessage({&Window(nPanel), id, wParam, lParam, str});
    }
    static CCanvasFrame& Active() { return *g_wpActiveFrame.lock(); }
    static CCanvasBuffer& Canvas() { return *Active().GetCanvas(); }

    CTestPlatform m_outside;
    const TStage* m_pStage = nullptr; ///< during a step
};
