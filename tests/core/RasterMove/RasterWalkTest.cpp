#include "core/ImageOperation/PixelOperation.h"
#include "core/ImageOperation/RescaleCanvas.h"
#include "core/LayerBuffer/FloatHistory.h"
#include "core/Panels/ToolTable.h"
#include "core/RasterBrush/FreehandTools.h"
#include "core/RasterMove/SelectionCommands.h"
#include "session/seam/SessionPanelWindow.h"
#include "tests/support/ToolSession.h"

#include <cstdlib>

namespace {

// Of two; an operation on the whole canvas replaces them.
TLayerPtr LayerOf(CCanvasBuffer& canvas, size_t n) {
    const TLayerList& lstLayers = canvas.GetRoot().GetChildren();
    return n ? lstLayers.back() : lstLayers.front();
}

// A user without aim: strokes, shapes, drags, keys and commands with all raster tools, on two layers of a
// page whose size changes too.
class CWalker {
public:
    CWalker(CToolSession& session, unsigned uSeed) : m_session(session), m_random(uSeed) {}

    void Step() {
        if (Below(30) == 0) return ChangeSize();
        if (Below(30) == 0) return ChangeColors();
        switch (Below(12)) {
        case 0:
            return Switch();
        case 1:
            m_session.m_spCanvas->SelectLayer(LayerOf(*m_session.m_spCanvas, Below(2)));
            return m_session.Move(Place());
        case 2:
            return m_session.Command(COMMANDS[Below(std::size(COMMANDS))]);
        case 3:
            return m_session.Command(Below(3) ? ID_EDIT_UNDO : ID_EDIT_REDO);
        case 4:
            return Hold(Below(3) ? 0 : VK_Shift, [&] { m_session.Type(KEYS[Below(std::size(KEYS))]); });
        case 5:
            return PressButton();
        default:
            return Drag();
        }
    }

private:
    static constexpr int COMMANDS[] = {ID_SELECT_ALL, ID_SELECT_NONE, ID_EDIT_CLEAR, ID_EDIT_COPY,
                                       ID_EDIT_CUT,   ID_EDIT_PASTE,  ID_EDIT_PASTE};
    static constexpr int KEYS[] = {VK_Left, VK_Right, VK_Up, VK_Down, 0x0D /* Enter */, VK_Escape, VK_Delete};

    size_t Below(size_t n) { return m_random() % n; }
    CPoint Place() {
        // On the canvas and somewhat beyond it.
        const CSize sz = m_session.m_spCanvas->GetSize();
        return {static_cast<int32_t>(Below(static_cast<size_t>(sz.cx + 40) * 8)) - 160,
                static_cast<int32_t>(Below(static_cast<size_t>(sz.cy + 40) * 8)) - 160};
    }
    void ChangeColors() {
        const auto low = static_cast<uint8_t>(Below(255));
        const auto high = static_cast<uint8_t>(low + 1 + Below(255u - low));
        const auto fHue = static_cast<float>(Below(361)) - 180;
        const TPixelOperation fnOperation =
            Below(2) ? LevelOperation(MakeLevelTable({low, high, 2}), static_cast<uint32_t>(1 + Below(15)))
                     : HsbOperation({.fHue = fHue, .fBright = -0.25F});
        g_lstCanvasFrame.front()->EditTree([&] {
            const CFloatDrop drop(m_session.m_spCanvas);
            return ChangePixels(ActiveRasterLayer(*m_session.m_spCanvas), fnOperation, L"色調補正");
        });
    }
    void ChangeSize() {
        const CSize sz{150 + static_cast<int32_t>(Below(150)), 100 + static_cast<int32_t>(Below(100))};
        g_lstCanvasFrame.front()->EditTree([&] {
            const auto& spCanvas = m_session.m_spCanvas;
            if (Below(2)) return RescaleCanvas(spCanvas, sz, static_cast<ERescaleMode>(Below(3)));
            const CPoint ptMove{static_cast<int32_t>(Below(99)) - 50, static_cast<int32_t>(Below(99)) - 50};
            return ResizeCanvas(spCanvas, sz, ShiftChange(ptMove), L"画像サイズ変更"), true;
        });
    }
    void Switch() {
        std::vector<int> vTools;
        for (const TToolRow& row : GetToolTable()) vTools.push_back(row.info.nId);
        std::erase_if(vTools, [](int nId) { return nId == 6 || nId == 7; }); // those of paths
        g_pMainFrame->SwitchTool(vTools[Below(vTools.size())]);
        m_session.m_bPen = Below(3) == 0;
        if (const auto spTool = boost::dynamic_pointer_cast<CRasterBrushBase>(g_wpActiveTool.lock())) {
            spTool->GetParam().BrushRadius = static_cast<uint32_t>(8 + 16 * Below(3));
            spTool->GetFreehand().m_clrBrush = static_cast<TColor>(m_random() & 0xFFFFFF);
        }
    }
    // One of the choices in the tool's options.
    void PressButton() {
        auto& window = dynamic_cast<CSessionPanelWindow&>(
            *g_pMainFrame->GetPanels().Find(ID_PANEL_TOOL_OPTION)->GetWindow());
        std::vector<int> vIds;
        for (const TPanelControl& control : window.GetControls())
            if (control.bVisible && control.bEnabled &&
                (control.kind == TPanelControl::EKind::Radio || control.kind == TPanelControl::EKind::Button))
                vIds.push_back(control.nId);
        if (!vIds.empty()) SendMessage({&window, EMessage::PanelChange, vIds[Below(vIds.size())], 1});
    }
    void Hold(int nKey, const std::function<void()>& fn) {
        if (nKey) m_session.Key(nKey, true);
        fn();
        if (nKey) m_session.Key(nKey, false);
    }
    void Drag() {
        constexpr int HELD[] = {0, 0, 0, VK_Control, VK_Shift, VK_Alt};
        Hold(HELD[Below(6)], [&] {
            m_session.Press(Place());
            for (size_t n = Below(5); n > 0; --n) m_session.Move(Place());
            if (Below(9) == 0) m_session.Type(VK_Escape);
            if (Below(20) == 0) m_session.Pointer(EMessage::RButtonDown, Place());
            if (Below(20) == 0) m_session.Command(ID_EDIT_UNDO);
            m_session.Release(Place());
        });
        if (Below(3) == 0) m_session.m_spCanvas->CompleteWork();
    }

