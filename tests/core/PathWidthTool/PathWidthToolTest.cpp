#include "core/PathWidthTool/PathWidthTool.h"
#include "session/scripts/DocumentState.h"
#include "session/seam/SessionKeys.h"
#include "system/pictures/ImageCodecs.h"
#include "tests/support/PanelSession.h"

#include <nlohmann/json.hpp>

namespace {

/// A page of 200 by 100 pixels with black strokes from (10, 25) and (10, 50) to the right.
class PathWidthTool : public CPanelSession {
protected:
    void PlayTool(const std::vector<std::function<void()>>& vSteps) {
        const auto spCanvas = CreateCanvas({200, 100});
        const auto spLayer = CreateVectorLayer(spCanvas);
        spLayer->SetLayerColor(0);
        spCanvas->GetRoot().AddLayer(spLayer, -1, false);
        spCanvas->GetRoot().SetActiveChild(spLayer);
        for (const int y : {200, 400}) {
            m_spPath = MakeEvenStroke({80, y});
            spLayer->InsertPath(m_spPath);
        }
        m_wpLayer = spLayer;
        m_outside.AddStep([this](CPlayer& player) {
            m_pStage = &player.GetStage();
            EXPECT_TRUE(g_pMainFrame->SwitchTool(TOOL_PATH_WIDTH));
            m_vFirst = Saved();
        });
        size_t nPlayed = 0;
        for (const auto& fn : vSteps) m_outside.AddStep([fn, &nPlayed](CPlayer&) { fn(), ++nPlayed; });
        m_outside.Play([&] { CTestPlatform::Open(spCanvas); });
        EXPECT_EQ(nPlayed, vSteps.size()) << "a step has raised an exception";
    }
    static CPathWidthTool& Tool() { return dynamic_cast<CPathWidthTool&>(*g_wpActiveTool.lock()); }
    static void Mouse(EMessage id, CPoint pt, uint32_t flags = 0) {
        Active().GetInput().Dispatch(Tool(), id, pt, 0, 90, flags);
    }
    static void Drag(CPoint ptFrom, CPoint ptTo, uint32_t flags = 0) {
        Mouse(EMessage::LButtonDown, ptFrom, flags);
        Mouse(EMessage::MouseMove, ptTo, flags);
    }
    static void DragAndRelease(CPoint ptFrom, CPoint ptTo, uint32_t flags = 0) {
        Drag(ptFrom, ptTo, flags);
        Mouse(EMessage::LButtonUp, ptTo, flags);
    }
    static void Command(int nId) { SendMessage({g_pMainFrame->GetWindow(), EMessage::Command, nId}); }
    static std::string Saved() {
        CMemoryFiles files;
        SaveDocument(Canvas(), L"d.vlm", files);
        return files.m_mapFiles[L"d.vlm"];
    }
    static std::vector<uint8_t> Pixels() {
        Canvas().Update();
        return PixelsOf(*Canvas().Flatten());
    }
    static size_t Steps() { return Canvas().GetHistory().GetUndoList().size(); }
    COpenPathStream& Stream() { return m_spPath->GetStream(); }

    boost::shared_ptr<COpenPathObject> m_spPath; ///< the lower stroke
    boost::weak_ptr<CVectorLayerBuffer> m_wpLayer;
    std::string m_vFirst;
};

} // namespace

