// A session in which the test works with one of the tools.
#pragma once

#include "session/seam/SessionKeys.h"
#include "tests/support/ProjectBytes.h"
#include "tests/support/TestPlatform.h"

/// Positions are canvas positions in eighths of a pixel; the view shows the canvas at 100 percent.
class CToolSession {
public:
    explicit CToolSession(const boost::shared_ptr<CCanvasBuffer>& spCanvas) : m_spCanvas(spCanvas) {}

    /// Runs `fn` with a tool active; an exception or an error box fails the test.
    void Play(int nTool, const std::function<void()>& fn) {
        bool bDone = false;
        m_outside.AddStep([&](CPlayer& player) {
            m_pKeys = &player.GetStage().keys;
            g_pMainFrame->SwitchTool(nTool);
            try {
                fn();
                bDone = true;
            } catch (const std::exception& e) {
                ADD_FAILURE() << e.what();
            }
            m_spCanvas->GetHistory().SetModified(false); // no prompt at the end
        });
        m_outside.Play([&] { CTestPlatform::Open(m_spCanvas); });
        EXPECT_TRUE(bDone && m_outside.m_vShown.empty());
    }

    void Press(CPoint pt) { Pointer(EMessage::LButtonDown, pt); }
    void Move(CPoint pt) { Pointer(EMessage::MouseMove, pt); }
    void Release(CPoint pt) { Pointer(EMessage::LButtonUp, pt); }
    void Click(CPoint pt) { Press(pt), Release(pt); }
    /// Presses at the first position, moves over the others and releases at the last.
    void Drag(std::initializer_list<CPoint> lstWay) {
        Press(*lstWay.begin());
        for (const CPoint pt : lstWay) Move(pt);
        Release(*(lstWay.end() - 1));
    }
    void Pointer(EMessage message, CPoint pt) {
        const auto flag = [&](int nKey, uint32_t uFlag) { return m_pKeys->IsKeyDown(nKey) ? uFlag : 0u; };
        uint32_t flags = flag(VK_Control, POINTER_CONTROL) | flag(VK_Shift, POINTER_SHIFT) |
                         flag(VK_Alt, POINTER_ALT) | (m_bPen ? POINTER_TABLET : 0u);
        m_bDown = message == EMessage::LButtonDown || (m_bDown && message == EMessage::MouseMove);
        Input().Dispatch(*g_wpActiveTool.lock(), message, pt, m_bDown ? 1024u : 0u, 90, flags);
    }
    void Key(int nKey, bool bDown) {
        m_pKeys->Press(nKey, bDown);
        SendMessage({g_wpActiveFrame.lock()->GetWindow(), bDown ? EMessage::KeyDown : EMessage::KeyUp, nKey});
    }
    void Type(int nKey) { Key(nKey, true), Key(nKey, false); }
    void Command(int nId) { SendMessage({g_pMainFrame->GetWindow(), EMessage::Command, nId}); }
    CFrameInput& Input() { return g_wpActiveFrame.lock()->GetInput(); }

    /// Labels of the done actions, the oldest first.
    std::vector<std::wstring> Labels() const {
        std::vector<std::wstring> vLabels;
        for (const auto& spHistory : m_spCanvas->GetHistory().GetUndoList())
            vLabels.insert(vLabels.begin(), spHistory->GetName());
        return vLabels;
    }
    TBytes Bytes() const { return SaveToBytes(*m_spCanvas); }
    std::vector<uint8_t> Picture() const {
        m_spCanvas->ComposeAll();
        return PixelsOf(m_spCanvas->GetComposite());
    }

    CTestPlatform m_outside;
    boost::shared_ptr<CCanvasBuffer> m_spCanvas;
    bool m_bPen = false; ///< events are the pen's
    bool m_bDown = false;

private:
    CSessionKeys* m_pKeys = nullptr;
};
