#include "core/ImageOperation/RescaleCanvas.h"
#include "tests/support/TestPlatform.h"

namespace {

// Runs `fn` with frames of one canvas of 1200 by 900 pixels, all turned, flipped, zoomed and scrolled
// otherwise.
void WithViews(const std::function<void(const boost::shared_ptr<CCanvasBuffer>&,
                                        const std::vector<boost::shared_ptr<CCanvasFrame>>&)>& fn) {
    const auto spCanvas = MakePage({1200, 900});
    CTestPlatform outside;
    outside.AddStep([&](CPlayer&) {
        const TViewState aViews[] = {{48}, {96, 90, true}, {192, 270, false, true}, {144, 180, true, true}};
        auto itFrame = g_lstCanvasFrame.begin();
        for (const TViewState& view : aViews) {
            auto& window = *(*itFrame)->GetWindow();
            dynamic_cast<CSessionCanvasWindow&>(window).SetRect({0, 0, 301, 200});
            (*itFrame)->ApplyView(view);
            const CPoint ptCorner = (*itFrame)->GetView().ToWindow({620, 410});
            (*itFrame)->ScrollTo((*itFrame)->GetView().GetScroll() + ptCorner - CPoint{150, 100});
            ++itFrame;
        }
        fn(spCanvas, {g_lstCanvasFrame.begin(), g_lstCanvasFrame.end()});
        spCanvas->GetHistory().SetModified(false);
    });
    outside.Play([&] {
        for (int n = 0; n < 4; ++n) CTestPlatform::Open(spCanvas);
    });
    EXPECT_TRUE(outside.m_vShown.empty());
}

} // namespace

TEST(CanvasPlace, EveryViewKeepsThePicturesPixelInItsMiddle) {
    WithViews([](const auto& spCanvas, const auto& vFrames) {
        std::vector<CPoint> vFirst;
        for (const auto& spFrame : vFrames) vFirst.push_back(spFrame->GetView().GetCentre());
        // `fnPlace` tells which pixel shows what the pixel of the first canvas showed.
        const auto expect = [&](const std::string& strWhat, const std::function<CPoint(CPoint)>& fnPlace) {
            for (size_t n = 0; n < vFrames.size(); ++n) {
                SendMessage({vFrames[n]->GetWindow(), EMessage::Timer, 0});
                EXPECT_EQ(vFrames[n]->GetView().GetCentre(), fnPlace(vFirst[n])) << strWhat << " view " << n;
            }
        };
        const auto first = [](CPoint pt) { return pt; };
        const auto moved = [](CPoint pt) { return pt + CPoint{100, -60}; };
        const auto twice = [](CPoint pt) { return CPoint{2 * pt.x + 201, 3 * pt.y - 179}; };
        expect("at first", first);
        ResizeCanvas(spCanvas, {1350, 800}, ShiftChange({100, -60}), L"画像サイズ変更");
        expect("margins", moved);
        EXPECT_TRUE(RescaleCanvas(spCanvas, {2700, 2400}, ERescaleMode::Nearest));
        expect("another resolution", twice);
        CHistoryStream& history = spCanvas->GetHistory();
        history.Undo();
        expect("one undone", moved);
        history.Undo();
        expect("all undone", first);
        history.Redo();
        history.Redo();
        expect("all done again", twice);
    });
}
