#include "core/CanvasFrame/CanvasScreen.h"
#include "core/CanvasBuffer/CanvasHistory.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/RasterBuffer/ColorRasterBuffer.h"

namespace {

constexpr CSize CLIENT{211, 157};

std::vector<uint8_t> BytesOf(const CCanvasScreen& screen) {
    CGDIBuffer& buffer = *screen.GetBuffer();
    const uint8_t* p = buffer.GetPixelPtr({0, 0});
    return {p, p + buffer.GetStride() * buffer.GetSize().cy};
}

std::vector<uint8_t> FreshBytes(CCanvasBuffer& canvas, const CCanvasView& view) {
    CCanvasScreen screen;
    screen.Refresh(canvas, view);
    return BytesOf(screen);
}

class CanvasScreen : public testing::Test {
protected:
    CanvasScreen() {
        m_spCanvas->GetRoot().AddLayer(m_spLayer, -1);
        m_spLayer->GetRaster()->ForEachBlock([&](CPoint pt) { Scribble(pt); });
    }
    void Scribble(CPoint pt) {
        const auto spTile = m_spLayer->GetRaster()->CreateBlock(pt);
        for (size_t i = 0; i < spTile->GetPlaneBytes() * 4; ++i)
            spTile->GetPixelPtr({0, 0})[i] = static_cast<uint8_t>(m_random());
        m_spLayer->GetRaster()->SetBlock(pt, spTile);
    }

    std::mt19937 m_random{1};
    boost::shared_ptr<CCanvasBuffer> m_spCanvas = CreateCanvas({400, 300});
    boost::shared_ptr<CRasterLayerBuffer> m_spLayer = CreateRasterLayer(m_spCanvas);
};

} // namespace

TEST_F(CanvasScreen, ScrollingAndPaintingShowWhatAFreshViewShows) {
    for (const TViewState& state : {TViewState{48}, TViewState{24, 90}, TViewState{144, 180, true},
                                    TViewState{32, 270, false, true}, TViewState{8}}) {
        CCanvasView view;
        view.SetCanvasSize(m_spCanvas->GetSize());
        view.Apply(state, CLIENT);
        CCanvasScreen screen;
        for (int n = 0; n < 25; ++n) {
            const auto step = [&] {
                return static_cast<int32_t>(m_random() % (n % 5 ? 61 : 900)) - (n % 5 ? 30 : 450);
            };
            view.ScrollTo(view.GetScroll() + CPoint{step(), step()});
            if (n % 3 == 0)
                Scribble(
                    {static_cast<int32_t>(m_random() % 4) * 96, static_cast<int32_t>(m_random() % 3) * 96});
            screen.Refresh(*m_spCanvas, view);
            ASSERT_EQ(BytesOf(screen), FreshBytes(*m_spCanvas, view))
                << state.uZoom << " at " << state.uAngle << " step " << n;
        }
    }
}

TEST_F(CanvasScreen, OnlyWhatChangedIsDrawnAndEveryViewSeesItOnce) {
    CCanvasView view;
    view.SetCanvasSize(m_spCanvas->GetSize());
    view.Apply({24}, {600, 500});
    CCanvasScreen first, second;
    first.Refresh(*m_spCanvas, view);
    second.Refresh(*m_spCanvas, view);
    EXPECT_TRUE(first.Refresh(*m_spCanvas, view).empty());
    Scribble({96, 96});
    Scribble({192, 96});
    Scribble({0, 192});
    const std::vector<CRect> vExpected{{view.GetOrigin() + CPoint{48, 48}, {96, 48}},
                                       {view.GetOrigin() + CPoint{0, 96}, {48, 48}}};
    EXPECT_EQ(first.Refresh(*m_spCanvas, view), vExpected);
    EXPECT_EQ(second.Refresh(*m_spCanvas, view), vExpected); // it was composed for the first view already
    EXPECT_TRUE(second.Refresh(*m_spCanvas, view).empty());
    EXPECT_EQ(BytesOf(first), BytesOf(second));
    view.Apply({24}, {0, 0}); // a window without a client area
    EXPECT_TRUE(first.Refresh(*m_spCanvas, view).empty());
    EXPECT_EQ(first.GetBuffer(), nullptr);
}

TEST_F(CanvasScreen, NothingThatChangesThePictureIsMissed) {
    CCanvasView view;
    CSize szClient = CLIENT;
    TViewState state{24};
    const auto apply = [&] {
        view.SetCanvasSize(m_spCanvas->GetSize());
        view.Apply(state, szClient);
    };
    apply();
    CCanvasScreen screen;
    screen.Refresh(*m_spCanvas, view);
    const std::pair<const char*, std::function<void()>> CHANGES[] = {
        {"scroll",
         [&] {
             view.ScrollTo(view.GetScroll() + CPoint{1, 0});
         }},
        {"flip", [&] { state.bFlipH = true, apply(); }},
        {"other flip", [&] { state.bFlipV = true, apply(); }},
        {"half turn", [&] { state.uAngle = 180, apply(); }},
        {"zoom", [&] { state.uZoom = 25, apply(); }},
        {"client size", [&] { ++szClient.cx, apply(); }},
        {"pixels", [&] { m_spLayer->GetRaster()->ForEachBlock([&](CPoint pt) { Scribble(pt); }); }},
        {"opacity", [&] { m_spLayer->SetOpacity(100); }},
        {"visibility", [&] { m_spLayer->SetVisible(false); }},
        {"canvas size", [&] {
             m_spCanvas->Resize({60, 300}, ShiftChange({0, 0})), apply();
         }}};
    for (const auto& [pszName, fn] : CHANGES) {
        const auto vBefore = BytesOf(screen);
        fn();
        EXPECT_FALSE(screen.Refresh(*m_spCanvas, view).empty()) << pszName;
        EXPECT_NE(BytesOf(screen), vBefore) << pszName;
        EXPECT_EQ(BytesOf(screen), FreshBytes(*m_spCanvas, view)) << pszName;
    }
}
