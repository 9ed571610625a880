#include "core/RasterMove/CanvasClipboard.h"

#include "core/ImageFile/DibBlock.h"
#include "core/PathToolBase/PathTool.h"
#include "core/RasterBuffer/PlaneKind.h"
#include "session/seam/SessionClipboard.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/TestView.h"
#include "tests/support/ToolSession.h"

namespace {

constexpr uint32_t FOREIGN = 0xFF1E140A; // in the form of PixelAt

class CanvasClipboard : public testing::Test {
protected:
    void Open(CSize sz, bool bColor = true) {
        m_spCanvas = CreateCanvas(sz, bColor);
        m_spLayer = MakeRandomLayer(m_spCanvas, m_random);
        m_spCanvas->GetRoot().AddLayer(m_spLayer, -1, false);
        m_spCanvas->SelectLayer(m_spLayer);
        m_view.m_spCanvas = m_spCanvas;
        m_view.m_rcShown = CRect({0, 0}, sz);
    }
    // Selects the rectangle in soft stripes.
    void Select(const CRect& rc) {
        const auto spSelect = boost::make_shared<CSelectBuffer>(m_spCanvas->GetSize());
        for (int32_t y = rc.top; y < rc.bottom; ++y)
            for (int32_t x = rc.left; x < rc.right; ++x) {
                const auto spTile = spSelect->GetMask().GetWritableBlock({x, y});
                *spTile->GetPixelPtr(CPoint{x, y} - spTile->GetPosition()) = MaskAt(x);
            }
        spSelect->UpdateOutline();
        m_spCanvas->SetSelect(spSelect);
    }
    static uint8_t MaskAt(int32_t x) { return static_cast<uint8_t>(1 + x % 255); }
    uint32_t CopiedAt(CPoint pt) {
        const TLoadedPicture picture = m_clipboard.GetPicture();
        TLockedBits bits;
        if (!picture || !picture->LockBits(CRect(pt, CSize{1, 1}), ELockMode::Read, bits)) return 0;
        const uint8_t* p = bits.pData;
        picture->UnlockBits();
        return MakeColor(p[2], p[1], p[0]) | uint32_t{p[3]} << 24;
    }
    bool Copy() { return m_exchange.Copy(m_spCanvas); }
    bool Paste() { return m_exchange.Paste(m_view); }
    // Another program's picture, of one colour.
    void PutForeign(CSize sz, uint8_t uAlpha = 255) {
        std::string strBlock = *CreateDibBlock(sz).spBytes;
        for (size_t i = 124; i < strBlock.size(); i += 4)
            strBlock.replace(i, 4, {30, 20, 10, static_cast<char>(uAlpha)});
        m_clipboard.SetBlock(boost::make_shared<std::string>(strBlock));
    }
    boost::shared_ptr<CFloatingPixels> Float() { return m_spCanvas->GetFloatState().spFloat; }
    CRect FloatRect() { return Float() ? Float()->GetRect() : CRect(); }

    std::mt19937 m_random{17};
    CSessionClipboard m_clipboard;
    CCanvasClipboard m_exchange{m_clipboard};
    CTestView m_view;
    boost::shared_ptr<CCanvasBuffer> m_spCanvas;
    boost::shared_ptr<CRasterLayerBuffer> m_spLayer;
};

class ClipboardCommands : public testing::Test, protected CToolSession {
protected:
    ClipboardCommands() : CToolSession(MakePage({200, 120})) {}
    bool IsEnabled(int nId) { return g_pMainFrame->IsCommandEnabled(nId); }
};

} // namespace

TEST_F(CanvasClipboard, ACopyIsTheSelectionsRectangleWithTheAlphaThatItTakes) {
    for (const bool bColor : {true, false}) {
        Open({300, 250}, bColor);
        const CRect rc(90, 40, 295, 200);
        Select(rc);
        ASSERT_TRUE(Copy());
        ASSERT_EQ(m_clipboard.GetBlock()->size(), 124u + 205 * 160 * 4);
        int nWrong = 0;
        for (int32_t n = 0; n < rc.Width() * rc.Height(); ++n) {
            const CPoint pt{n % rc.Width(), n / rc.Width()};
            const uint32_t u = PixelAt(*m_spLayer->GetRaster(), pt + rc.TopLeft());
            const uint32_t uTaken = std::min(u >> 24, uint32_t{MaskAt(pt.x + rc.left)});
            nWrong += CopiedAt(pt) != ((u & 0xFFFFFF) | uTaken << 24);
        }
        EXPECT_EQ(nWrong, 0) << bColor;
    }
}