TEST_F(PathWidthTool, ADragChangesTheNearestPathAndIsOneStep) {
    PlayTool({[&] {
        EXPECT_EQ(Tool().GetItem(), (TPathWidthItem{WIDTH_POINTS_3, 20}));
        const auto vBefore = Pixels();
        Drag({320, 490}, {800, 430}); // 90 and 30 units beside it
        EXPECT_EQ(m_wpLayer.lock()->GetSelectedPath(), m_spPath);
        EXPECT_EQ(Saved(), m_vFirst);
        const auto vShown = Pixels();
        EXPECT_NE(vShown, vBefore);
        EXPECT_EQ(Steps(), 0u);
        Mouse(EMessage::LButtonUp, {800, 430});
        EXPECT_EQ(Pixels(), vShown);
        EXPECT_EQ(Steps(), 1u);
        const auto& vMarks = Stream().GetWidthPoints();
        ASSERT_EQ(vMarks.size(), 3u);
        EXPECT_EQ(vMarks[0]->GetParameter()[STATE_COMMITTED], 0x8000u);
        EXPECT_EQ(vMarks[1]->GetParameter()[STATE_COMMITTED], 0x18000u);
        EXPECT_EQ(vMarks[2]->GetWidth(SIDE_LEFT, STATE_COMMITTED), 80u);
        Command(ID_EDIT_UNDO);
        EXPECT_EQ(Pixels(), vBefore);
        Command(ID_EDIT_REDO);
        EXPECT_EQ(Pixels(), vShown);
        // Beyond the radius of 15 pixels nothing happens; a press on one spot changes nothing.
        DragAndRelease({320, 521}, {800, 521});
        Drag({440, 400}, {600, 400});
        Mouse(EMessage::LButtonUp, {455, 400});
        EXPECT_EQ(Steps(), 1u);
        Tool().SetRadius(130);
        DragAndRelease({320, 521}, {800, 521});
        EXPECT_EQ(Steps(), 1u) << "the same again is no change";
        Tool().SetItem({WIDTH_POINTS_1, 5});
        DragAndRelease({320, 290}, {320, 290}); // nearer to the upper stroke
        EXPECT_NE(m_wpLayer.lock()->GetSelectedPath(), m_spPath);
        EXPECT_EQ(Steps(), 2u);
        Tool().SetItem({99, 5});
        DragAndRelease({900, 420}, {960, 420});
        EXPECT_EQ(Steps(), 2u);
        EXPECT_EQ(m_wpLayer.lock()->GetSelectedPath(), m_spPath);
    }});
}

TEST_F(PathWidthTool, AnOpacityIsOneStepAndItsMarksAreDraggedAndRemoved) {
    PlayTool({[&] {
        CImageCodecs codecs(m_outside.m_files);
        const auto marks = [&] {
            const auto stroke = DescribeDocument(codecs, false)["stroke"];
            std::string str;
            for (const auto& mark : stroke["opacities"])
                str += std::to_string(mark["at"].get<int>() * 480 / 0x10000) + '*' +
                       std::to_string(mark["opacity"].get<int>()) + ' ';
            return str;
        };
        const auto vBefore = Pixels();
        Tool().SetItem({WIDTH_ALPHA, 5});
        Drag({320, 405}, {800, 405});
        const auto vShown = Pixels();
        EXPECT_NE(vShown, vBefore);
        Mouse(EMessage::LButtonUp, {800, 405});
        EXPECT_EQ(Pixels(), vShown);
        EXPECT_EQ(marks(), "160*255 240*128 720*128 800*255 ");
        Drag({320, 400 - 80 - 128}, {330, 400 - 80 - 28}); // the handle
        const auto vPulled = Pixels();
        EXPECT_NE(vPulled, vShown);
        Mouse(EMessage::LButtonUp, {330, 400 - 80 - 28});
        EXPECT_EQ(Pixels(), vPulled);
        EXPECT_EQ(marks(), "160*255 240*28 720*128 800*255 ");
        DragAndRelease({320, 400}, {200, 400}); // not past the next one
        EXPECT_EQ(marks(), "160*255 160*28 720*128 800*255 ");
        DragAndRelease({800, 400}, {800, 400}, POINTER_SHIFT);
        EXPECT_EQ(marks(), "160*255 160*28 800*255 ");
        EXPECT_EQ(Steps(), 4u);
        for (int n = 0; n < 3; ++n) Command(ID_EDIT_UNDO);
        EXPECT_EQ(Pixels(), vShown);
        Command(ID_EDIT_UNDO);
        EXPECT_EQ(Pixels(), vBefore);
        EXPECT_EQ(Saved(), m_vFirst);
    }});
}

