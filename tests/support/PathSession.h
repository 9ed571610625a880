// A session over vector layers in which the test draws with the path tools.
#pragma once

#include "session/seam/SessionKeys.h"
#include "tests/support/ProjectBytes.h"
#include "tests/support/TestPlatform.h"

/// Positions are canvas positions in eighths of a pixel; the view shows the canvas at 100 percent.
class CPathSession {
public:
    explicit CPathSession(CSize sz = {400, 300}, int nLayers = 1) : m_spCanvas(CreateCanvas(sz)) {
        for (int n = 0; n < nLayers; ++n) {
            m_vLayers.push_back(CreateVectorLayer(m_spCanvas));
            m_vLayers.back()->SetLayerColor(0);
            m_spCanvas->GetRoot().AddLayer(m_vLayers.back(), -1, false);
        }
        m_spCanvas->GetRoot().SetActiveChild(m_vLayers.front());
    }

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
    CVectorLayerBuffer& Layer() const { return *m_vLayers.front(); }
    /// The anchors of a path of the first layer, the lowest path being 0.
    std::vector<CPoint> Anchors(int idxPath) const {
        const CPathStream& stream = (*std::next(Layer().GetPaths().begin(), idxPath))->GetStream();
        std::vector<CPoint> vAnchors;
        for (size_t n = 0; n < stream.ControlPointCount(); ++n)
            vAnchors.push_back(stream.GetControlPoint(n)->GetAnchor()[STATE_COMMITTED]);
        return vAnchors;
    }

    CTestPlatform m_outside;
    boost::shared_ptr<CCanvasBuffer> m_spCanvas;
    std::vector<boost::shared_ptr<CVectorLayerBuffer>> m_vLayers;
    bool m_bPen = false; ///< events are the pen's
    bool m_bDown = false;

private:
    CSessionKeys* m_pKeys = nullptr;
};
