// The stroke selection tool in a running session: what is taken, and how it is dragged.
#include "core/PathSelect/StrokeSelect.h"
#include "tests/support/PathSession.h"
#include "tests/support/Paths.h"

namespace {

using TLabels = std::vector<std::wstring>;
using TPoints = std::vector<CPoint>;

// Three level strokes of 120 pixels, 10 wide, 50 apart; A is the topmost and the lowest on the layer.
class StrokeSelectHand : public testing::Test, protected CPathSession {
protected:
    void Play(const std::function<void()>& fn) {
        CPathSession::Play(TOOL_STROKE_SELECT, [&] {
            for (size_t n = 0; n < m_aspStrokes.size(); ++n) {
                m_aspStrokes[n] = MakeEvenStroke({400, 400 * static_cast<int32_t>(n + 1)});
                Layer().InsertPath(m_aspStrokes[n]);
            }
            fn();
        });
    }
    CStrokeSelect& Tool() { return dynamic_cast<CStrokeSelect&>(*g_wpActiveTool.lock()); }
    // The selected strokes by their letters, the lowest on the layer first.
    std::string Selected() {
        std::string str;
        for (const auto& spPath : Layer().GetSelectedPaths())
            str += static_cast<char>('A' + (std::ranges::find(m_aspStrokes, spPath) - m_aspStrokes.begin()));
        return str;
    }
    void Select(const std::string& strLetters) {
        TStrokes vPaths;
        for (const char c : strLetters) vPaths.push_back(m_aspStrokes.at(static_cast<size_t>(c - 'A')));
        Layer().SelectPaths(vPaths);
    }
    void With(int nKey, const std::function<void()>& fn) {
        Key(nKey, true);
        fn();
        Key(nKey, false);
    }
    // Drags a part of the box; from outside the corner it begins 12 pixels away.
    void DragPart(
        EBoxPart part, CPoint away, const std::function<void()>& fnHeld = [] {}) {
        const CPoint pt = part == BOX_TURN ? BoxHandleAt(Tool().GetBox(), BOX_RIGHT_BOTTOM) + CPoint{96, 96}
                                           : BoxHandleAt(Tool().GetBox(), part);
        Press(pt);
        Move(pt + CPoint{away.x + 800, away.y - 240}); // what was shown before must not count
        Move(pt + away);
        fnHeld();
        Release(pt + away);
    }
    COpenPathStream& Stream(char c) { return m_aspStrokes.at(static_cast<size_t>(c - 'A'))->GetStream(); }

    std::array<boost::shared_ptr<COpenPathObject>, 3> m_aspStrokes;
};

} // namespace

TEST_F(StrokeSelectHand, AClickTakesTheTopmostStrokeAndModifiersAddAndTakeAway) {
    Play([&] {
        const TBytes vBytes = Bytes();
        Click({800, 400});
        EXPECT_EQ(Selected(), "A");
        EXPECT_EQ(Layer().GetSelectedPath(), m_aspStrokes[0]) << "the path tools' selected path";
        Click({800, 846}); // beside the ink, 6 pixels from the line
        EXPECT_EQ(Selected(), "B");
        With(VK_Shift, [&] { Click({800, 400}), Click({800, 1200}); });
        EXPECT_EQ(Selected(), "ABC");
        EXPECT_FALSE(Layer().GetSelectedPath());
        With(VK_Shift, [&] { Click({800, 800}); });
        EXPECT_EQ(Selected(), "AC");
        With(VK_Alt, [&] { Click({800, 400}), Click({800, 800}), Click({800, 1000}); });
        EXPECT_EQ(Selected(), "C");
        With(VK_Shift, [&] { Click({800, 1000}); });
        EXPECT_EQ(Selected(), "C") << "a click beside everything adds nothing";
        Click({800, 1256}); // 7 pixels from the line
        EXPECT_EQ(Selected(), "");
        const auto spAbove = MakeEvenStroke({600, 424});
        Layer().InsertPath(spAbove);
        Click({800, 432});
        EXPECT_EQ(Layer().GetSelectedPath(), spAbove);
        Layer().RemovePath(spAbove);
        EXPECT_EQ(Selected(), "") << "what leaves the layer is not selected";
        EXPECT_TRUE(Bytes() == vBytes && Labels().empty());
    });
}

