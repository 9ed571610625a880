#include "core/PathToolBase/PathTool.h"
#include "tests/support/PathSession.h"

namespace {

using TLabels = std::vector<std::wstring>;
using TPoints = std::vector<CPoint>;

class PathToolHand : public testing::Test, protected CPathSession {
protected:
    void Play(const std::function<void()>& fn) { CPathSession::Play(TOOL_PATH, fn); }
    CPathTool& Tool() { return dynamic_cast<CPathTool&>(*g_wpActiveTool.lock()); }
    // Draws a path of straight segments.
    void Draw(const TPoints& vAnchors) {
        Key(VK_Control, true);
        for (const CPoint pt : vAnchors) Click(pt);
        Key(VK_Control, false);
    }
    CPathStream& Stream(int idx) { return (*std::next(Layer().GetPaths().begin(), idx))->GetStream(); }
    bool CanUndo() { return g_pMainFrame->IsCommandEnabled(ID_EDIT_UNDO); }
    ECursor Cursor() { return g_wpActiveTool.lock()->GetCursor({}); }
};

} // namespace

TEST_F(PathToolHand, APathIsDrawnWhileControlIsHeldAndIsOneAction) {
    Play([&] {
        const TBytes vStart = Bytes();
        Key(VK_Control, true);
        Drag({{400, 400}, {480, 400}, {560, 360}});
        EXPECT_EQ(Tool().GetState(), STATE_IDLE);
        EXPECT_TRUE(Labels().empty() && Tool().IsOpen() && CanUndo());
        EXPECT_FALSE(g_pMainFrame->IsCommandEnabled(ID_EDIT_REDO));
        Click({1200, 800});
        Key(VK_Alt, true);
        Drag({{1600, 400}, {1600, 480}, {1600, 560}});
        Key(VK_Alt, false);
        Key(VK_Control, false);
        EXPECT_EQ(Labels(), TLabels{L"パス追加"});
        EXPECT_EQ(Anchors(0), (TPoints{{400, 400}, {1200, 800}, {1600, 400}}));
        const CPathStream& stream = Stream(0);
        EXPECT_EQ(stream.GetControlPoint(0)->GetFore(STATE_COMMITTED), (CPoint{160, -40}));
        EXPECT_EQ(stream.GetControlPoint(0)->GetBack(STATE_COMMITTED), (CPoint{-160, 40}));
        EXPECT_FALSE(stream.GetControlPoint(1)->HasFore() || stream.GetControlPoint(2)->HasBack());
        EXPECT_EQ(stream.GetControlPoint(2)->GetFore(STATE_COMMITTED), (CPoint{0, 160}));
        EXPECT_EQ(Layer().GetSelectedPath(), Layer().GetPaths().front());
        EXPECT_FALSE(Layer().GetSelectedPoint());
        Command(ID_EDIT_UNDO);
        EXPECT_EQ(Bytes(), vStart);
        Command(ID_EDIT_REDO);
        EXPECT_EQ(Anchors(0).size(), 3u);
        // Delete without a selected anchor takes the path, and twice does nothing more.
        Layer().SelectPath(Layer().GetPaths().front());
        for (int n = 0; n < 2; ++n) Type(VK_Delete);
        EXPECT_EQ(Bytes(), vStart);
        EXPECT_EQ(Labels(), (TLabels{L"パス追加", L"パス削除"}));
        // A single click leaves nothing, nor does Control alone.
        Draw({{800, 800}});
        Draw({});
        EXPECT_EQ(Bytes(), vStart);
        EXPECT_EQ(Labels().size(), 2u);
    });
}

