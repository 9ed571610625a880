#include "core/PathErase/PathEraser.h"
#include "core/Commands/CommandIds.h"
#include "core/PathToolBase/PathTool.h"
#include "tests/session/ScriptedSession.h"
#include "tests/support/PathSession.h"
#include "tests/support/Paths.h"

namespace {

using TLabels = std::vector<std::wstring>;

/// Even strokes of half-width 40, 960 long, with round ends, which stand out by 40.
class PathEraser : public testing::Test, protected CPathSession {
protected:
    void Play(EEraseMode mode, const std::function<void()>& fn) {
        CPathSession::Play(TOOL_PATH_ERASER, [&] {
            Tool().SetMode(mode);
            Tool().SetRadius(40);
            fn();
        });
    }
    CPathEraser& Tool() { return dynamic_cast<CPathEraser&>(*g_wpActiveTool.lock()); }
    boost::shared_ptr<COpenPathObject> Add(CPoint pt) {
        const auto spPath = MakeEvenStroke(pt);
        Layer().InsertPath(spPath);
        return spPath;
    }
    size_t Count() const { return Layer().GetPaths().size(); }
    static uint8_t CoverageAt(const TPathList& lstPaths, CPoint ptPixel) {
        CAlphaBlock8 pixel;
        pixel.Create({1, 1}, ptPixel);
        CPathFill fill;
        for (const auto& spPath : lstPaths) spPath->RasterizePath(fill, {400, 300}, pixel);
        return *pixel.GetPixelPtr({0, 0});
    }
    bool HasInk(CPoint pt) {
        for (const auto& spPath : Layer().GetPaths())
            if (spPath->HasInkAt(pt)) return true;
        return false;
    }
};

} // namespace

TEST_F(PathEraser, TheTouchedPartGoesAndTheRestStaysAsItWas) {
    Add({160, 160});
    Add({160, 400});
    Add({160, 800});
    Play(ERASE_TOUCHED, [&] {
        const TBytes vStart = Bytes();
        const auto vPicture = Picture();
        const TPathList vBefore = Layer().GetPaths();
        Click({640, 400});
        ASSERT_EQ(Count(), 4u);
        EXPECT_EQ(Labels(), TLabels{L"ベクター消しゴム"});
        // The disc of 40 and the paint of 40: the caps of the new ends touch the disc.
        EXPECT_NEAR(Anchors(1).back().x, 560, 1);
        EXPECT_NEAR(Anchors(2).front().x, 720, 1);
        EXPECT_EQ(Anchors(1).front(), (CPoint{160, 400}));
        EXPECT_EQ(Anchors(3).front(), (CPoint{160, 800})) << "the pieces take the stroke's place";
        EXPECT_TRUE(HasInk({590, 400}) && HasInk({690, 400}));
        EXPECT_FALSE(HasInk({608, 400}) || HasInk({672, 400}) || HasInk({640, 430}) || HasInk({640, 370}));
        const auto vErased = Picture();
        size_t nChanged = 0, nOutside = 0;
        for (int y = 0; y < 150; ++y)
            for (int x = 0; x < 200; ++x) {
                if (CoverageAt(vBefore, {x, y}) == CoverageAt(Layer().GetPaths(), {x, y})) continue;
                ++nChanged;
                nOutside += x < 69 || x > 91 || y < 44 || y > 55;
            }
        EXPECT_GT(nChanged, 100u);
        EXPECT_EQ(nOutside, 0u);
        const TBytes vAfter = Bytes();
        Command(ID_EDIT_UNDO);
        EXPECT_EQ(Bytes(), vStart);
        EXPECT_EQ(Picture(), vPicture);
        Command(ID_EDIT_REDO);
        EXPECT_EQ(Bytes(), vAfter);
        EXPECT_EQ(Picture(), vErased);
    });
}

TEST_F(PathEraser, ADragTakesAllOnItsWayAsOneStep) {
    for (int n = 0; n < 6; ++n) Add({160, 200 + 240 * n});
    Play(ERASE_TOUCHED, [&] {
        const TBytes vStart = Bytes();
        Layer().SelectPath(Layer().GetPaths().front());
        // A fast hand: one event, from above the first to below the fourth; then back beside them.
        Press({400, 40});
        Move({400, 1060});
        EXPECT_EQ(Count(), 10u) << "seen at once";
        EXPECT_TRUE(Labels().empty());
        EXPECT_FALSE(Layer().GetSelectedPath());
        Move({640, 1060});
        Move({640, 40});
        Release({1000, 40});
        EXPECT_EQ(Count(), 14u);
        EXPECT_EQ(Labels(), TLabels{L"ベクター消しゴム"});
        EXPECT_FALSE(m_spCanvas->GetHistory().IsUnfinished());
        const TBytes vAfter = Bytes();
        Command(ID_EDIT_UNDO);
        EXPECT_EQ(Bytes(), vStart);
        EXPECT_EQ(Layer().GetSelectedPath(), Layer().GetPaths().front());
        Command(ID_EDIT_REDO);
        EXPECT_EQ(Bytes(), vAfter);
        Click({400, 240}); // nothing there any more
        EXPECT_EQ(Labels().size(), 1u);
    });
}