TEST_F(StrokeSelectHand, AShapeTakesTheStrokesInsideOrThoseItTouches) {
    Play([&] {
        Drag({{340, 340}, {600, 500}, {1420, 860}});
        EXPECT_EQ(Selected(), "AB");
        With(VK_Shift, [&] { Drag({{1420, 1260}, {300, 740}}); });
        EXPECT_EQ(Selected(), "ABC") << "those that were selected stay";
        With(VK_Alt, [&] { Drag({{300, 700}, {1420, 860}}); });
        EXPECT_EQ(Selected(), "AC");
        Drag({{100, 200}, {800, 1300}});
        EXPECT_EQ(Selected(), "") << "none is inside as a whole";
        Tool().GetParam().bTouched = true;
        Drag({{600, 300}, {640, 900}});
        EXPECT_EQ(Selected(), "AB");
        Drag({{600, 1000}, {640, 1140}});
        EXPECT_EQ(Selected(), "");
        // The way around A and C; its line back crosses none.
        Tool().GetParam() = {.shape = STROKE_LASSO};
        Drag({{340, 320},
              {1420, 320},
              {1420, 480},
              {360, 480},
              {360, 700},
              {200, 700},
              {200, 1300},
              {1420, 1300},
              {1420, 1100},
              {240, 1100},
              {240, 320}});
        EXPECT_EQ(Selected(), "AC");
        Press({200, 160});
        Move({1420, 480});
        Type(VK_Escape);
        Release({1420, 480});
        EXPECT_EQ(Selected(), "AC") << "a shape that is cancelled selects nothing else";
        Type(VK_Escape);
        EXPECT_EQ(Selected(), "");
        With(VK_Control, [&] { Type('A'); });
        EXPECT_EQ(Selected(), "ABC");
        With(VK_Control, [&] { Type('D'); });
        EXPECT_EQ(Selected(), "");
        Command(ID_SELECT_ALL);
        EXPECT_EQ(Selected(), "ABC");
        EXPECT_FALSE(m_spCanvas->GetSelect());
        EXPECT_TRUE(Labels().empty());
    });
}

TEST_F(StrokeSelectHand, ADragMovesWhatIsSelectedExactlyAndShowsItLive) {
    Play([&] {
        Select("AC");
        const TBytes vStart = Bytes();
        const auto vPicture = Picture();
        Press({800, 400});
        Move({1803, 777});
        Move({881, 363});
        EXPECT_EQ(Bytes(), vStart);
        const auto vShown = Picture();
        EXPECT_NE(vShown, vPicture);
        Release({881, 363});
        EXPECT_EQ(Picture(), vShown);
        EXPECT_EQ(Anchors(0), (TPoints{{481, 363}, {961, 363}, {1441, 363}}));
        EXPECT_EQ(Anchors(1), (TPoints{{400, 800}, {880, 800}, {1360, 800}}));
        EXPECT_EQ(Anchors(2).front(), (CPoint{481, 1163}));
        EXPECT_EQ(Stream('A').GetControlPoint(1)->GetFore(STATE_COMMITTED), (CPoint{160, 0}));
        EXPECT_EQ(Labels(), TLabels{L"線の移動"});
        const TBytes vMoved = Bytes();
        Command(ID_EDIT_UNDO);
        EXPECT_EQ(Bytes(), vStart);
        EXPECT_EQ(Picture(), vPicture);
        Command(ID_EDIT_REDO);
        EXPECT_EQ(Bytes(), vMoved);
        Command(ID_EDIT_UNDO);
        // A stroke outside of the box is selected and moved at once; in the box the selected ones move.
        Select("A");
        Drag({{800, 1200}, {800, 1240}});
        EXPECT_EQ(Anchors(2).front(), (CPoint{400, 1240}));
        Select("AC");
        Drag({{800, 800}, {840, 800}});
        EXPECT_EQ(Anchors(0).front(), (CPoint{440, 400}));
        EXPECT_EQ(Anchors(1).front(), (CPoint{400, 800}));
        while (!Labels().empty()) Command(ID_EDIT_UNDO);
        for (const auto& fnEnd : std::initializer_list<std::function<void()>>{
                 [&] { Type(VK_Escape); },
                 [&] {
                     Pointer(EMessage::RButtonDown, {0, 0});
                 },
                 [&] { Command(ID_EDIT_UNDO); },
             }) {
            Press({800, 400});
            Move({900, 500});
            EXPECT_NE(Picture(), vPicture);
            fnEnd();
            Release({900, 500});
            EXPECT_TRUE(Bytes() == vStart && Picture() == vPicture && Labels().empty());
            EXPECT_EQ(Selected(), "AC");
        }
    });
}