TEST_F(CanvasClipboard, ACopyTakesMemoryForWhatIsSelectedOnly) {
    m_spCanvas = MakePage({12000, 12000});
    const auto spLayer = boost::dynamic_pointer_cast<CRasterLayerBuffer>(m_spCanvas->GetActiveLayer());
    EXPECT_FALSE(Copy()) << "nothing is selected";
    spLayer->GetRaster()->GetBlock({6000, 6000}, true)->Fill(0x302010, 200);
    Select({5900, 5900, 6100, 6100});
    const size_t nBefore = spLayer->GetRaster()->GetBytes(nullptr);
    ASSERT_TRUE(Copy());
    EXPECT_EQ(m_clipboard.GetBlock()->size(), 124u + 200 * 200 * 4);
    EXPECT_EQ(spLayer->GetRaster()->GetBytes(nullptr), nBefore) << "no tiles where there were none";
    EXPECT_EQ(CopiedAt({100, 100}) & 0xFFFFFF, 0x302010u);
    EXPECT_EQ(CopiedAt({0, 0}), 0u);
}

TEST_F(CanvasClipboard, APictureGoesBackToItsPlaceElseToTheMiddleOfTheView) {
    const CRect rc(90, 40, 295, 200);
    const auto placeOf = [&](const CRect& rcShown) {
        m_view.m_rcShown = rcShown;
        EXPECT_TRUE(Paste());
        return FloatRect();
    };
    Open({300, 250});
    Select(rc);
    ASSERT_TRUE(Copy());
    EXPECT_EQ(placeOf(rc), rc);
    EXPECT_EQ(m_spCanvas->GetSelect()->GetBound(), rc);
    EXPECT_EQ(*m_spCanvas->GetSelect()->GetMask().FindBlock(rc.TopLeft())->GetPixelPtr({90, 40}), 255)
        << "full";
    EXPECT_EQ(placeOf({90, 40, 295, 196}), CRect({90, 38}, rc.Size())) << "rows are out of sight";
    Open({300, 251});
    EXPECT_EQ(placeOf({0, 0, 300, 251}), CRect({47, 45}, rc.Size())) << "another canvas";
    PutForeign({10, 20});
    EXPECT_EQ(placeOf({100, 50, 200, 150}), CRect({145, 90}, CSize{10, 20}));
    PutForeign({120, 150}); // into the canvas
    EXPECT_EQ(placeOf({280, 0, 300, 30}), CRect({180, 0}, CSize{120, 150}));
    EXPECT_EQ(placeOf({0, 240, 20, 251}), CRect({0, 101}, CSize{120, 150}));
    PutForeign({400, 101});
    EXPECT_EQ(placeOf({0, 0, 300, 251}), CRect({-50, 75}, CSize{400, 101}));
    EXPECT_EQ(m_spCanvas->GetSelect()->GetBound(), CRect(0, 75, 300, 176));
    EXPECT_EQ(PixelAt(Float()->GetPlane(), {399, 100}), FOREIGN);
    Open({300, 251}, false);
    ASSERT_TRUE(Paste());
    EXPECT_EQ(PixelAt(Float()->GetPlane(), {399, 100}), 0xFF121212u)
        << "10 * 0.299 + 20 * 0.587 + 30 * 0.114";
}

TEST_F(CanvasClipboard, FloatingPixelsAreCopiedAlone) {
    Open({300, 250});
    PutForeign({20, 10}, 99);
    const std::string strForeign = *m_clipboard.GetBlock();
    ASSERT_TRUE(Paste());
    m_spCanvas->SetFloatState({Float()->MoveTo({-15, 1000}), m_spLayer, {}});
    m_clipboard.SetText(L"");
    ASSERT_TRUE(Copy());
    EXPECT_EQ(*m_clipboard.GetBlock(), strForeign);
    // Without a mask the bounds are those of the paint.
    const auto spPlane = CreatePlane(true, {200, 200}, DEFAULT_BLOCKSIZE);
    const auto spTile = spPlane->GetWritableBlock({100, 150});
    spTile->Fill(0x123456, 7);
    spTile->ClearOutside({4, 54, 6, 57});
    m_spCanvas->SetFloatState(
        {boost::make_shared<CFloatingPixels>(spPlane, nullptr, CPoint{5, 5}, std::nullopt), m_spLayer, {}});
    ASSERT_TRUE(Copy());
    EXPECT_EQ(m_clipboard.GetBlock()->size(), 124u + 2 * 3 * 4);
    EXPECT_EQ(CopiedAt({0, 0}), 0x07123456u);
    m_view.m_rcShown = {0, 0, 300, 250};
    ASSERT_TRUE(Paste());
    EXPECT_EQ(FloatRect(), CRect(105, 155, 107, 158));
}

