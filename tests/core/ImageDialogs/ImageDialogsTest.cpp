#include "core/Base/Failure.h"
#include "core/ImageDialogs/HSBDlg.h"
#include "core/ImageDialogs/LevelDlg.h"
#include "core/Platform/System.h"
#include "session/seam/Glass.h"
#include "tests/support/LayerPictures.h"

#include <algorithm>

namespace {

constexpr CSize PAGE{300, 200};
constexpr int SURROUND = 0x60;

/// Opaque, with red, green and blue told by the place.
TColor ColorAt(CPoint pt) {
    return MakeColor(static_cast<uint8_t>(pt.x / 2), static_cast<uint8_t>(pt.y), 40);
}

boost::shared_ptr<CRasterBuffer> MakePicture() {
    const auto spPlane = MakePlane<CColorRasterBuffer>(PAGE);
    spPlane->ForEachBlock([&](CPoint ptBlock) {
        const auto spTile = spPlane->GetBlock(ptBlock, true);
        spTile->Fill(0, 255);
        for (int32_t y = 0; y < 96; ++y)
            for (int32_t x = 0; x < 96; ++x) {
                const TColor clr = ColorAt(ptBlock + CPoint{x, y});
                uint8_t* p = spTile->GetPixelPtr({x, y});
                p[0] = RedOf(clr);
                p[spTile->GetPlaneBytes()] = GreenOf(clr);
                p[2 * spTile->GetPlaneBytes()] = BlueOf(clr);
            }
    });
    return spPlane;
}

/// A dialog as a window shows it.
template <class Dialog>
struct TShownDialog : Dialog {
    using Dialog::Dialog;
    TPanelControl& At(int nId) { return *std::ranges::find(Dialog::m_vControls, nId, &TPanelControl::nId); }
    void Set(int nId, int nValue, const std::wstring& strText = {}) {
        Dialog::OnControlMessage({nullptr, EMessage::PanelChange, nId, nValue, strText});
    }
    void Pointer(int nView, EMessage id, CPoint pt) {
        Dialog::OnControlMessage({nullptr, id, PackView(0, nView), PackPoint(pt.x, pt.y)});
    }
    void Drag(int nView, CPoint ptFrom, CPoint ptTo) {
        Pointer(nView, EMessage::LButtonDown, ptFrom);
        Pointer(nView, EMessage::MouseMove, ptTo);
        Pointer(nView, EMessage::LButtonUp, ptTo);
    }
    void Key(int nView, int nKey) {
        Dialog::OnControlMessage({nullptr, EMessage::KeyDown, PackView(nKey, nView)});
    }
    /// The colour of a view's pixel.
    TColor Pixel(int nView, CSize sz, CPoint pt) {
        m_glass.Resize(sz);
        At(nView).pView->OnPaint(m_glass, {.sz = sz});
        const uint8_t* p = m_glass.GetPixel(pt);
        return MakeColor(p[2], p[1], p[0]);
    }

    CGlass m_glass;
};

constexpr int PREVIEW = 1401, HISTOGRAM = 1404, SLIDER = 1405, LOW = 1406, GAMMA = 1407, HIGH = 1408,
              CHANNEL = 1409, ZOOM = 1410, BEFORE = 1, RESET = 1411;
constexpr CSize VIEW{100, 80};
constexpr CSize LEVELS{285, 100};

std::vector<std::wstring> EditsOf(TShownDialog<CLevelDlg>& dialog) {
    return {dialog.At(LOW).strText, dialog.At(GAMMA).strText, dialog.At(HIGH).strText};
}

using TTexts = std::vector<std::wstring>;

} // namespace

TEST(LevelPreview, ShowsThePartInTheMiddleInEveryZoomAndFollowsTheHand) {
    TShownDialog<CLevelDlg> dialog({MakePicture(), {}, {150, 100}});
    const auto at = [&](CPoint pt) { return dialog.Pixel(PREVIEW, VIEW, pt); };
    EXPECT_EQ(at({0, 0}), ColorAt({100, 60}));
    EXPECT_EQ(at({99, 79}), ColorAt({199, 139}));
    dialog.Drag(PREVIEW, {50, 50}, {60, 45});
    EXPECT_EQ(at({0, 0}), ColorAt({90, 65}));
    dialog.Drag(PREVIEW, {50, 50}, {900, 900});
    EXPECT_EQ(at({0, 0}), ColorAt({0, 0})) << "not beyond the edge";
    dialog.Drag(PREVIEW, {50, 50}, {49, 49});
    EXPECT_EQ(at({0, 0}), ColorAt({1, 1})) << "what was pulled beyond the edge does not count";
    dialog.Set(ZOOM, 8); // 500 percent around (51, 41)
    EXPECT_EQ(at({50, 40}), ColorAt({51, 41}));
    EXPECT_EQ(at({54, 44}), ColorAt({51, 41}));
    EXPECT_EQ(at({55, 45}), ColorAt({52, 42}));
    dialog.Set(ZOOM, 0); // a quarter: 75 by 50
    EXPECT_EQ(at({11, 20}), MakeColor(0x20, 0x20, 0x20)) << "the picture's edge";
    EXPECT_EQ(at({5, 20}), MakeColor(SURROUND, SURROUND, SURROUND));
    // The mean of (40, 20) to (43, 23), truncated.
    EXPECT_EQ(at({12 + 10, 15 + 5}), MakeColor(20, 21, 40));
    dialog.Drag(PREVIEW, {50, 50}, {55, 50});
    dialog.Set(ZOOM, 4);
    EXPECT_EQ(at({0, 0}), ColorAt({100, 60})) << "what is seen whole does not move";
}

