#include "core/RasterMove/ToolOptRasterSelect.h"
#include "tests/session/ScriptedSession.h"
#include "tests/support/ToolSession.h"

namespace {

using TLabels = std::vector<std::wstring>;
using TPixels = std::initializer_list<CPoint>;
constexpr auto RECTANGLE = ESelectShape::Rectangle, ELLIPSE = ESelectShape::Ellipse,
               LASSO = ESelectShape::Polygon;

CPoint CentreOf(CPoint pt) { return {pt.x * 8 + 4, pt.y * 8 + 4}; }

class SelectTool : public testing::Test, protected CToolSession {
protected:
    SelectTool() : CToolSession(MakePage({200, 150})) {}

    void Play(const std::function<void()>& fn) { CToolSession::Play(TOOL_SELECT, fn); }
    static CRasterSelect& Select() { return dynamic_cast<CRasterSelect&>(*g_wpActiveTool.lock()); }
    // Draws over the centres of pixels with keys held.
    void Draw(TPixels pixels, std::initializer_list<int> lstKeys = {}) {
        for (const int nKey : lstKeys) Key(nKey, true);
        Press(CentreOf(*pixels.begin()));
        for (const CPoint pt : pixels) Move(CentreOf(pt));
        Release(CentreOf(*(pixels.end() - 1)));
        EXPECT_EQ(Select().GetState(), STATE_IDLE);
        for (const int nKey : lstKeys) Key(nKey, false);
    }
    CRect Bound() { return m_spCanvas->GetSelect() ? m_spCanvas->GetSelect()->GetBound() : CRect(); }
};

} // namespace

TEST_F(SelectTool, ShapesReplaceAddAndSubtractAndWhatChangesNothingIsNoStep) {
    Play([&] {
        TLabels labels(3, L"選択ツール");
        Draw({{50, 50}});
        Draw({{50, 50}, {60, 60}}, {VK_Alt});
        EXPECT_TRUE(Labels().empty()) << "there was no selection";
        Draw({{29, 19}, {10, 10}});
        EXPECT_EQ(Bound(), CRect(10, 10, 30, 20));
        Draw({{20, 15}}); // on a selected pixel, as with Control anywhere: a drag, which moves nothing
        Draw({{50, 50}}, {VK_Control});
        EXPECT_EQ(Select().GetCursor(CentreOf({10, 19})), ECursor::Move);
        for (const auto& [nKey, cursor] :
             {std::pair<int, ECursor>(VK_Shift, ECursor::Add), {VK_Alt, ECursor::Remove}}) {
            Key(nKey, true);
            EXPECT_EQ(Select().GetCursor(CentreOf({10, 19})), cursor);
            Key(nKey, false);
        }
        EXPECT_EQ(Select().GetCursor(CentreOf({10, 20})), ECursor::Cross);
        Draw({{40, 10}, {49, 19}}, {VK_Shift});
        EXPECT_EQ(Bound(), CRect(10, 10, 50, 20));
        for (int n = 0; n < 2; ++n)
            Draw({{15, 15}, {0, 0}}, {VK_Alt}); // with Alt or Shift a shape in any case
        Draw({{12, 17}, {14, 18}}, {VK_Shift});
        Draw({{70, 70}}, {VK_Shift});
        EXPECT_EQ(Labels(), labels);
        Draw({{20, 12}, {24, 14}}, {VK_Shift, VK_Alt});
        EXPECT_EQ(Bound(), CRect(20, 12, 25, 15));
        Draw({{0, 5}, {9, 9}});
        Click({-4, 52}); // left of a selected pixel
        EXPECT_FALSE(m_spCanvas->GetSelect());
        Draw({{0, 5}, {9, 9}});
        Draw({{-20, 5}, {-10, 9}});
        for (const wchar_t* psz :
             {L"選択ツール", L"選択ツール", L"選択範囲の解除", L"選択ツール", L"選択範囲の解除"})
            labels.push_back(psz);
        EXPECT_EQ(Labels(), labels);
        for (int n = 0; n < 5; ++n) m_spCanvas->GetHistory().Undo();
        EXPECT_EQ(Bound(), CRect(10, 10, 50, 20));
    });
}

TEST_F(SelectTool, SelectedPixelsAreDraggedAndAShapeInTheirPlaceMergesThem) {
    Play([&] {
        const auto spLayer = boost::static_pointer_cast<CRasterLayerBuffer>(m_spCanvas->GetActiveLayer());
        spLayer->GetRaster()->GetWritableBlock({0, 0})->Fill(0x0000FF, 255);
        Type(VK_Right);
        Draw({{10, 10}, {19, 19}});
        Draw({{15, 15}, {115, 15}});
        Type(VK_Right);
        EXPECT_EQ(Bound(), CRect(111, 10, 121, 20));
        EXPECT_FALSE(spLayer->GetRaster()->HasBlock({111, 10})) << "afloat";
        Draw({{150, 10}, {140, 30}}, {VK_Alt}); // takes nothing away
        EXPECT_EQ(Labels().size(), 3u);
        Draw({{111, 10}, {120, 19}}, {VK_Shift, VK_Alt}); // the same selection
        EXPECT_EQ(PixelAt(*spLayer->GetRaster(), {111, 10}), 0xFF0000FFu);
        m_spCanvas->GetHistory().Undo();
        EXPECT_TRUE(spLayer->GetFloat() && !spLayer->GetRaster()->HasBlock({111, 10}));
    });
}