TEST_F(PathEraser, WhateverStopsADragRestoresAll) {
    for (int n = 0; n < 4; ++n) Add({160, 200 + 240 * n});
    Layer().SelectPath(Layer().GetPaths().back());
    Play(ERASE_TOUCHED, [&] {
        const TBytes vStart = Bytes();
        const auto vPicture = Picture();
        const std::vector<std::function<void()>> vStops{[&] { Type(VK_Escape); },
                                                        [&] {
                                                            Pointer(EMessage::RButtonDown, {400, 1000});
                                                        },
                                                        [&] { Command(ID_EDIT_UNDO); },
                                                        [&] { g_pMainFrame->SwitchTool(TOOL_PATH_ERASER); }};
        for (const auto& fnStop : vStops)
            for (const EEraseMode mode : {ERASE_WHOLE, ERASE_TOUCHED}) {
                Tool().SetMode(mode);
                Press({400, 100});
                Move({400, 1000});
                EXPECT_NE(Bytes(), vStart);
                fnStop();
                EXPECT_EQ(Bytes(), vStart);
                EXPECT_EQ(Picture(), vPicture);
                EXPECT_TRUE(Labels().empty());
                EXPECT_FALSE(m_spCanvas->GetHistory().IsUnfinished());
                EXPECT_EQ(Layer().GetSelectedPath(), Layer().GetPaths().back());
                Release({400, 1000});
                EXPECT_EQ(Bytes(), vStart);
            }
        // A pen that leaves its range ends the drag.
        m_bPen = true;
        Tool().SetMode(ERASE_WHOLE);
        Press({400, 100});
        Move({400, 300});
        Tool().TellProximity(false);
        EXPECT_EQ(Count(), 3u);
        EXPECT_EQ(Labels().size(), 1u);
    });
}

TEST_F(PathEraser, ThePreviewIsWhatAPressTakes) {
    Add({160, 400});
    Add({160, 800});
    const auto spShape = boost::make_shared<CClosedPathObject>();
    for (const CPoint pt : {CPoint{2000, 800}, {2400, 800}, {2400, 1200}, {2000, 1200}})
        AddAnchor(spShape->GetStream(), pt);
    spShape->Update();
    Layer().InsertPath(spShape);
    Play(ERASE_TOUCHED, [&] {
        const TOverlayMapper mapper([](CPoint pt) { return CPoint{pt.x / 8, pt.y / 8}; });
        const auto repainted = [&] {
            CRect rcAll;
            const auto vChanges = Tool().TakeOverlayChanges(mapper);
            for (const CRect& rc : *vChanges) rcAll = rcAll.Union(rc);
            return rcAll;
        };
        // Past the window, which would take the changes.
        const auto hover = [&](CPoint pt) { Tool().OnMouseMove(pt.x, pt.y, 0, 0u); };
        repainted();
        hover({640, 400});
        ASSERT_EQ(Tool().GetPreview().size(), 1u);
        EXPECT_EQ(Tool().GetPreview()[0].spPath, Layer().GetPaths().front());
        const auto shown = [&] {
            COverlay overlay;
            Tool().DrawOverlay(overlay, mapper);
            return overlay.GetBounds();
        };
        EXPECT_EQ(shown(), CRect(70, 45, 91, 56)) << "the stroke's edges, from 560 to 720";
        repainted();
        Tool().SetRadius(16);
        EXPECT_EQ(shown(), CRect(73, 45, 88, 56)) << "wider than the circle";
        repainted();
        hover({1600, 1600}); // both are painted again, what is far from them is not
        EXPECT_TRUE(Tool().GetPreview().empty());
        const CRect rc = repainted();
        EXPECT_TRUE(rc.left <= 73 && rc.top <= 45 && rc.right >= 203 && rc.bottom >= 203);
        EXPECT_GE(repainted().left, 190);
        EXPECT_EQ(shown(), CRect(198, 198, 203, 203));
        Tool().SetRadius(40);
        // Only whole strokes: filled shapes stay in the other modes.
        for (const EEraseMode mode : {ERASE_TO_CROSSING, ERASE_TOUCHED}) {
            Tool().SetMode(mode);
            Click({2200, 1000});
            Click({2000, 1000});
            EXPECT_EQ(Count(), 3u);
        }
        Tool().SetMode(ERASE_WHOLE);
        hover({2200, 1000});
        EXPECT_EQ(Tool().GetPreview().size(), 1u);
        Click({2200, 1000});
        EXPECT_EQ(Count(), 2u);
        Click({300, 445});
        EXPECT_EQ(Count(), 1u);
        Command(ID_EDIT_UNDO);
        EXPECT_EQ(Tool().GetPreview().size(), 0u)
            << "the pointer's place is looked at again when it is asked for";
        repainted();
        EXPECT_EQ(Tool().GetPreview().size(), 1u);
        // A path that changes below the pointer, as an undo of another tool's step changes it.
        Layer().GetPaths().front()->Transform([](CPoint pt) {
            return CPoint{pt.x, pt.y + (1120 - pt.x) / 2};
        });
        m_spCanvas->GetHistory().SetModified(true);
        repainted();
        EXPECT_EQ(Tool().GetPreview().size(), 0u);
        m_vLayers[0]->SetVisible(false);
        Click({300, 400});
        EXPECT_EQ(Count(), 2u);
    });
}