TEST(LevelPreview, LaysTransparentPixelsOnWhiteAndChangesOnlyWhatIsSelected) {
    const auto spPicture = MakePicture();
    std::vector<uint8_t> vAlpha = spPicture->GetBlock({0, 0}, false)->CopyAlpha();
    vAlpha[1] = 0;
    spPicture->GetWritableBlock({0, 0})->RestoreAlpha(vAlpha);
    const auto spSelect = boost::make_shared<CSelectBuffer>(PAGE);
    *spSelect->GetMask().GetBlock({0, 0}, true)->GetPixelPtr({4, 2}) = 255;
    spSelect->UpdateOutline();
    TShownDialog<CLevelDlg> dialog({spPicture, spSelect, {0, 0}});
    dialog.Set(LOW, 0, L"39"); // 40 and less, of blue, is black but for the step itself
    dialog.Set(HIGH, 0, L"40");
    const auto at = [&](CPoint pt) { return dialog.Pixel(PREVIEW, VIEW, pt); };
    EXPECT_EQ(at({1, 0}), 0xFFFFFFu);
    EXPECT_EQ(at({3, 2}), ColorAt({3, 2}));
    EXPECT_EQ(at({4, 2}), MakeColor(0, 0, 255));
    dialog.Set(BEFORE, 1);
    EXPECT_EQ(at({4, 2}), ColorAt({4, 2}));
    dialog.Set(BEFORE, 0);
    EXPECT_EQ(at({4, 2}), MakeColor(0, 0, 255));
    EXPECT_THROW(CLevelDlg({spPicture, boost::make_shared<CSelectBuffer>(CSize{3, 3}), {}}),
                 constraint_violation_as<illegal_data>);
}

TEST(LevelDlg, EditsAndPinsLimitEachOther) {
    TShownDialog<CLevelDlg> dialog({MakePicture(), {}, {0, 0}});
    dialog.Pixel(SLIDER, LEVELS, {0, 0});
    EXPECT_EQ(EditsOf(dialog), (TTexts{L"0", L"1.000", L"255"}));
    dialog.Drag(SLIDER, {16, 5}, {56, 5}); // a level is a pixel here
    dialog.Drag(SLIDER, {269, 5}, {171, 5});
    EXPECT_EQ(EditsOf(dialog), (TTexts{L"40", L"1.000", L"157"}));
    // Gamma stands between both, at 98.5.
    dialog.Drag(SLIDER, {114, 5}, {114 - 29, 5});
    EXPECT_EQ(dialog.At(GAMMA).strText, L"1.988"); // -log2(0.5 - 29 / 117)
    dialog.Drag(SLIDER, {55, 5}, {500, 5});
    EXPECT_EQ(dialog.At(LOW).strText, L"156");
    dialog.Drag(SLIDER, {284, 5}, {200, 5}); // no pin
    EXPECT_EQ(dialog.At(HIGH).strText, L"157");
    for (const auto& [nId, pszText, pszShown] : {std::tuple{LOW, L"400", L"156"},
                                                 {LOW, L" ３０ ", L"30"},
                                                 {HIGH, L"-5", L"31"},
                                                 {HIGH, L"99.5", L"100"},
                                                 {GAMMA, L"9", L"4.000"},
                                                 {GAMMA, L"0.01", L"0.100"},
                                                 {GAMMA, L"2.25", L"2.250"}}) {
        dialog.Set(nId, 0, pszText);
        EXPECT_EQ(dialog.At(nId).strText, pszShown);
    }
    EXPECT_THROW(dialog.Set(GAMMA, 0, L"hell"), refused_error);
    EXPECT_EQ(EditsOf(dialog), (TTexts{L"30", L"2.250", L"100"}));
    dialog.Key(SLIDER, VK_Right); // the pin that was dragged last: low
    dialog.Key(SLIDER, VK_Space);
    dialog.Key(SLIDER, VK_Space);
    dialog.Key(SLIDER, VK_Left);
    EXPECT_EQ(EditsOf(dialog), (TTexts{L"31", L"2.250", L"99"}));
    dialog.Set(CHANNEL, 4);
    ASSERT_TRUE(dialog.OnOk(nullptr));
    EXPECT_EQ(dialog.GetChannels(), 1u);
    EXPECT_EQ(dialog.GetLut(), MakeLevelTable({31, 99, 2.25F}));
    dialog.Set(RESET, 0);
    EXPECT_EQ(EditsOf(dialog), (TTexts{L"0", L"1.000", L"255"}));
}