TEST_F(StrokeSelectHand, HandlesScaleAndTurnAroundWhatStays) {
    Play([&] {
        Select("AB");
        const TBytes vStart = Bytes();
        const CPoint ptFirst = BoxHandleAt(Tool().GetBox(), BOX_LEFT_TOP);
        const CPoint ptLast = BoxHandleAt(Tool().GetBox(), BOX_RIGHT_BOTTOM);
        const CPoint size = ptLast - ptFirst;
        const auto undo = [&] {
            Command(ID_EDIT_UNDO);
            EXPECT_EQ(Bytes(), vStart);
        };
        DragPart(BOX_RIGHT_BOTTOM, {size.x, size.y});
        EXPECT_EQ(Anchors(1)[2], (CPoint{2 * 1360 - ptFirst.x, 2 * 800 - ptFirst.y}));
        EXPECT_EQ(Stream('B').GetControlPoint(2)->GetBack(STATE_COMMITTED), (CPoint{-320, 0}));
        EXPECT_EQ(Stream('A').GetWidth(), 80u);
        EXPECT_EQ(Labels(), TLabels{L"線の拡大・縮小"});
        undo();
        DragPart(BOX_LEFT, {-size.x, 0});
        EXPECT_EQ(Anchors(0)[0], (CPoint{2 * 400 - ptLast.x, 400}));
        EXPECT_EQ(Stream('A').GetWidth(), 57u) << "40 times the root of 2";
        undo();
        Tool().GetParam().bScaleWidths = false;
        With(VK_Alt, [&] { DragPart(BOX_TOP, {0, -size.y / 2}); });
        EXPECT_EQ(Anchors(0)[1], (CPoint{880, 200}));
        EXPECT_EQ(Anchors(1)[1], (CPoint{880, 1000}));
        EXPECT_EQ(Stream('A').GetWidth(), 40u);
        undo();
        With(VK_Shift, [&] { DragPart(BOX_LEFT_TOP, {-size.x, -size.y}); });
        EXPECT_EQ(Anchors(0)[0], (CPoint{2 * 400 - ptLast.x, 2 * 400 - ptLast.y}));
        undo();
        DragPart(BOX_RIGHT, {-4 * size.x, 0});
        EXPECT_TRUE(ptFirst.x <= Anchors(0)[0].x && Anchors(0)[0].x < Anchors(0)[2].x) << "not turned over";
        undo();
        // A quarter to the right, which a pointer near it is taken to.
        const CPoint ptMiddle = ptFirst + CPoint{size.x / 2, size.y / 2};
        const CPoint ptAway = ptLast + CPoint{96, 96} - ptMiddle;
        With(VK_Shift, [&] { DragPart(BOX_TURN, CPoint{-ptAway.y - 20, ptAway.x} - ptAway); });
        EXPECT_EQ(Anchors(0)[0], (CPoint{ptMiddle.x + 200, ptMiddle.y - 480}));
        EXPECT_EQ(Anchors(1)[2], (CPoint{ptMiddle.x - 200, ptMiddle.y + 480}));
        EXPECT_EQ(Stream('A').GetControlPoint(1)->GetFore(STATE_COMMITTED), (CPoint{0, 160}));
        EXPECT_EQ(Labels(), TLabels{L"線の回転"});
        EXPECT_EQ(Stream('A').GetWidth(), 40u);
        undo();
    });
}

TEST_F(StrokeSelectHand, KeysMoveAndDeleteAsUndoSteps) {
    Play([&] {
        Select("BC");
        const TBytes vStart = Bytes();
        for (int n = 0; n < 3; ++n) Type(VK_Right);
        With(VK_Shift, [&] { Type(VK_Up); });
        EXPECT_EQ(Anchors(1)[0], (CPoint{424, 720}));
        EXPECT_EQ(Labels(), TLabels{L"線の移動"}) << "one step";
        const TBytes vMoved = Bytes();
        Select("B");
        Type(VK_Left);
        EXPECT_EQ(Labels().size(), 2u) << "of other strokes";
        Command(ID_EDIT_UNDO);
        EXPECT_EQ(Bytes(), vMoved);
        Command(ID_EDIT_UNDO);
        EXPECT_EQ(Bytes(), vStart);
        Select("AC");
        Type(VK_Delete);
        EXPECT_EQ(Layer().GetPaths().size(), 1u);
        EXPECT_EQ(Layer().GetPaths().front(), m_aspStrokes[1]);
        EXPECT_EQ(Selected(), "");
        EXPECT_EQ(Labels(), TLabels{L"線の削除"});
        EXPECT_FALSE(g_pMainFrame->IsCommandEnabled(ID_EDIT_CLEAR));
        const TBytes vLeft = Bytes();
        Command(ID_EDIT_UNDO);
        EXPECT_EQ(Bytes(), vStart) << "at their places among the others";
        Command(ID_EDIT_REDO);
        EXPECT_EQ(Bytes(), vLeft);
    });
}

TEST_F(StrokeSelectHand, ADragThatNoFileCanHoldLeavesAllAsItWas) {
    Play([&] {
        Select("ABC");
        const TBytes vStart = Bytes();
        const auto vPicture = Picture();
        CStrokesDrag drag(Layer(), Layer().GetSelectedPaths());
        TStrokeMap map;
        map.dToY = PATH_COORDINATE_LIMIT - 1000; // A and B would still fit
        drag.Show(map);
        EXPECT_THROW(drag.Commit(L""), refused_error);
        EXPECT_EQ(Bytes(), vStart);
        EXPECT_EQ(Picture(), vPicture);
        map.dToY = 0;
        drag.Show(map);
        EXPECT_FALSE(drag.Commit(L"")) << "nothing has changed";
    });
}