TEST_F(PathToolHand, DrawingEndsWithoutWhatIsNotFinished) {
    Play([&] {
        const auto ends = [&](const std::function<void()>& fnEnd) {
            Key(VK_Control, true);
            for (const CPoint pt : {CPoint{400, 400}, {800, 400}}) Click(pt);
            Press({1200, 400});
            Move({1280, 480});
            fnEnd();
            Key(VK_Control, false);
            if (g_wpActiveTool.lock()->GetState() != STATE_IDLE) Release({1280, 480});
            EXPECT_FALSE(g_wpActiveTool.lock()->IsOpen() || m_spCanvas->GetHistory().IsUnfinished());
            TPoints vAnchors = Layer().GetPaths().empty() ? TPoints() : Anchors(0);
            const bool bPulled =
                !vAnchors.empty() && Stream(0).GetControlPoint(vAnchors.size() - 1)->HasFore();
            while (!Labels().empty()) Command(ID_EDIT_UNDO);
            return std::pair(vAnchors.size(), bPulled);
        };
        const auto expected = std::pair(size_t{3}, false);
        EXPECT_EQ(ends([&] { Type(VK_Escape); }), expected);
        EXPECT_EQ(ends([&] { Pointer(EMessage::RButtonDown, {0, 0}); }), expected);
        EXPECT_EQ(ends([&] {
                      Release({1280, 480}), Pointer(EMessage::RButtonDown, {0, 0});
                  }),
                  std::pair(size_t{3}, true));
        EXPECT_EQ(ends([&] { SettleActiveTool(); }), expected);
        EXPECT_EQ(ends([&] { Key(VK_Control, false); }),
                  std::pair(size_t{3}, true)); // goes on to its release
        // Undo takes anchors back, first the one that was just pressed.
        EXPECT_EQ(ends([&] { Command(ID_EDIT_UNDO); }), std::pair(size_t{2}, false));
        EXPECT_EQ(ends([&] { Release({1280, 480}), Command(ID_EDIT_UNDO); }), std::pair(size_t{2}, false));
        EXPECT_EQ(ends([&] {
                      for (int n = 0; n < 3; ++n) Command(ID_EDIT_UNDO);
                      EXPECT_TRUE(Layer().GetPaths().empty() && !CanUndo());
                  }),
                  std::pair(size_t{0}, false));
        g_pMainFrame->SwitchTool(TOOL_PATH);
        EXPECT_EQ(ends([&] { g_pMainFrame->SwitchTool(TOOL_BRUSH); }), expected);
    });
}

TEST_F(PathToolHand, PointsAreDraggedInsertedAndRemoved) {
    Play([&] {
        Draw({{400, 400}, {1200, 400}, {2000, 400}});
        const TBytes vLine = Bytes();
        // A press without Control begins a drag after three pixels of the window, not at two.
        Drag({{405, 403}, {421, 403}});
        EXPECT_EQ(Bytes(), vLine);
        Press({405, 403});
        Move({405, 427});
        EXPECT_EQ(Bytes(), vLine);
        EXPECT_EQ(Stream(0).GetControlPoint(0)->GetAnchor()[STATE_LIVE], (CPoint{400, 424}));
        const auto vShown = Picture();
        Release({405, 427});
        EXPECT_EQ(Picture(), vShown);
        EXPECT_EQ(Labels().back(), L"アンカーの移動");
        EXPECT_EQ(Layer().GetSelectedPoint(), Stream(0).GetControlPoint(0));
        Command(ID_EDIT_UNDO);
        EXPECT_EQ(Bytes(), vLine);
        // Escape, the right button and undo give the drag up.
        for (const std::function<void()>& fnCancel : {std::function([&] { Type(VK_Escape); }),
                                                      {[&] {
                                                          Pointer(EMessage::RButtonDown, {0, 0});
                                                      }},
                                                      {[&] { Command(ID_EDIT_UNDO); }}}) {
            Press({400, 400});
            Move({600, 600});
            fnCancel();
            EXPECT_EQ(Stream(0).GetControlPoint(0)->GetAnchor()[STATE_LIVE], (CPoint{400, 400}));
            Move({700, 700});
            Release({700, 700});
            EXPECT_EQ(Bytes(), vLine);
            EXPECT_EQ(Labels().size(), 1u);
        }
        // On the line of the selected path a press inserts an anchor and drags it.
        Drag({{800, 402}, {800, 480}, {810, 500}});
        EXPECT_EQ(Anchors(0), (TPoints{{400, 400}, {810, 498}, {1200, 400}, {2000, 400}}));
        EXPECT_EQ(Labels().back(), L"制御点の追加");
        // The delete mode removes it; one of the last two takes the path.
        Key(VK_Shift, true);
        Move({812, 500});
        EXPECT_EQ(Cursor(), ECursor::Remove);
        Click({812, 500});
        EXPECT_EQ(Anchors(0), (TPoints{{400, 400}, {1200, 400}, {2000, 400}}));
        EXPECT_EQ(Labels().back(), L"制御点の削除");
        Key(VK_Shift, false);
        Click({1200, 400});
        Type(VK_Delete);
        EXPECT_EQ(Anchors(0), (TPoints{{400, 400}, {2000, 400}}));
        EXPECT_EQ(Layer().GetSelectedPath(), Layer().GetPaths().front());
        Click({2000, 400});
        Type(VK_Delete);
        EXPECT_EQ(Labels().back(), L"パス削除");
        while (Labels().size() > 1) Command(ID_EDIT_UNDO);
        EXPECT_EQ(Bytes(), vLine);
    });
}

