#include "core/RasterMove/ToolOptRasterSelect.h"
#include "session/seam/SessionKeys.h"
#include "tests/session/ScriptedSession.h"
#include "tests/support/PanelSession.h"

namespace {

using TLabels = std::vector<std::wstring>;

class SelectTool : public CPanelSession {
protected:
    // Runs `fn` with the tool active; the document is left without a prompt.
    void Play(const std::function<void()>& fn) {
        CPanelSession::Play({[] { g_pMainFrame->SwitchTool(TOOL_SELECT); },
                             [&] { fn(), Canvas().GetHistory().SetModified(false); }});
    }
    static CRasterSelect& Select() { return dynamic_cast<CRasterSelect&>(*g_wpActiveTool.lock()); }
    // An event of the mouse, or with POINTER_TABLET of the pen, at a position in eighths.
    static void Event(EMessage id, CPoint pt, uint32_t flags) {
        Active().GetInput().Dispatch(Select(), id, pt, id == EMessage::LButtonUp ? 0 : 1024, 90, flags);
    }
    // Draws over the centres of pixels.
    static void Draw(const std::vector<CPoint>& vPixels, uint32_t flags = 0) {
        const auto at = [](CPoint pt) { return CPoint{pt.x * 8 + 4, pt.y * 8 + 4}; };
        Event(EMessage::LButtonDown, at(vPixels.front()), flags);
        for (const CPoint pt : vPixels) Event(EMessage::MouseMove, at(pt), flags);
        Event(EMessage::LButtonUp, at(vPixels.back()), flags);
        EXPECT_EQ(Select().GetState(), STATE_IDLE);
    }
    static CRect Bound() { return Canvas().GetSelect() ? Canvas().GetSelect()->GetBound() : CRect(); }
    static TLabels Labels() {
        TLabels labels;
        for (const auto& spHistory : Canvas().GetHistory().GetUndoList())
            labels.push_back(spHistory->GetName());
        return labels;
    }
};

} // namespace

TEST_F(SelectTool, ShapesReplaceAddAndSubtractAndWhatChangesNothingIsNoStep) {
    Play([&] {
        const std::wstring strDrawn = L"選択ツール", strNone = L"選択範囲の解除";
        Draw({{50, 50}});
        Draw({{50, 50}, {60, 60}}, POINTER_ALT);
        EXPECT_TRUE(Labels().empty()) << "there was no selection";
        Draw({{29, 19}, {10, 10}});
        EXPECT_EQ(Bound(), CRect(10, 10, 30, 20));
        Draw({{20, 15}}); // drags without moving, as with Control anywhere
        Draw({{50, 50}}, POINTER_CONTROL);
        EXPECT_EQ(Select().GetCursor({160, 120}), ECursor::Move);
        EXPECT_EQ(Select().GetCursor({160, 60}), ECursor::Cross);
        Draw({{40, 10}, {49, 19}}, POINTER_SHIFT);
        EXPECT_EQ(Bound(), CRect(10, 10, 50, 20));
        Draw({{15, 15}, {0, 0}}, POINTER_ALT); // on a selected pixel
        Draw({{15, 15}, {0, 0}}, POINTER_ALT);
        Draw({{12, 17}, {14, 18}}, POINTER_SHIFT);
        Draw({{70, 70}}, POINTER_SHIFT);
        EXPECT_EQ(Labels(), TLabels(3, strDrawn));
        Draw({{20, 12}, {24, 14}}, POINTER_SHIFT | POINTER_ALT);
        EXPECT_EQ(Bound(), CRect(20, 12, 25, 15));
        Draw({{0, 5}, {9, 9}});
        Event(EMessage::LButtonDown, {-4, 52}, 0); // left of a selected pixel
        Event(EMessage::LButtonUp, {-4, 52}, 0);
        EXPECT_FALSE(Canvas().GetSelect());
        Draw({{0, 5}, {9, 9}});
        Draw({{-20, 5}, {-10, 9}});
        Draw({{70, 70}});
        EXPECT_EQ(Labels(),
                  (TLabels{strNone, strDrawn, strNone, strDrawn, strDrawn, strDrawn, strDrawn, strDrawn}));
        for (int n = 0; n < 5; ++n) Canvas().GetHistory().Undo();
        EXPECT_EQ(Bound(), CRect(10, 10, 50, 20));
    });
}

TEST_F(SelectTool, APenThatLeavesEndsItsShapeAndEscapeDropsIt) {
    Play([&] {
        for (const bool bLeave : {false, true}) {
            Event(EMessage::LButtonDown, {84, 84}, POINTER_TABLET);
            Event(EMessage::MouseMove, {236, 156}, POINTER_TABLET);
            EXPECT_EQ(Select().GetState(), STATE_TABLET);
            bLeave ? Select().TellProximity(false) : Select().CancelOperation();
            EXPECT_EQ(Select().GetState(), STATE_IDLE);
            EXPECT_EQ(Bound(), bLeave ? CRect(10, 10, 30, 20) : CRect());
            EXPECT_TRUE(Select().GetOverlayRect([](CPoint pt) { return pt; }).IsEmpty());
            Select().GetContact().End();
        }
    });
}