TEST_F(PathWidthTool, WhateverEndsADragLeavesTheDocumentAsItWas) {
    const std::vector<std::function<void()>> vEnds{
        [] {
            SendMessage({Active().GetWindow(), EMessage::KeyDown, VK_Escape});
        },
        [] {
            Mouse(EMessage::RButtonDown, {800, 400});
        },
        [] { Command(ID_EDIT_UNDO); }, [] { g_pMainFrame->SwitchTool(TOOL_BRUSH); },
        [] { Active().GetInput().OnActivate(); }};
    std::vector<std::function<void()>> vSteps;
    for (const auto& fnEnd : vEnds)
        for (const int nType : {WIDTH_POINTS_1, WIDTH_POINTS_4, WIDTH_CUT, WIDTH_ALPHA})
            vSteps.push_back([=, this] {
                g_pMainFrame->SwitchTool(TOOL_PATH_WIDTH);
                Tool().SetItem({nType, nType == WIDTH_ALPHA ? 5 : 20});
                const auto vBefore = Pixels();
                Drag({320, 400}, {800, 400});
                EXPECT_NE(Pixels(), vBefore);
                fnEnd();
                EXPECT_EQ(Pixels(), vBefore);
                EXPECT_EQ(Saved(), m_vFirst);
                EXPECT_EQ(Steps(), 0u);
                EXPECT_FALSE(Canvas().GetHistory().IsUnfinished());
            });
    PlayTool(vSteps);
}

TEST_F(PathWidthTool, MarksAreDraggedBeforeTheLineAndRemovedWithShiftOrTheEraser) {
    PlayTool({[&] {
        const auto cursor = [&](CPoint pt, uint32_t flags = 0) {
            m_pStage->keys.Press(VK_Shift, flags & POINTER_SHIFT);
            Mouse(EMessage::MouseMove, pt, flags);
            return Tool().GetCursor({});
        };
        EXPECT_EQ(cursor({560, 430}), ECursor::Width);
        EXPECT_EQ(cursor({560, 560}), ECursor::Arrow);
        Tool().SetItem({WIDTH_POINTS_2, 15});
        DragAndRelease({320, 400}, {800, 400});
        Tool().SetItem({WIDTH_CUT, 0});
        DragAndRelease({440, 400}, {560, 400});
        EXPECT_EQ(Steps(), 2u);
        EXPECT_EQ(cursor({900, 400}), ECursor::Width);
        EXPECT_STREQ(Tool().GetHint(0), L"線に沿ってドラッグ: 透明にする　Shift: 記号を消す");
        EXPECT_EQ(cursor({320, 408}), ECursor::Move);
        EXPECT_STREQ(Tool().GetHint(0), L"ドラッグ: 記号を動かす　Shift: 記号を消す　Alt: 記号の片側だけ");
        EXPECT_STREQ(Tool().GetHint(POINTER_SHIFT), L"クリック: 太さや透明化、不透明度の記号を消す");
        Drag({320, 400}, {250, 400});
        EXPECT_EQ(cursor({200, 400}, POINTER_SHIFT), ECursor::Move);
        Mouse(EMessage::LButtonUp, {200, 400});
        EXPECT_EQ(Stream().GetWidthPoints()[0]->GetParameter()[STATE_COMMITTED], 0x4000u);
        EXPECT_EQ(Canvas().GetHistory().GetUndoList().front()->GetName(), L"太さ記号の移動");
        EXPECT_EQ(cursor({200, 400}, POINTER_SHIFT), ECursor::Remove);
        EXPECT_EQ(cursor({700, 400}, POINTER_SHIFT), ECursor::Arrow);
        DragAndRelease({700, 400}, {900, 400}, POINTER_SHIFT);
        EXPECT_EQ(Steps(), 3u);
        DragAndRelease({200, 400}, {200, 400}, POINTER_SHIFT);
        EXPECT_EQ(Stream().GetWidthPoints().size(), 1u);
        Tool().OnPenEnd(true);
        EXPECT_EQ(cursor({560, 400}), ECursor::Remove);
        EXPECT_STREQ(Tool().GetHint(0), L"クリック: 太さや透明化、不透明度の記号を消す");
        DragAndRelease({560, 400}, {560, 400});
        EXPECT_TRUE(Stream().GetTransPoints().empty());
        EXPECT_EQ(Canvas().GetHistory().GetUndoList().front()->GetName(), L"透明化制御点の削除");
        while (Steps() != 0) Command(ID_EDIT_UNDO);
        EXPECT_EQ(Saved(), m_vFirst);
    }});
}

