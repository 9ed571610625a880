#include "core/ImageOperation/RescaleCanvas.h"
#include "core/PathToolBase/PathTool.h"
#include "core/PathWidthTool/PathWidthTool.h"
#include "tests/support/PathSession.h"

#include <cstdlib>

namespace {

// A user without aim: presses, drags and keys near what is there, with both tools on three layers of a page
// whose size changes too.
class CWalker {
public:
    CWalker(CPathSession& session, unsigned uSeed) : m_session(session), m_random(uSeed) {}

    void Step() {
        m_session.TakeLayers();
        if (Below(60) == 0) return ChangeSize();
        switch (Below(14)) {
        case 0:
            return Switch();
        case 1:
            return m_session.m_spCanvas->SelectLayer(m_session.m_vLayers[Below(3)]), m_session.Move(Place());
        case 2:
        case 3:
            return Draw();
        case 4:
            return Key(VK_Delete, Below(3) == 0 ? VK_Control : 0);
        case 5:
            return m_session.Command(Below(2) ? ID_EDIT_UNDO : ID_EDIT_REDO);
        case 6:
            return m_session.Move(Place());
        default:
            return Drag();
        }
    }

private:
    size_t Below(size_t n) { return m_random() % n; }
    void ChangeSize() {
        const CSize sz{250 + static_cast<int32_t>(Below(100)), 150 + static_cast<int32_t>(Below(100))};
        g_lstCanvasFrame.front()->EditTree([&] {
            const auto& spCanvas = m_session.m_spCanvas;
            if (Below(2)) return RescaleCanvas(spCanvas, sz, ERescaleMode::Nearest);
            return ResizeCanvas(spCanvas, sz, ShiftChange({13, -7}), L"画像サイズ変更"), true;
        });
    }
    void Switch() {
        g_pMainFrame->SwitchTool(Below(2) ? TOOL_PATH : TOOL_PATH_WIDTH);
        m_session.m_bPen = Below(3) == 0;
        if (const auto spTool = boost::dynamic_pointer_cast<CPathTool>(g_wpActiveTool.lock())) {
            TPathParam& param = spTool->GetParam();
            param = {.uDefaultWidth = static_cast<uint32_t>(Below(60)),
                     .uDefaultBegin = static_cast<uint32_t>(1 + Below(3)),
                     .uDefaultTerm = static_cast<uint32_t>(1 + Below(3)),
                     .bOpenPath = Below(4) != 0,
                     .bWaveEnable = Below(4) == 0};
        }
        if (const auto spTool = boost::dynamic_pointer_cast<CPathWidthTool>(g_wpActiveTool.lock())) {
            spTool->SetItem({static_cast<int>(Below(8)), static_cast<int>(2 + Below(44))});
        }
    }
    // A place anywhere, or near a part of a path.
    CPoint Place() {
        const CSize sz = m_session.m_spCanvas->GetSize();
        CPoint pt{static_cast<int32_t>(Below(static_cast<size_t>(sz.cx) * 8)),
                  static_cast<int32_t>(Below(static_cast<size_t>(sz.cy) * 8))};
        const auto spLayer =
            boost::dynamic_pointer_cast<CVectorLayerBuffer>(m_session.m_spCanvas->GetActiveLayer());
        if (spLayer->GetPaths().empty() || Below(5) == 0) return pt;
        const auto spPath =
            *std::next(spLayer->GetPaths().begin(), static_cast<int>(Below(spLayer->GetPaths().size())));
        const CPathStream& stream = spPath->GetStream();
        const auto spPoint = stream.GetControlPoint(Below(stream.ControlPointCount()));
        pt = spPoint->GetAnchor()[STATE_LIVE];
        if (Below(3) == 0) pt = pt + spPoint->GetFore(STATE_LIVE);
        if (Below(3) == 0) pt = stream.PointAt(static_cast<uint32_t>(m_random() % 0x30000), STATE_LIVE);
        const auto spOpen = boost::dynamic_pointer_cast<COpenPathObject>(spPath);
        if (spOpen && Below(3) == 0 && !spOpen->GetStream().GetWidthPoints().empty())
            pt = spOpen->GetStream().GetWidthPoints()[0]->GetPosition(STATE_LIVE);
        if (spOpen && Below(4) == 0 && !spOpen->GetStream().GetTransPoints().empty())
            pt = spOpen->GetStream().GetTransPoints()[0]->GetPosition(STATE_LIVE);
        return pt + CPoint{static_cast<int32_t>(Below(40)) - 20, static_cast<int32_t>(Below(40)) - 20};
    }
    void Hold(int nKey, const std::function<void()>& fn) {
        if (nKey) m_session.Key(nKey, true);
        fn();
        if (nKey) m_session.Key(nKey, false);
    }
    void Key(int nKey, int nHeld) {
        Hold(nHeld, [&] { m_session.Type(nKey); });
    }
    void Draw() {
        Hold(VK_Control, [&] {
            for (size_t n = Below(6); n > 0; --n) {
                Drag();
                if (Below(12) == 0) m_session.Command(ID_EDIT_UNDO);
            }
        });
    }
    void Drag() {
        constexpr int HELD[] = {0, 0, 0, 0, VK_Shift, VK_Alt};
        Hold(HELD[Below(6)], [&] {
            m_session.Press(Place());
            for (size_t n = Below(4); n > 0; --n) m_session.Move(Place());
            constexpr int IN_BETWEEN[] = {0, 0, 0, 0, 0, 0, VK_Escape, VK_Alt, VK_Shift};
            if (const int nKey = IN_BETWEEN[Below(9)]) m_session.Type(nKey);
            if (Below(20) == 0) m_session.Pointer(EMessage::RButtonDown, Place());
            if (Below(20) == 0) m_session.Command(ID_EDIT_UNDO);
            m_session.Release(Place());
        });
    }