TEST(LevelDlg, DrawsTheChannelsHistogramUnderAPercentOfThePixels) {
    TShownDialog<CLevelDlg> dialog({MakePicture(), {}, {0, 0}});
    const auto at = [&](CPoint pt) { return dialog.Pixel(HISTOGRAM, LEVELS, pt); };
    dialog.Set(CHANNEL, 1); // red: levels 0 to 149, 400 pixels each, less than a percent of 60000
    for (const auto& [nLevel, bBlack] :
         {std::pair{-1, false}, {0, true}, {148, true}, {150, false}, {255, false}})
        EXPECT_EQ(at({15 + nLevel, 1}), bBlack ? 0u : 0xFFFFFFu) << nLevel;
    dialog.Set(CHANNEL, 3); // blue: one level, limited
    for (const auto& [nLevel, bBlack] : {std::pair{38, false}, {39, true}, {40, false}})
        EXPECT_EQ(at({15 + nLevel, 0}), bBlack ? 0u : 0xFFFFFFu) << "black where the curve rises";
    EXPECT_EQ(dialog.Pixel(HISTOGRAM, {15 + 510 + 15, 100}, {15 + 79, 50}), 0x7F7F7Fu) << "half way up";
    dialog.Set(CHANNEL, 4); // alpha: all 255
    EXPECT_EQ(at({270, 0}), 0u);
    EXPECT_EQ(at({271, 99}), 0xFFFFFFu);
    TShownDialog<CLevelDlg> grey({MakePlane<CMonoRasterBuffer>(PAGE), {}, {0, 0}});
    EXPECT_EQ(grey.At(CHANNEL).vRows, (TTexts{L"グレー", L"α"}));
    ASSERT_TRUE(grey.OnOk(nullptr));
    EXPECT_EQ(grey.GetChannels(), 2u);
    EXPECT_THROW(CLevelDlg({MakePlane<CAlphaBufferImpl<uint8_t>>(PAGE), {}, {}}), internal_error);
}

TEST(HSBDlg, SlidersEditsAndResetsAreOneValue) {
    TShownDialog<CHSBDlg> dialog({MakePicture(), {}, {0, 0}});
    const THsbValues& values = dialog.GetValues();
    EXPECT_EQ(dialog.At(1443).strText, L" +0");
    EXPECT_EQ(dialog.At(1444).strText, L"+0.50");
    dialog.Set(1433, 0);
    dialog.Set(1434, 512);
    dialog.Set(1441, 384); // half of the way: 0.5 * sqrt(0.5)
    dialog.Set(1435, 128);
    dialog.Set(1440, 512);
    EXPECT_EQ(values.fHue, -180);
    EXPECT_EQ(values.fSatPriority, 1);
    EXPECT_NEAR(values.fSat, 0.35355339F, 1e-7);
    EXPECT_NEAR(values.afSatBand[0], -0.17677670F, 1e-7);
    EXPECT_EQ(values.afBrightBand[2], 0.5F);
    EXPECT_EQ(dialog.At(1443).strText, L"-180");
    EXPECT_EQ(dialog.At(1445).strText, L"+0.35");
    EXPECT_EQ(dialog.At(1446).strText, L"-0.18");
    for (const auto& [nEdit, pszText, nSlider, nPosition] : {std::tuple{1443, L"90", 1433, 270},
                                                             {1449, L"-1", 1442, 0},
                                                             {1447, L"+9", 1436, 512},
                                                             {1450, L"0", 1438, 256}}) {
        dialog.Set(nEdit, 0, pszText);
        EXPECT_EQ(dialog.At(nSlider).nValue, nPosition);
    }
    EXPECT_EQ(values.fBright, -1);
    dialog.Set(1434, 0); // lightness is kept before chroma: black
    EXPECT_EQ(dialog.Pixel(1431, VIEW, {60, 40}) & 0xFF, 0u);
    EXPECT_THROW(dialog.Set(1443, 0, L"x"), refused_error);
    for (int nReset = 1453; nReset <= 1462; ++nReset) dialog.Set(nReset, 0);
    EXPECT_EQ(values.fHue, 0);
    EXPECT_EQ(values.fBright, 0);
    EXPECT_EQ(dialog.At(1440).nValue, 256);
    EXPECT_EQ(dialog.Pixel(1431, VIEW, {60, 40}), ColorAt({60, 40}));
}