TEST_F(PathWidthTool, TheOverlayIsInsideItsBounds) {
    PlayTool({[&] {
        const TOverlayMapper mapper([](CPoint pt) { return pt; });
        Mouse(EMessage::MouseMove, {600, 700});
        EXPECT_EQ(Tool().GetOverlayRect(mapper).bottom, 821) << "a circle of 120 around the pointer";
        Drag({320, 400}, {800, 400});
        COverlay overlay;
        Tool().DrawOverlay(overlay, mapper);
        EXPECT_EQ(Tool().GetOverlayRect(mapper).Union(overlay.GetBounds()), Tool().GetOverlayRect(mapper));
        Mouse(EMessage::RButtonDown, {800, 400});
    }});
}

TEST_F(PathWidthTool, ThePaneChoosesTheOperationAndKeepsItsList) {
    const auto control = [](int nId) {
        return *std::ranges::find(Window(ID_PANEL_TOOL_OPTION).GetControls(), nId, &TPanelControl::nId);
    };
    // The list's rows and the selected one, then the row that each combo shows.
    const auto shown = [=] {
        std::wstring str;
        for (const auto& strRow : control(1307).vRows) str += strRow + L' ';
        str += L"> " + std::to_wstring(control(1307).nValue);
        for (const int nId : {1305, 1306}) {
            const auto& [vRows, nRow] =
                std::pair(control(nId).vRows, static_cast<size_t>(control(nId).nValue));
            str += L' ' + (nRow < vRows.size() ? vRows[nRow] : L"none");
        }
        return str;
    };
    struct TAct {
        const wchar_t* pszBefore;
        int nControl, nValue;
    };
    std::vector<std::function<void()>> vSteps;
    for (const TAct& act : {TAct{L"1点 x1.0 2点 x1.0 3点 x1.0 4点 x1.0 > -1 3点 2.0", 1308, 0},
                            {L"1点 x1.0 2点 x1.0 3点 x1.0 3点 x2.0 4点 x1.0 > 3 3点 2.0", 1307, 1},
                            {L"1点 x1.0 2点 x1.0 3点 x1.0 3点 x2.0 4点 x1.0 > 1 2点 1.0", 1309, 0},
                            {L"1点 x1.0 3点 x1.0 3点 x2.0 4点 x1.0 > -1 2点 1.0", 1302, 1},
                            {L"乗算 x1.5 加算 +0.5 > 0 乗算 1.5", 1307, 1},
                            {L"乗算 x1.5 加算 +0.5 > 1 加算 0.5", 1306, 11},
                            {L"乗算 x1.5 加算 +0.5 > -1 加算 4.5", 1305, WIDTH_CUT},
                            {L"透明化 > 0 透明化 4.5", 1303, 1},
                            {L"削除 > 0 削除 4.5", 1301, 1},
                            {L"1点 x1.0 3点 x1.0 3点 x2.0 4点 x1.0 > -1 2点 1.0", 1310, 20}})
        vSteps.push_back([=] {
            EXPECT_EQ(shown(), act.pszBefore);
            EXPECT_EQ(control(1306).bEnabled, !wcschr(act.pszBefore, L'除') && !wcschr(act.pszBefore, L'透'));
            Send(ID_PANEL_TOOL_OPTION, EMessage::PanelChange, act.nControl, act.nValue);
        });
    vSteps.push_back([&] {
        EXPECT_EQ(control(1301).nValue, 1);
        g_pMainFrame->SwitchTool(TOOL_BRUSH);
        CIniConfig config(L"/settings/Vellumcraft/Vellumcraft.ini", m_outside.m_files);
        const auto spTool = config.GetSection(L"PathWidthTool");
        for (const auto& [pszKey, nValue] : {std::pair{L"Radius", 160}, {L"Coef", 10}, {L"Type", 1}})
            EXPECT_EQ(spTool->GetInt(pszKey, 0), nValue);
        const auto spList = config.GetSection(L"PathWidthList");
        EXPECT_EQ(spList->GetInt(L"ItemCount", 0), 9);
        EXPECT_EQ(spList->GetInt(L"Coef3", 0), 20);
        spList->SetInt(L"Type2", 77);
        g_pMainFrame->SwitchTool(TOOL_PATH_WIDTH);
    });
    vSteps.push_back([=] { EXPECT_EQ(shown(), L"1点 x1.0 unsupported 3点 x2.0 4点 x1.0 > -1 2点 1.0"); });
    PlayTool(vSteps);
}