TEST_F(PathToolHand, APressPicksTheSelectedPathFirstAndSelectsOthers) {
    Play([&] {
        Tool().GetParam().uDefaultWidth = 80;
        Draw({{400, 400}, {2000, 400}});
        Draw({{400, 800}, {2000, 800}});
        const auto spFirst = Layer().GetPaths().front(), spSecond = Layer().GetPaths().back();
        Click({1200, 440}); // ink beside the line
        EXPECT_EQ(Layer().GetSelectedPath(), spFirst);
        Click({1200, 802}); // the other line
        EXPECT_EQ(Layer().GetSelectedPath(), spSecond);
        EXPECT_EQ(Anchors(1).size(), 2u);
        Click({1200, 600});
        EXPECT_FALSE(Layer().GetSelectedPath());
        EXPECT_EQ(Labels().size(), 2u);
        // The nearest of several anchors; the selected path's before others'.
        spFirst->Transform([](CPoint pt) { return CPoint{pt.x, pt.y + 376}; });
        Move({400, 790});
        Click({400, 790});
        EXPECT_EQ(Layer().GetSelectedPoint(), spSecond->GetStream().GetControlPoint(0));
        Layer().SelectPath(spFirst);
        Click({400, 790});
        EXPECT_EQ(Layer().GetSelectedPoint(), spFirst->GetStream().GetControlPoint(0));
        // The pen reaches 8 pixels, the mouse 6.
        Layer().SelectPath({});
        Click({400, 856});
        EXPECT_EQ(Layer().GetSelectedPoint(), nullptr);
        m_bPen = true;
        Click({400, 856});
        EXPECT_EQ(Layer().GetSelectedPoint(), spSecond->GetStream().GetControlPoint(0));
    });
}