    CPathSession& m_session;
    std::mt19937 m_random;
};

} // namespace

// VELLUM_WALK_STEPS makes it longer, VELLUM_WALK_SEED another one.
TEST(PathWalk, UndoLeadsToTheFirstBytesAndRedoToTheLast) {
    const auto number = [](const char* pszName, int nElse) {
        const char* psz = std::getenv(pszName);
        return psz ? std::atoi(psz) : nElse;
    };
    const int nSteps = number("VELLUM_WALK_STEPS", 1500);
    CPathSession session({300, 200}, 3);
    g_Switches.m_nMaxHistory = 1000;
    session.Play(TOOL_PATH, [&] {
        CWalker walker(session, static_cast<unsigned>(number("VELLUM_WALK_SEED", 11)));
        CHistoryStream& history = session.m_spCanvas->GetHistory();
        // The active layer, which is a part of the document, is selected without a history.
        const auto bytes = [&] {
            session.TakeLayers();
            session.m_spCanvas->SelectLayer(session.m_vLayers.front());
            return session.Bytes();
        };
        for (int nStep = 0; nStep < nSteps;) {
            const TBytes vFirst = bytes();
            for (int n = 0; n < 250; ++n, ++nStep) walker.Step();
            SettleActiveTool();
            const TBytes vLast = bytes();
            const auto vPicture = PageOf(*session.m_spCanvas);
            const size_t nActions = history.GetUndoList().size();
            std::vector<TBytes> vStates{vLast};
            while (!history.GetUndoList().empty()) {
                session.Command(ID_EDIT_UNDO);
                vStates.push_back(bytes());
            }
            ASSERT_TRUE(vStates.back() == vFirst) << nStep;
            while (history.GetUndoList().size() < nActions) { // what was undone before stays so
                session.Command(ID_EDIT_REDO);
                vStates.pop_back();
                ASSERT_TRUE(bytes() == vStates.back())
                    << nStep << ' ' << ToUtf8(history.GetUndoList().front()->GetName());
            }
            ASSERT_TRUE(PageOf(*session.m_spCanvas) == vPicture) << nStep;
            const auto spOpened = LoadFromBytes(vLast);
            ASSERT_TRUE(SaveToBytes(*spOpened) == vLast) << nStep;
            ASSERT_TRUE(PageOf(*spOpened) == vPicture) << nStep;
            history.Clear();
            // Many paths would only make it slow.
            for (const auto& spLayer : session.m_vLayers)
                while (spLayer->GetPaths().size() > 12) spLayer->RemovePath(spLayer->GetPaths().front());
        }
    });
}
