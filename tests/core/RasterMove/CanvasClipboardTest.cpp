#include "core/RasterMove/CanvasClipboard.h"

#include "core/RasterBuffer/SelectBuffer.h"
#include "session/seam/SessionClipboard.h"
#include "tests/support/LayerPictures.h"

namespace {

class CanvasClipboard : public testing::Test {
protected:
    void Open(CSize sz, bool bColor = true) {
        m_spCanvas = CreateCanvas(sz, bColor);
        m_spLayer = MakeRandomLayer(m_spCanvas, m_random);
        m_spCanvas->GetRoot().AddLayer(m_spLayer, -1, false);
        m_spCanvas->SelectLayer(m_spLayer);
    }
    // Selects the rectangle, softer towards the right.
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

    std::mt19937 m_random{17};
    CSessionClipboard m_clipboard;
    CCanvasClipboard m_exchange{m_clipboard};
    boost::shared_ptr<CCanvasBuffer> m_spCanvas;
    boost::shared_ptr<CRasterLayerBuffer> m_spLayer;
};

} // namespace

TEST_F(CanvasClipboard, ACopyIsTheSelectionsRectangleWithTheAlphaThatItTakes) {
    for (const bool bColor : {true, false}) {
        Open({300, 250}, bColor);
        const CRect rc(90, 40, 295, 200);
        Select(rc);
        ASSERT_TRUE(m_exchange.Copy(*m_spCanvas));
        const TDibBytes spBlock = m_clipboard.GetBlock();
        ASSERT_EQ(spBlock->size(), 124u + 205 * 160 * 4);
        for (const CPoint pt :
             {CPoint{90, 40}, {95, 95}, {96, 96}, {191, 192}, {294, 199}, {250, 100}, {100, 50}}) {
            const uint32_t u = PixelAt(*m_spLayer->GetRaster(), pt);
            const uint32_t uTaken = (u & 0xFFFFFF) | std::min(u >> 24, uint32_t{MaskAt(pt.x)}) << 24;
            EXPECT_EQ(CopiedAt(pt - rc.TopLeft()), uTaken) << pt.x << ' ' << pt.y << bColor;
        }
    }
}

TEST_F(CanvasClipboard, OnlyASelectionOfARasterLayerIsCopied) {
    Open({300, 250});
    EXPECT_FALSE(m_exchange.CanCopy(*m_spCanvas) || m_exchange.Copy(*m_spCanvas));
    Select({10, 10, 20, 20});
    EXPECT_TRUE(m_exchange.CanCopy(*m_spCanvas));
    const auto spVector = CreateVectorLayer(m_spCanvas);
    m_spCanvas->GetRoot().AddLayer(spVector, -1, false);
    m_spCanvas->SelectLayer(spVector);
    EXPECT_FALSE(m_exchange.CanCopy(*m_spCanvas) || m_exchange.Copy(*m_spCanvas));
    EXPECT_FALSE(m_exchange.CanPaste());
}

TEST_F(CanvasClipboard, ACopyTakesMemoryForWhatIsSelectedOnly) {
    m_spCanvas = MakePage({12000, 12000});
    const auto spLayer = boost::dynamic_pointer_cast<CRasterLayerBuffer>(m_spCanvas->GetActiveLayer());
    spLayer->GetRaster()->GetBlock({6000, 6000}, true)->Fill(0x302010, 200);
    Select({5900, 5900, 6100, 6100});
    const size_t nBefore = spLayer->GetRaster()->GetBytes(nullptr);
    ASSERT_TRUE(m_exchange.Copy(*m_spCanvas));
    EXPECT_EQ(m_clipboard.GetBlock()->size(), 124u + 200 * 200 * 4);
    EXPECT_EQ(spLayer->GetRaster()->GetBytes(nullptr), nBefore) << "no tiles where there were none";
    EXPECT_EQ(CopiedAt({100, 100}) & 0xFFFFFF, 0x302010u);
    EXPECT_EQ(CopiedAt({0, 0}), 0u);
}
