#include "core/RasterMove/CanvasClipboard.h"

#include "core/ImageFile/DibBlock.h"
#include "core/PathToolBase/PathTool.h"
#include "core/RasterBrush/FreehandTools.h"
#include "session/seam/SessionClipboard.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/ToolSession.h"

namespace {

struct CView : IActiveView {
    const boost::shared_ptr<CCanvasBuffer>& GetCanvas() const override { return m_spCanvas; }
    uint16_t GetZoom() const override { return 48; }
    CPoint ToClient(CPoint pt) const override { return pt; }
    CPoint ToClientPixel(CPoint pt) const override { return pt; }
    CPoint ToCanvas(CPoint pt) const override { return pt; }
    CRect GetShownRect() const override { return m_rcShown; }
    int32_t GetDpi() const override { return DPI_NORMAL; }
    void RequestRedraw() override {}
    boost::shared_ptr<CCanvasBuffer> m_spCanvas;
    CRect m_rcShown;
};

class CClosableClipboard : public CSessionClipboard {
public:
    void SetBlock(const TDibBytes& spBlock) override {
        if (m_bClosed) throw std::runtime_error("closed");
        CSessionClipboard::SetBlock(spBlock);
    }
    bool m_bClosed = false;
};

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
    // Selects the rectangle, softer towards the right, or hard.
    void Select(const CRect& rc, bool bSoft = true) {
        const auto spSelect = boost::make_shared<CSelectBuffer>(m_spCanvas->GetSize());
        for (int32_t y = rc.top; y < rc.bottom; ++y)
            for (int32_t x = rc.left; x < rc.right; ++x) {
                const auto spTile = spSelect->GetMask().GetWritableBlock({x, y});
                *spTile->GetPixelPtr(CPoint{x, y} - spTile->GetPosition()) = bSoft ? MaskAt(x) : 255;
            }
        spSelect->UpdateOutline();
        m_spCanvas->SetSelect(spSelect);
    }
    static uint8_t MaskAt(int32_t x) { return static_cast<uint8_t>(255 - x % 128); }
    // The clipboard's pixel in the form of PixelAt.
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
        const TDibBlock block = CreateDibBlock(sz);
        TLockedBits bits;
        block.spPixels->LockBits(CRect({0, 0}, sz), ELockMode::Write, bits);
        for (ptrdiff_t i = 0; i < ptrdiff_t{sz.cx} * sz.cy; ++i) {
            uint8_t* p = bits.pData + i / sz.cx * bits.nStride + i % sz.cx * 4;
            p[0] = 10, p[1] = 20, p[2] = 30, p[3] = uAlpha;
        }
        block.spPixels->UnlockBits();
        m_clipboard.SetBlock(block.spBytes);
    }
    boost::shared_ptr<CFloatingPixels> Float() { return m_spCanvas->GetFloatState().spFloat; }
    CRect FloatRect() { return Float() ? Float()->GetRect() : CRect(); }
    CHistoryStream& History() { return m_spCanvas->GetHistory(); }

    std::mt19937 m_random{17};
    CClosableClipboard m_clipboard;
    CCanvasClipboard m_exchange{m_clipboard};
    CView m_view;
    boost::shared_ptr<CCanvasBuffer> m_spCanvas;
    boost::shared_ptr<CRasterLayerBuffer> m_spLayer;
};

} // namespace

