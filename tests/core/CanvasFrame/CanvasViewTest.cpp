#include "core/CanvasFrame/CanvasView.h"
#include "core/CanvasFrame/ZoomList.h"

namespace {

constexpr CSize CLIENT{640, 480};

CCanvasView MakeView(CSize szCanvas, const TViewState& state = {}) {
    CCanvasView view;
    view.SetCanvasSize(szCanvas);
    view.Apply(state, CLIENT);
    view.Center();
    return view;
}

} // namespace

TEST(CanvasView, ExtentLeavesAMarginAndCentresSmallCanvases) {
    const CCanvasView small = MakeView({100, 50});
    EXPECT_EQ(small.GetExtent(), CLIENT);
    EXPECT_EQ(small.GetOrigin(), (CPoint{270, 215}));
    EXPECT_EQ(small.GetLine(), (CSize{10, 10}));
    EXPECT_EQ(small.GetPage(), (CSize{100, 100}));
    // A canvas of the window's size can still be scrolled.
    CCanvasView same = MakeView(CLIENT);
    EXPECT_EQ(same.GetExtent(), (CSize{820, 660}));
    EXPECT_EQ(same.GetScroll(), (CPoint{90, 90}));
    same.ScrollTo({1000, -5});
    EXPECT_EQ(same.GetScroll(), (CPoint{180, 0}));
    EXPECT_EQ(same.GetOrigin(), (CPoint{-90, 90}));
}

TEST(CanvasView, PositionsGoThereAndBackUnderEveryView) {
    for (int n = 0; n < 16; ++n)
        for (const uint16_t uZoom : {48, 96, 768}) {
            const auto uAngle = static_cast<uint16_t>(n / 4 * 90);
            const CCanvasView view = MakeView({300, 200}, {uZoom, uAngle, n % 2 == 1, n % 4 > 1});
            for (const CPoint pt : {CPoint{0, 0}, CPoint{123, 45}, CPoint{300, 200}}) {
                EXPECT_EQ(view.ToCanvas(view.ToWindow(pt)), pt) << uZoom << " " << uAngle;
                EXPECT_EQ(view.ToCanvas8(view.ToWindow(pt)), (CPoint{pt.x * 8, pt.y * 8}));
            }
        }
    // The overlay's points go to the nearest pixel.
    const CCanvasView plain = MakeView({300, 200});
    EXPECT_EQ(plain.ToWindow8({8 * 9 + 3, 8 * 7 + 4}), plain.ToWindow(CPoint{9, 8}));
    EXPECT_EQ(plain.PixelAt8({8 * 9 + 3, 8 * 7 + 4}), plain.ToWindow(CPoint{9, 7}));
    EXPECT_EQ(plain.PixelAt8({8 * 9 + 7, -1}), plain.ToWindow(CPoint{9, -1}));
    // Turned to the right, the canvas's top-left corner is the window's top-right one.
    const CCanvasView right = MakeView({300, 200}, {48, 90});
    const CRect rc = right.ToWindow(CRect(0, 0, 300, 200));
    EXPECT_EQ(right.ToWindow(CPoint{0, 0}), (CPoint{rc.right, rc.top}));
    EXPECT_EQ(rc.Size(), (CSize{200, 300}));
}

TEST(CanvasView, TheShownRectangleIsThePixelsUnderTheWindow) {
    EXPECT_EQ(MakeView({100, 50}, {48, 90}).GetShownRect(), CRect(0, 0, 100, 50));
    for (int n = 0; n < 16; ++n)
        for (const uint16_t uZoom : {48, 24, 768}) {
            const auto uAngle = static_cast<uint16_t>(n / 4 * 90);
            CCanvasView view = MakeView({3000, 2001}, {uZoom, uAngle, n % 2 == 1, n % 4 > 1});
            view.ScrollTo(view.GetScroll() + CPoint{5, 3});
            const CRect rc = view.ToWindow(view.GetShownRect());
            const int nMost =
                std::max(uZoom / 48, 2); // one canvas pixel more than the window, in window pixels
            EXPECT_TRUE(rc.left <= 0 && rc.left > -nMost && rc.top <= 0 && rc.top > -nMost)
                << n << ' ' << uZoom;
            EXPECT_TRUE(rc.right >= CLIENT.cx && rc.right < CLIENT.cx + nMost) << n << ' ' << uZoom;
            EXPECT_TRUE(rc.bottom >= CLIENT.cy && rc.bottom < CLIENT.cy + nMost) << n << ' ' << uZoom;
        }
}

TEST(CanvasView, ChangingTheViewKeepsTheCentre) {
    CCanvasView view = MakeView({3000, 2000});
    view.ScrollTo({700, 900});
    const CPoint ptCentre = view.ToCanvas({CLIENT.cx / 2, CLIENT.cy / 2});
    for (const TViewState& state :
         {TViewState{96}, TViewState{96, 90}, TViewState{192, 90, true, false}, TViewState{48, 180}}) {
        view.Apply(state, CLIENT);
        const CPoint ptNow = view.ToCanvas({CLIENT.cx / 2, CLIENT.cy / 2});
        EXPECT_NEAR(ptNow.x, ptCentre.x, 1);
        EXPECT_NEAR(ptNow.y, ptCentre.y, 1);
    }
    view.Apply({48}, {800, 700}); // a resized window keeps it too
    EXPECT_NEAR(view.ToCanvas({400, 350}).x, ptCentre.x, 1);
}

TEST(CanvasView, AnotherCanvasSizeKeepsThePixelInTheMiddle) {
    for (int n = 0; n < 16; ++n) {
        const auto uAngle = static_cast<uint16_t>(n / 4 * 90);
        CCanvasView view = MakeView({3000, 2000}, {48, uAngle, n % 2 == 1, n % 4 > 1});
        const CPoint ptCentre = view.ToCanvas({CLIENT.cx / 2, CLIENT.cy / 2});
        view.SetCanvasSize({2700, 2400});
        EXPECT_EQ(view.ToCanvas({CLIENT.cx / 2, CLIENT.cy / 2}), ptCentre) << n;
    }
}

TEST(ZoomList, LinesAndFirstZoom) {
    for (size_t n = 1; n < GetZoomList().size(); ++n)
        EXPECT_LT(GetZoomList()[n].uZoom, GetZoomList()[n - 1].uZoom);
    EXPECT_EQ(FindZoomLine(47), -1);
    EXPECT_EQ(FormatScale(32), L"Scale: 66%");
    EXPECT_EQ(FirstZoom({200, 200}, CLIENT), 48);
    EXPECT_EQ(FirstZoom({800, 600}, CLIENT), 48);   // f = 600 / 640 < 1
    EXPECT_EQ(FirstZoom({4000, 3000}, CLIENT), 8);  // f = 5.94: 48 / f = 8.08
    EXPECT_EQ(FirstZoom({30000, 100}, CLIENT), 48); // smaller than the list knows
}