TEST_F(PathToolHand, EndsAreConnectedJoinedAndDivided) {
    Play([&] {
        Draw({{400, 400}, {800, 400}});
        const TBytes vOne = Bytes();
        // A drawn path is connected by a press on another one's end.
        Key(VK_Control, true);
        Click({1600, 800});
        Click({1200, 400});
        Move({804, 398});
        EXPECT_EQ(Cursor(), ECursor::Join);
        Click({804, 398});
        EXPECT_FALSE(Tool().IsOpen());
        Key(VK_Control, false);
        EXPECT_EQ(Labels().back(), L"パスの接続");
        EXPECT_EQ(Layer().GetPaths().size(), 1u);
        EXPECT_EQ(Anchors(0), (TPoints{{1600, 800}, {1200, 400}, {800, 400}, {400, 400}}));
        Command(ID_EDIT_UNDO);
        EXPECT_EQ(Bytes(), vOne);
        // An end dragged onto another path's end joins them; with Alt it does not.
        Draw({{1600, 800}, {1200, 800}});
        const TBytes vTwo = Bytes();
        Press({1200, 800});
        Move({810, 410});
        EXPECT_EQ(Stream(1).GetControlPoint(1)->GetAnchor()[STATE_LIVE], (CPoint{800, 400})); // shown as one
        EXPECT_EQ(Cursor(), ECursor::Join);
        Release({810, 410});
        EXPECT_EQ(Labels().back(), L"パスの結合");
        EXPECT_EQ(Anchors(0), (TPoints{{1600, 800}, {800, 400}, {400, 400}}));
        Command(ID_EDIT_UNDO);
        EXPECT_EQ(Bytes(), vTwo);
        Press({1200, 800});
        Key(VK_Alt, true);
        Move({810, 410});
        Release({810, 410});
        Key(VK_Alt, false);
        EXPECT_EQ(Anchors(1), (TPoints{{1600, 800}, {810, 410}}));
        Command(ID_EDIT_UNDO);
        // A path's own ends never join; an inner anchor divides, an end does not.
        Draw({{2000, 1600}, {2400, 1600}, {2400, 2000}});
        Drag({{2000, 1600}, {2300, 2000}, {2398, 2002}});
        EXPECT_EQ(Labels().back(), L"アンカーの移動");
        Command(ID_EDIT_UNDO);
        const TBytes vThree = Bytes();
        const auto divide = [&](CPoint pt) {
            Click(pt);
            Key(VK_Control, true);
            Type(VK_Delete);
            Key(VK_Control, false);
            return Layer().GetPaths().size();
        };
        EXPECT_EQ(divide({2000, 1600}), 3u);
        EXPECT_EQ(Bytes(), vThree);
        EXPECT_EQ(divide({2400, 1600}), 4u);
        EXPECT_EQ(Labels().back(), L"パスの分割");
        EXPECT_EQ(Anchors(2), (TPoints{{2000, 1600}, {2400, 1600}}));
        EXPECT_EQ(Anchors(3), (TPoints{{2400, 1600}, {2400, 2000}}));
        Command(ID_EDIT_UNDO);
        EXPECT_EQ(Bytes(), vThree);
    });
}

TEST_F(PathToolHand, CursorAndHintFollowTheModifiersAtOnce) {
    Play([&] {
        Draw({{400, 400}, {1200, 400}, {2000, 400}});
        Move({1200, 402});
        EXPECT_EQ(Cursor(), ECursor::Move);
        Key(VK_Shift, true);
        EXPECT_EQ(Cursor(), ECursor::Remove);
        Key(VK_Shift, false);
        Key(VK_Control, true);
        EXPECT_EQ(Cursor(), ECursor::Cross);
        Key(VK_Control, false);
        Move({800, 400});
        EXPECT_EQ(Cursor(), ECursor::Add);
        Layer().SelectPath({});
        EXPECT_EQ(Cursor(), ECursor::Select);
        Move({800, 700});
        EXPECT_EQ(Cursor(), ECursor::Arrow);
        // The pen's eraser end is the delete mode.
        Move({1200, 400});
        SendMessage({g_pMainFrame->GetWindow(), WM_PEN_END, 1});
        EXPECT_EQ(g_wpActiveTool.lock()->GetToolId(), TOOL_PATH);
        EXPECT_EQ(Cursor(), ECursor::Remove);
        Click({1200, 400});
        EXPECT_EQ(Anchors(0).size(), 2u);
        SendMessage({g_pMainFrame->GetWindow(), WM_PEN_END, 0});
        EXPECT_STREQ(Tool().GetHint(POINTER_SHIFT), L"クリック: 点を消す");
        // On a raster layer the tool says why it does nothing.
        const auto spRaster = CreateRasterLayer(m_spCanvas);
        m_spCanvas->GetRoot().AddLayer(spRaster, -1, false);
        m_spCanvas->SelectLayer(spRaster);
        EXPECT_FALSE(Tool().IsEnabled());
        EXPECT_NE(Tool().GetRefusal(), nullptr);
    });
}