TEST_F(CanvasClipboard, ACopyIsTheSelectionsRectangleWithTheAlphaThatItTakes) {
    for (const bool bColor : {true, false}) {
        Open({300, 250}, bColor);
        const CRect rc(90, 40, 295, 200);
        Select(rc);
        ASSERT_TRUE(Copy());
        ASSERT_EQ(m_clipboard.GetBlock()->size(), 124u + 205 * 160 * 4);
        for (const CPoint pt :
             {CPoint{90, 40}, {95, 95}, {96, 96}, {191, 192}, {294, 199}, {250, 100}, {100, 50}}) {
            const uint32_t u = PixelAt(*m_spLayer->GetRaster(), pt);
            const uint32_t uTaken = (u & 0xFFFFFF) | std::min(u >> 24, uint32_t{MaskAt(pt.x)}) << 24;
            EXPECT_EQ(CopiedAt(pt - rc.TopLeft()), uTaken) << pt.x << ' ' << pt.y << bColor;
        }
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

TEST_F(CanvasClipboard, WhatIsCutComesBackToItsPlaceWhereTheViewShowsIt) {
    Open({300, 250});
    const CRect rc(90, 40, 295, 200);
    Select(rc, false);
    m_spCanvas->ComposeAll();
    const auto vFirst = PixelsOf(m_spCanvas->GetComposite());
    ASSERT_TRUE(m_exchange.Cut(m_spCanvas));
    EXPECT_EQ(PixelAt(*m_spLayer->GetRaster(), {294, 199}) >> 24, 0u);
    ASSERT_TRUE(Paste());
    EXPECT_EQ(FloatRect(), rc);
    EXPECT_EQ(m_spCanvas->GetSelect()->GetBound(), rc);
    m_spCanvas->ComposeAll();
    EXPECT_EQ(PixelsOf(m_spCanvas->GetComposite()), vFirst);
    EXPECT_EQ(History().GetUndoList()[0]->GetName() + History().GetUndoList()[1]->GetName(),
              L"貼り付け切り取り");

    m_view.m_rcShown = {90, 40, 294, 200}; // one column is out of sight
    ASSERT_TRUE(Paste());
    EXPECT_EQ(FloatRect().TopLeft(), (CPoint{90 + (204 - 205) / 2, 40}));
    Open({300, 251}); // another canvas
    ASSERT_TRUE(Paste());
    EXPECT_EQ(FloatRect().TopLeft(), (CPoint{47, 45}));
    PutForeign(rc.Size());
    ASSERT_TRUE(Paste());
    EXPECT_EQ(FloatRect().TopLeft(), (CPoint{47, 45}));
}

TEST_F(CanvasClipboard, APictureGoesToTheMiddleOfTheViewInsideTheCanvas) {
    Open({300, 200});
    const auto placeOf = [&](CSize sz, const CRect& rcShown) {
        PutForeign(sz);
        m_view.m_rcShown = rcShown;
        EXPECT_TRUE(Paste());
        return FloatRect();
    };
    EXPECT_EQ(placeOf({10, 20}, {100, 50, 200, 150}), CRect({145, 90}, CSize{10, 20}));
    EXPECT_EQ(placeOf({120, 150}, {280, 0, 300, 30}), CRect({180, 0}, CSize{120, 150}));
    EXPECT_EQ(placeOf({120, 150}, {0, 190, 20, 200}), CRect({0, 50}, CSize{120, 150}));
    EXPECT_EQ(placeOf({400, 100}, {0, 0, 300, 200}), CRect({-50, 50}, CSize{400, 100}));
    EXPECT_EQ(m_spCanvas->GetSelect()->GetBound(), CRect(0, 50, 300, 150));
    EXPECT_EQ(PixelAt(Float()->GetPlane(), {399, 99}), 0xFF0A141Eu);
    Open({300, 200}, false);
    ASSERT_TRUE(Paste());
    EXPECT_EQ(PixelAt(Float()->GetPlane(), {399, 99}), 0xFF151515u) << "30 * 0.299 + 20 * 0.587 + 10 * 0.114";
}

TEST_F(CanvasClipboard, FloatingPixelsAreCopiedAndCutAlone) {
    Open({300, 250});
    const auto before = PixelsOf(*m_spLayer->GetRaster());
    PutForeign({20, 10}, 99);
    const std::string strForeign = *m_clipboard.GetBlock();
    ASSERT_TRUE(Paste());
    const TFloatState state = m_spCanvas->GetFloatState();
    const auto spFar = state.spFloat->MoveTo({-15, 1000});
    m_spCanvas->SetFloatState({spFar, state.wpLayer, {}});
    m_clipboard.SetText(L"");
    ASSERT_TRUE(Copy());
    EXPECT_EQ(*m_clipboard.GetBlock(), strForeign);
    ASSERT_TRUE(m_exchange.Cut(m_spCanvas));
    EXPECT_FALSE(Float() || m_spCanvas->GetSelect());
    EXPECT_EQ(PixelsOf(*m_spLayer->GetRaster()), before);
    History().Undo();
    EXPECT_EQ(FloatRect(), spFar->GetRect());
    // Without a mask the bounds are those of the paint.
    const auto spPlane = CreatePlane(true, {200, 200}, DEFAULT_BLOCKSIZE);
    *(spPlane->GetWritableBlock({100, 150})->GetPixelPtr({4, 54}) + 3 * 96 * 96) = 7;
    m_spCanvas->SetFloatState(
        {boost::make_shared<CFloatingPixels>(spPlane, nullptr, CPoint{5, 5}, std::nullopt), m_spLayer, {}});
    ASSERT_TRUE(Copy());
    EXPECT_EQ(m_clipboard.GetBlock()->size(), 124u + 4);
    EXPECT_EQ(CopiedAt({0, 0}) >> 24, 7u);
}

TEST_F(CanvasClipboard, APasteOfMoreIsOneStepEach) {
    Open({300, 250});
    const TBytes vFirst = SaveToBytes(*m_spCanvas);
    PutForeign({20, 10});
    ASSERT_TRUE(Paste());
    const auto spFirst = Float();
    ASSERT_TRUE(Paste());
    EXPECT_EQ(PixelAt(*m_spLayer->GetRaster(), {145, 125}), 0xFF0A141Eu) << "the first one was merged";
    History().Undo();
    EXPECT_EQ(Float(), spFirst);
    History().Undo();
    EXPECT_EQ(SaveToBytes(*m_spCanvas), vFirst);
}

TEST_F(CanvasClipboard, WhatCannotBeDoneLeavesAllAsItWas) {
    Open({300, 250});
    Select({10, 10, 50, 50}, false);
    const TBytes vFirst = SaveToBytes(*m_spCanvas);
    m_clipboard.m_bClosed = true;
    EXPECT_THROW(m_exchange.Cut(m_spCanvas), std::runtime_error);
    EXPECT_FALSE(m_exchange.CanPaste());
    m_clipboard.m_bClosed = false;
    m_clipboard.SetBlock(boost::make_shared<std::string>("junk"));
    EXPECT_TRUE(m_exchange.CanPaste());
    EXPECT_THROW(Paste(), refused_error);
    EXPECT_FALSE(History().CanUndo() || Float());
    EXPECT_EQ(SaveToBytes(*m_spCanvas), vFirst);
    // Nothing visible: what was copied here is transparent, what others copy is opaque.
    m_spLayer->GetRaster()->Clear();
    ASSERT_TRUE(Copy());
    ASSERT_TRUE(Paste());
    EXPECT_EQ(Float()->GetPlane().GetBytes(nullptr), 0u);
    PutForeign({5, 5}, 0);
    ASSERT_TRUE(Paste());
    EXPECT_EQ(PixelAt(Float()->GetPlane(), {0, 0}), 0xFF0A141Eu);
}

namespace {

class ClipboardCommands : public testing::Test, protected CToolSession {
protected:
    ClipboardCommands() : CToolSession(MakePage({200, 120})) {}
    bool IsEnabled(int nId) { return g_pMainFrame->IsCommandEnabled(nId); }
};

} // namespace

TEST_F(ClipboardCommands, WorkWithEveryToolAndLayer) {
    const auto spRaster = m_spCanvas->GetActiveLayer();
    const auto spVector = CreateVectorLayer(m_spCanvas);
    m_spCanvas->GetRoot().AddLayer(spVector, 0, false);
    Play(CRasterBrush::TOOL_ID, [&] {
        EXPECT_FALSE(IsEnabled(ID_EDIT_COPY) || IsEnabled(ID_EDIT_CUT) || IsEnabled(ID_EDIT_PASTE));
        Drag({{80, 80}, {400, 400}});
        Command(ID_SELECT_ALL);
        EXPECT_TRUE(IsEnabled(ID_EDIT_COPY) && IsEnabled(ID_EDIT_CUT) && !IsEnabled(ID_EDIT_PASTE));
        Command(ID_EDIT_CUT);
        EXPECT_TRUE(IsEnabled(ID_EDIT_PASTE));
        const TBytes vCut = Bytes();

        m_spCanvas->SelectLayer(spVector);
        g_pMainFrame->SwitchTool(CPathTool::TOOL_ID);
        EXPECT_FALSE(IsEnabled(ID_EDIT_COPY) || IsEnabled(ID_EDIT_CUT));
        Press({400, 400});
        EXPECT_FALSE(IsEnabled(ID_EDIT_PASTE)) << "a path is being drawn";
        Type(VK_Escape);
        Release({400, 400});
        Command(ID_EDIT_PASTE);
        const auto spNew = m_spCanvas->GetActiveLayer();
        EXPECT_EQ(m_spCanvas->GetRoot().IndexOf(*spNew), 1) << "above the vector layer";
        EXPECT_EQ(spNew->GetName(), L"新規ラスタレイヤー");
        EXPECT_EQ(m_spCanvas->GetFloatState().wpLayer.lock(), spNew);
        EXPECT_EQ(Labels().back(), L"貼り付け");
        const TBytes vPasted = Bytes();
        const auto vPicture = Picture();
        Command(ID_EDIT_UNDO);
        EXPECT_EQ(Bytes(), vCut);
        Command(ID_EDIT_REDO);
        EXPECT_EQ(Bytes(), vPasted);
        EXPECT_EQ(Picture(), vPicture);
    });
}
