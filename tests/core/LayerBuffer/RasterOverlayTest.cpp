#include "core/LayerBuffer/RasterOverlay.h"
#include "tests/support/LayerPictures.h"

#include <array>

namespace {

constexpr CPoint FIRST{0, 0}, SECOND{96, 0};

struct CMovedPixels : IRasterOverlay {
    bool CoversBlock(CPoint pt) const override { return pt == FIRST || pt == SECOND; }
    void PaintInto(CRasterBlockBuffer& work) const override {
        if (work.GetPosition() == SECOND && m_bFails) throw std::bad_alloc();
        if (work.GetPosition() == FIRST)
            work.Clear();
        else
            work.Fill(MakeColor(10, 20, 30), 255);
    }
    void PassFlags(CBoolMatrix& matrix) override {
        if (m_uFlag) matrix.Add(1, 0);
    }
    void ClearFlag(CPoint pt) override { m_uFlag = pt == SECOND ? 0 : m_uFlag; }

    bool m_bFails = false;
    uint8_t m_uFlag = 0;
};

class RasterOverlay : public testing::Test {
protected:
    RasterOverlay() {
        m_layer.GetRaster()->GetWritableBlock(FIRST)->Fill(MakeColor(10, 20, 30), 255);
        ExpectAlphas(255, 0);
    }
    void ExpectAlphas(int nFirst, int nSecond) {
        m_spCanvas->ComposeAll();
        for (const auto& [pt, n] : {std::pair{FIRST, nFirst}, std::pair{SECOND, nSecond}}) {
            const auto spTile = m_spCanvas->GetComposite().GetBlockOrBlank(pt);
            EXPECT_EQ(spTile->GetPixelAlpha({5, 0}), n) << pt.x;
        }
    }

    boost::shared_ptr<CCanvasBuffer> m_spCanvas = MakePage({200, 100});
    CRasterLayerBuffer& m_layer = dynamic_cast<CRasterLayerBuffer&>(*m_spCanvas->GetActiveLayer());
    boost::shared_ptr<CMovedPixels> m_spMoved = boost::make_shared<CMovedPixels>();
};

} // namespace

TEST_F(RasterOverlay, IsShownAndGoesWithoutATrace) {
    m_layer.SetOverlay(m_spMoved);
    ExpectAlphas(0, 255);
    m_spMoved->m_uFlag = 1;
    m_spCanvas->FlushCanvasUpdates();
    EXPECT_TRUE(m_spCanvas->GetComposite().DirtyAt(SECOND) && !m_spCanvas->GetComposite().DirtyAt(FIRST));
    ExpectAlphas(0, 255);
    EXPECT_EQ(m_spMoved->m_uFlag, 0) << "it has been shown";
    m_layer.SetOverlay({});
    ExpectAlphas(255, 0);
    EXPECT_FALSE(m_spCanvas->GetHistory().CanUndo());
}

TEST_F(RasterOverlay, ABlockThatFailsOnAnyThreadIsComposedAgain) {
    for (const size_t nThreads : {1, 2}) {
        m_layer.SetOverlay({});
        ExpectAlphas(255, 0);
        m_layer.SetOverlay(m_spMoved);
        m_spMoved->m_bFails = true;
        m_spCanvas->FlushCanvasUpdates();
        EXPECT_THROW(ComposeBlocks(*m_spCanvas, std::array{SECOND, FIRST}, nThreads, {}), std::bad_alloc);
        EXPECT_TRUE(m_spCanvas->GetComposite().DirtyAt(SECOND));
        m_spMoved->m_bFails = false;
        ExpectAlphas(0, 255);
    }
}
