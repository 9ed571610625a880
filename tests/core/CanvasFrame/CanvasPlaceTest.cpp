#include "core/ImageOperation/RescaleCanvas.h"
#include "tests/support/TestPlatform.h"

TEST(CanvasPlace, EveryViewKeepsThePicturesPixelInItsMiddle) {
    const auto spCanvas = MakePage({1200, 900});
    const TViewState aViews[] = {{48}, {96, 90, true}, {192, 270, false, true}, {144, 180, true, true}};
    CTestPlatform outside;
    outside.AddStep([&](CPlayer&) {
        std::vector<CPoint> vFirst;
        for (const auto& spFrame : g_lstCanvasFrame) {
            dynamic_cast<CSessionCanvasWindow&>(*spFrame->GetWindow()).SetRect({0, 0, 301, 200});
            spFrame->ApplyView(aViews[vFirst.size()]);
            const CCanvasView& view = spFrame->GetView();
            spFrame->ScrollTo(view.GetScroll() + view.ToWindow({620, 410}) - CPoint{150, 100});
            vFirst.push_back(view.GetCentre());
        }
        // `fnPlace` tells which pixel shows what the pixel of the first canvas showed.
        const auto expect = [&](const char* pszWhat, CPoint (*fnPlace)(CPoint)) {
            size_t n = 0;
            for (const auto& spFrame : g_lstCanvasFrame) {
                SendMessage({spFrame->GetWindow(), EMessage::Timer, 0});
                EXPECT_EQ(spFrame->GetView().GetCentre(), fnPlace(vFirst[n])) << pszWhat << " view " << n;
                ++n;
            }
        };
        const auto first = [](CPoint pt) { return pt; };
        const auto moved = [](CPoint pt) { return pt + CPoint{100, -60}; };
        const auto larger = [](CPoint pt) { return CPoint{2 * pt.x + 201, 3 * pt.y - 179}; };
        CHistoryStream& history = spCanvas->GetHistory();
        ResizeCanvas(spCanvas, {1350, 800}, ShiftChange({100, -60}), L"画像サイズ変更");
        expect("margins", moved);
        EXPECT_TRUE(RescaleCanvas(spCanvas, {2700, 2400}, ERescaleMode::Nearest));
        expect("another resolution", larger);
        history.Undo();
        expect("one undone", moved);
        history.Undo();
        expect("both undone", first);
        history.Redo(), history.Redo();
        expect("both done again", larger);
        RescaleCanvas(spCanvas, {1485, 40}, ERescaleMode::Nearest);
        for (const auto& spFrame : g_lstCanvasFrame) SendMessage({spFrame->GetWindow(), EMessage::Timer, 0});
        history.Undo();
        expect("a smaller one undone", larger);
        const auto spFrame = g_lstCanvasFrame.front();
        spFrame->ScrollTo(spFrame->GetView().GetScroll() + CPoint{9, 7});
        history.Undo();
        vFirst.front() =
            vFirst.front() + CPoint{5, 2}; // 9 of 2 and 7 of 3 to a pixel, from the pixel's middle
        expect("one undone, one view scrolled before", moved);
        history.SetModified(false);
    });
    outside.Play([&] {
        for (size_t n = 0; n < std::size(aViews); ++n) CTestPlatform::Open(spCanvas);
    });
    EXPECT_TRUE(outside.m_vShown.empty());
}