TEST_F(SelectTool, TheOverlayIsTheShapeAsItWillBeFilled) {
    Play([&] {
        Active().ApplyView({192, 90, true, false});
        const TOverlayMapper mapper = [](CPoint pt) { return Active().GetView().ToWindow8(pt); };
        for (const ESelectShape shape : {ESelectShape::Rectangle, ESelectShape::Ellipse}) {
            Select().SetShape(shape);
            Event(EMessage::LButtonDown, {236, 156}, 0);
            EXPECT_TRUE(Select().GetOverlayRect(mapper).IsEmpty());
            Event(EMessage::MouseMove, {84, 84}, 0);
            EXPECT_EQ(Select().GetOverlayRect(mapper), Active().GetView().ToWindow(CRect(10, 10, 30, 20)));
            Select().Cancel();
        }
        Select().SetShape(ESelectShape::Polygon);
        Event(EMessage::LButtonDown, {84, 84}, 0);
        Event(EMessage::MouseMove, {236, 84}, 0);
        Select().OnMouseMove(236, 156, 0, 90, 0); // the frame has taken the changes before
        // The last line, between the centres of two pixels.
        const CRect rcLine = Active().GetView().ToWindow(CRect(29, 10, 30, 20));
        EXPECT_EQ(Select().TakeOverlayChanges(mapper)->at(0),
                  CRect(rcLine.left + 2, rcLine.top + 2, rcLine.right - 1, rcLine.bottom - 1));
        Select().Cancel();
    });
}

TEST_F(SelectTool, ThePaneSetsShapeAndEdgesAndTheSettingsKeepThem) {
    const auto at = [](int nId) {
        return std::ranges::find(Window(ID_PANEL_TOOL_OPTION).GetControls(), nId, &TPanelControl::nId)
            ->nValue;
    };
    Play([&] {
        EXPECT_TRUE(at(1171) && !at(1172) && !at(1173) && !at(1174));
        for (const int nId : {1173, 1174}) Send(ID_PANEL_TOOL_OPTION, EMessage::PanelChange, nId, 1);
        EXPECT_TRUE(!at(1171) && at(1173) && at(1174));
        for (const int nTool : {int{TOOL_BRUSH}, TOOL_SELECT}) g_pMainFrame->SwitchTool(nTool);
        Draw({{10, 10}, {20, 10}, {10, 20}});
        EXPECT_EQ(Canvas().GetSelect()->GetMaskTile({0, 0})->GetPixelAlpha({15, 15}), 120);
    });
    EXPECT_THROW(CToolOptRasterSelect().RefreshView({}), internal_error);
}

TEST(SelectScript, ViewsAndDevicesMakeTheSameSelection) {
    for (const TViewState& view :
         {TViewState{48, 0, false, false}, {96, 90, false, true}, {192, 270, true, false}})
        for (const bool bPen : {false, true}) {
            CCanvasView place;
            place.SetCanvasSize({200, 150});
            place.Apply(view, {400, 300});
            place.ScrollTo({0, 0});
            std::string str =
                ScriptLine("set", {{"section", "RasterSelect"}, {"key", "Mode"}, {"value", 7}}) +
                ScriptLine("view", {{"width", 400},
                                    {"height", 300},
                                    {"zoom", view.uZoom},
                                    {"angle", view.uAngle},
                                    {"flipH", view.bFlipH},
                                    {"flipV", view.bFlipV},
                                    {"scroll", {{"x", 0}, {"y", 0}}}}) +
                ScriptLine("command", "tool-select");
            const auto add = [&](const char* pszMessage, CPoint pt) {
                const CPoint ptClient = place.PixelAt8({pt.x * 8 + 4, pt.y * 8 + 4});
                const int nScale = bPen ? 8 : 1;
                str += ScriptLine(
                    bPen ? "packet" : "pointer",
                    {{"message", pszMessage}, {"x", ptClient.x * nScale}, {"y", ptClient.y * nScale}},
                    bPen ? TWords{{"pressure", 900}} : TWords{{"left", true}});
            };
            add("ldown", {5, 9});
            add("move", {24, 18});
            add("lup", {24, 18});
            CScriptedSession session;
            EXPECT_EQ(session.Play(str + LEAVE_UNSAVED), "");
            ASSERT_TRUE(session.m_spCanvas->GetSelect());
            EXPECT_EQ(session.m_spCanvas->GetSelect()->GetBound(), CRect(5, 9, 25, 19))
                << view.uAngle << bPen;
        }
}