TEST_F(CanvasClipboard, WhatCannotBeReadIsRefusedAndNothingVisibleStaysInvisible) {
    Open({300, 250});
    Select({10, 10, 50, 50});
    m_spLayer->GetRaster()->Clear();
    m_clipboard.SetBlock(boost::make_shared<std::string>("junk"));
    EXPECT_TRUE(m_exchange.CanPaste());
    EXPECT_THROW(Paste(), refused_error);
    EXPECT_FALSE(m_spCanvas->GetHistory().CanUndo() || Float());
    ASSERT_TRUE(Copy());
    ASSERT_TRUE(Paste());
    EXPECT_EQ(Float()->GetPlane().GetBytes(nullptr), 0u);
    PutForeign({5, 5}, 0);
    ASSERT_TRUE(Paste());
    EXPECT_EQ(PixelAt(Float()->GetPlane(), {0, 0}), FOREIGN) << "another program's picture is opaque";
}

TEST_F(ClipboardCommands, WorkWithEveryToolAndLayerAndAreOneStepEach) {
    const TLayerPtr spRaster = m_spCanvas->GetActiveLayer();
    const auto spVector = CreateVectorLayer(m_spCanvas);
    m_spCanvas->GetRoot().AddLayer(spVector, 0, false);
    Play(TOOL_BRUSH, [&] {
        EXPECT_FALSE(IsEnabled(ID_EDIT_COPY) || IsEnabled(ID_EDIT_CUT) || IsEnabled(ID_EDIT_PASTE));
        Drag({{80, 80}, {400, 400}});
        Command(ID_SELECT_ALL);
        const TBytes vDrawn = Bytes();
        const auto vPicture = Picture();
        EXPECT_TRUE(IsEnabled(ID_EDIT_COPY) && IsEnabled(ID_EDIT_CUT) && !IsEnabled(ID_EDIT_PASTE));
        Command(ID_EDIT_CUT);
        const TBytes vCut = Bytes();
        EXPECT_NE(vCut, vDrawn);
        Press({400, 400});
        EXPECT_FALSE(IsEnabled(ID_EDIT_COPY) || IsEnabled(ID_EDIT_PASTE)) << "a stroke is being drawn";
        Type(VK_Escape);
        Command(ID_EDIT_PASTE);
        EXPECT_EQ(Picture(), vPicture);
        Command(ID_EDIT_PASTE); // merges the first one, which the same undo brings back
        for (int n = 0; n < 2; ++n) Command(ID_EDIT_UNDO);
        EXPECT_EQ(Bytes(), vCut);

        m_spCanvas->SelectLayer(spVector);
        g_pMainFrame->SwitchTool(TOOL_PATH);
        EXPECT_FALSE(IsEnabled(ID_EDIT_COPY) || IsEnabled(ID_EDIT_CUT));
        const TBytes vOnVector = Bytes();
        Command(ID_EDIT_PASTE);
        const auto spNew = m_spCanvas->GetActiveLayer();
        EXPECT_EQ(m_spCanvas->GetRoot().IndexOf(*spNew), 1) << "above the vector layer";
        EXPECT_EQ(spNew->GetName(), L"新規ラスタレイヤー");
        EXPECT_EQ(m_spCanvas->GetFloatState().wpLayer.lock(), spNew);
        EXPECT_EQ(Picture(), vPicture);
        EXPECT_EQ(Labels(),
                  (std::vector<std::wstring>{L"ラスタブラシ", L"全選択", L"切り取り", L"貼り付け"}));
        const TBytes vPasted = Bytes();
        Command(ID_EDIT_UNDO);
        EXPECT_EQ(Bytes(), vOnVector);
        Command(ID_EDIT_REDO);
        EXPECT_EQ(Bytes(), vPasted);
        for (int n = 0; n < 2; ++n) Command(ID_EDIT_UNDO);
        m_spCanvas->SelectLayer(spRaster);
        EXPECT_EQ(Bytes(), vDrawn);
    });
}