TEST_F(SelectTool, TheOverlayIsTheShapeAsItWillBeFilledUntilItIsCancelled) {
    Play([&] {
        CCanvasFrame& frame = *g_wpActiveFrame.lock();
        frame.ApplyView({192, 90, true, false});
        const TOverlayMapper mapper = [&](CPoint pt) { return frame.GetView().ToWindow8(pt); };
        for (const ESelectShape shape : {RECTANGLE, ELLIPSE}) {
            Select().SetShape(shape);
            Press({236, 156});
            EXPECT_TRUE(Select().GetOverlayRect(mapper).IsEmpty());
            Move({84, 84});
            EXPECT_EQ(Select().GetOverlayRect(mapper), frame.GetView().ToWindow(CRect(10, 10, 30, 20)));
            Select().Cancel();
        }
        Select().SetShape(LASSO);
        Press({84, 84});
        Move({236, 84}); // the frame has taken the changes
        Select().OnMouseMove(236, 156, 0, 90, 0);
        // The last line, between the centres of two pixels.
        const CRect rcLine = frame.GetView().ToWindow(CRect(29, 10, 30, 20));
        EXPECT_EQ(Select().TakeOverlayChanges(mapper)->at(0),
                  CRect(rcLine.left + 2, rcLine.top + 2, rcLine.right - 1, rcLine.bottom - 1));
        Key(VK_Escape, true);
        EXPECT_TRUE(Select().GetOverlayRect(mapper).IsEmpty() && Select().GetState() == STATE_IDLE);
        EXPECT_FALSE(m_spCanvas->GetSelect());
    });
}

TEST_F(SelectTool, ThePaneSetsShapeAndEdgesAndTheSettingsKeepThem) {
    CToolOptRasterSelect pane;
    EXPECT_THROW(pane.RefreshView({}), internal_error);
    Play([&] {
        pane.RefreshView(g_wpActiveTool.lock());
        for (const int nId : {1173, 1174}) pane.OnControl({.nId = nId, .nValue = 1});
        for (const int nTool : {int{TOOL_BRUSH}, TOOL_SELECT}) g_pMainFrame->SwitchTool(nTool);
        pane.RefreshView(g_wpActiveTool.lock());
        for (const TPanelControl& control : pane.GetControls())
            EXPECT_EQ(control.nValue, control.nId >= 1173);
        Draw({{10, 10}, {20, 10}, {10, 20}});
        EXPECT_EQ(m_spCanvas->GetSelect()->GetMaskTile({0, 0})->GetPixelAlpha({15, 15}), 120);
        pane.OnControl({.nId = 1174, .nValue = 0});
        EXPECT_FALSE(Select().IsAntialias());
        g_lstCanvasFrame.front()->GetOutside().settings.GetSection(L"RasterSelect")->SetInt(L"Mode", 7);
        g_pMainFrame->SwitchTool(TOOL_SELECT);
        EXPECT_EQ(Select().GetShape(), RECTANGLE);
    });
}

TEST(SelectScript, EveryViewAndDeviceMakesTheSameSelection) {
    for (const TViewState& view :
         {TViewState{48, 0, false, false}, {96, 90, false, true}, {192, 270, true, false}})
        for (const bool bPen : {false, true}) {
            CCanvasView place;
            place.SetCanvasSize({200, 150});
            place.Apply(view, {400, 300});
            place.ScrollTo({0, 0});
            TWords shown{{"width", 400}, {"height", 300}, {"zoom", view.uZoom}, {"angle", view.uAngle}};
            shown.update({{"flipH", view.bFlipH}, {"flipV", view.bFlipV}, {"scroll", {{"x", 0}, {"y", 0}}}});
            std::string str = ScriptLine("view", shown) + Tool(TOOL_SELECT);
            const auto add = [&](const char* psz, CPoint pt) {
                pt = place.PixelAt8(CentreOf(pt));
                TWords event{{"message", psz}, {"x", bPen ? pt.x * 8 : pt.x}, {"y", bPen ? pt.y * 8 : pt.y}};
                event[bPen ? "pressure" : "left"] = bPen ? TWords(900) : TWords(true);
                str += ScriptLine(bPen ? "packet" : "pointer", event);
            };
            add("ldown", {5, 9});
            add("move", {24, 18});
            if (view.uAngle == 0 || !bPen)
                add("lup", {24, 18});
            else
                str += Proximity("leave"); // ends it too
            CScriptedSession session;
            EXPECT_EQ(session.Play(str + LEAVE_UNSAVED), "");
            ASSERT_TRUE(session.m_spCanvas->GetSelect());
            EXPECT_EQ(session.m_spCanvas->GetSelect()->GetBound(), CRect(5, 9, 25, 19))
                << view.uAngle << bPen;
        }
}