TEST_F(PathEraser, ThePensOtherEndErasesByTheKindOfTheLayer) {
    Add({160, 400});
    const auto spRaster = CreateRasterLayer(m_spCanvas);
    CPathSession::Play(TOOL_BRUSH, [&] {
        const auto turn = [&](bool bEraser) {
            SendMessage({g_pMainFrame->GetWindow(), EMessage::PenProximity, 1, bEraser ? 2 : 1});
            return g_wpActiveTool.lock()->GetToolId();
        };
        EXPECT_EQ(turn(true), TOOL_PATH_ERASER);
        EXPECT_EQ(turn(false), TOOL_BRUSH);
        g_pMainFrame->SwitchTool(TOOL_ERASER);
        EXPECT_EQ(turn(true), TOOL_PATH_ERASER);
        EXPECT_EQ(turn(false), TOOL_ERASER);
        g_pMainFrame->SwitchTool(TOOL_PATH_ERASER);
        EXPECT_EQ(turn(true), TOOL_PATH_ERASER);
        EXPECT_EQ(turn(false), TOOL_PATH_ERASER);
        // The size commands and the settings, which the next tool reads.
        Tool().SetRadius(80);
        Tool().SetMode(ERASE_WHOLE);
        Command(ID_BRUSH_LARGER);
        EXPECT_EQ(Tool().GetRadius(), 90);
        Command(ID_BRUSH_SMALLER);
        EXPECT_EQ(Tool().GetRadius(), 79);
        g_pMainFrame->SwitchTool(TOOL_PATH_ERASER);
        EXPECT_EQ(Tool().GetRadius(), 79);
        EXPECT_EQ(Tool().GetMode(), ERASE_WHOLE);
        g_pMainFrame->SwitchTool(TOOL_BRUSH);
        m_spCanvas->GetRoot().AddLayer(spRaster, -1, false);
        m_spCanvas->GetRoot().SetActiveChild(spRaster);
        EXPECT_EQ(turn(true), TOOL_ERASER);
        EXPECT_EQ(turn(false), TOOL_BRUSH);
    });
}

TEST(PathEraserScript, ARecordedDragErasesTheSame) {
    const auto pointer = [](const char* pszMessage, int x, int y) {
        return ScriptLine("pointer", {{"message", pszMessage}, {"x", x}, {"y", y}, {"left", false}});
    };
    std::string str = ScriptLine("view", {{"width", 200}, {"height", 150}}) +
                      ScriptLine("command", "layer-new-vector") + Tool(TOOL_PATH);
    for (const auto& [ptFrom, ptTo] :
         {std::pair(CPoint{50, 60}, CPoint{150, 60}), {CPoint{90, 40}, CPoint{90, 90}}}) {
        str += ScriptLine("key", {{"down", VK_Control}});
        for (const CPoint pt : {ptFrom, ptTo})
            str += pointer("ldown", pt.x, pt.y) + pointer("lup", pt.x, pt.y);
        str += ScriptLine("key", {{"up", VK_Control}});
    }
    str += ScriptLine("command", "tool-vector-eraser") +
           ScriptLine("panel", {{"id", "panel-tool-option"}, {"control", 1362}, {"value", 1}});
    str += pointer("move", 130, 50) + pointer("ldown", 130, 50) + pointer("move", 130, 70) +
           pointer("lup", 130, 70);
    const auto set = [](int nControl, int nValue) {
        return ScriptLine("panel", {{"id", "panel-tool-option"}, {"control", nControl}, {"value", nValue}});
    };
    str += set(1363, 1) + set(1364, 3) + pointer("ldown", 90, 75) + pointer("lup", 90, 75);
    CScriptedSession session;
    EXPECT_EQ(session.Record(str + LEAVE_UNSAVED), "");
    const std::string strDocument = session.GetDocument();
    const auto& lstUndo = session.m_spCanvas->GetHistory().GetUndoList();
    ASSERT_FALSE(lstUndo.empty());
    EXPECT_EQ(lstUndo.front()->GetName(), L"ベクター消しゴム");
    const auto& layer = dynamic_cast<const CVectorLayerBuffer&>(*session.m_spCanvas->GetActiveLayer());
    // One up to the other, which has a gap of the disc of 3 pixels and some of its own width.
    ASSERT_EQ(layer.GetPaths().size(), 3u);
    const auto anchor = [&](int nPath, size_t idx) {
        return (*std::next(layer.GetPaths().begin(), nPath))
            ->GetStream()
            .GetControlPoint(idx)
            ->GetAnchor()[STATE_COMMITTED];
    };
    EXPECT_EQ(anchor(0, 1).x - anchor(0, 0).x, 320);
    EXPECT_NEAR(anchor(2, 0).y - anchor(1, 1).y, 56, 8);
    EXPECT_EQ(session.Play(session.m_strRecord), "");
    EXPECT_EQ(session.GetDocument(), strDocument);
}