    CToolSession& m_session;
    std::mt19937 m_random;
};

} // namespace

// VELLUM_WALK_STEPS makes it longer, VELLUM_WALK_SEED another one.
TEST(RasterWalk, UndoLeadsToTheFirstBytesAndRedoToTheLast) {
    const auto number = [](const char* pszName, int nElse) {
        const char* psz = std::getenv(pszName);
        return psz ? std::atoi(psz) : nElse;
    };
    const int nSteps = number("VELLUM_WALK_STEPS", 600);
    CToolSession session(MakePage({230, 150}));
    session.m_spCanvas->GetRoot().AddLayer(CreateRasterLayer(session.m_spCanvas), -1, false);
    g_Switches.m_nMaxHistory = 1000;
    session.Play(TOOL_BRUSH, [&] {
        CWalker walker(session, static_cast<unsigned>(number("VELLUM_WALK_SEED", 5)));
        CHistoryStream& history = session.m_spCanvas->GetHistory();
        struct TState {
            TBytes vFile;
            std::vector<uint32_t> vPicture;
            std::vector<uint8_t> vMask;
            bool bFloats;
            bool operator==(const TState&) const = default;
        };
        const auto state = [&] {
            session.m_spCanvas->SelectLayer(
                LayerOf(*session.m_spCanvas, 0)); // the active layer has no history
            const auto spSelect = session.m_spCanvas->GetSelect();
            return TState{session.Bytes(), PageOf(*session.m_spCanvas),
                          spSelect ? ValuesOf<uint8_t>(spSelect->GetMask()) : std::vector<uint8_t>(),
                          session.m_spCanvas->GetFloatState().spFloat != nullptr};
        };
        int nFloats = 0;
        for (int nStep = 0; nStep < nSteps;) {
            const TState first = state();
            for (int n = 0; n < 100; ++n, ++nStep) walker.Step();
            g_wpActiveTool.lock()->TellProximity(false); // a pen's stroke goes on for a while
            SettleActiveTool();
            session.m_spCanvas->CompleteWork();
            const size_t nActions = history.GetUndoList().size();
            std::vector<TState> vStates{state()};
            while (!history.GetUndoList().empty()) {
                session.Command(ID_EDIT_UNDO);
                vStates.push_back(state());
                nFloats += vStates.back().bFloats;
            }
            ASSERT_TRUE(vStates.back() == first)
                << nStep << ' ' << (vStates.back().vFile == first.vFile)
                << (vStates.back().vPicture == first.vPicture) << (vStates.back().vMask == first.vMask)
                << (vStates.back().bFloats == first.bFloats);
            const TState last = vStates.front();
            while (history.GetUndoList().size() < nActions) { // what was undone before stays so
                session.Command(ID_EDIT_REDO);
                vStates.pop_back();
                ASSERT_TRUE(state() == vStates.back())
                    << nStep << ' ' << ToUtf8(history.GetUndoList().front()->GetName());
            }
            const auto spOpened = LoadFromBytes(last.vFile);
            ASSERT_TRUE(SaveToBytes(*spOpened) == last.vFile) << nStep;
            ASSERT_TRUE(PageOf(*spOpened) == last.vPicture) << nStep;
            history.Clear();
        }
        EXPECT_GT(nFloats, nSteps / 50);
    });
}

TEST(RasterWalk, TheDocumentStaysAsItIsUnderAStroke) {
    CToolSession session(MakePage({100, 100}));
    session.Play(TOOL_BRUSH, [&] {
        CCanvasFrame& frame = *g_lstCanvasFrame.front();
        frame.EditTree([&] { return RescaleCanvas(session.m_spCanvas, {120, 90}, ERescaleMode::Nearest); });
        session.Press({80, 80});
        session.Move({400, 300});
        session.Command(ID_EDIT_UNDO);
        frame.GoToState({});
        EXPECT_EQ(session.m_spCanvas->GetSize(), CSize(120, 90));
        session.Release({400, 300});
        session.m_spCanvas->CompleteWork();
        EXPECT_EQ(session.Labels(), (std::vector<std::wstring>{L"解像度変更", L"ラスタブラシ"}));
    });
}
