#include "core/PanelViews/BrushView.h"

#include "core/AppModule/ErrorBox.h"
#include "core/Base/StableMath.h"
#include "core/PanelViews/PanelDraw.h"
#include "core/RasterBrush/FreehandTools.h"
#include "core/RasterBuffer/ColorRasterBuffer.h"
#include "core/RasterStroke/RasterBrushStroke.h"
#include "core/RasterStroke/RasterPencilStroke.h"

#include <algorithm>

namespace {

constexpr double PI = 3.14159265358979323846;
constexpr int POINTS = 48;
constexpr int32_t MARGIN = 6;
/// The paint that the eraser's sample removes: its part of the way from ground to text colour.
constexpr double PAINTED_PART = 0.6;
/// An ink that is closer to the ground in every channel is replaced by the text's colour.
constexpr int LEAST_CONTRAST = 64;

TColor ReadableInk(TColor color, TColor clrGround, TColor clrText) {
    const auto differ = [&](uint8_t (*pfnChannel)(TColor)) {
        return std::abs(pfnChannel(color) - pfnChannel(clrGround)) >= LEAST_CONTRAST;
    };
    return differ(RedOf) || differ(GreenOf) || differ(BlueOf) ? color : clrText;
}

// A wave from side to side with pressure that rises and falls. Flatter for larger brushes.
void AddPoints(CRasterStroke& stroke, CSize sz) {
    const int32_t nRadius = static_cast<int32_t>(stroke.GetParam().BrushRadius) / 2;
    const int32_t nLeft = MARGIN + nRadius;
    const int32_t nWidth = std::max(1, sz.cx - 2 * nLeft);
    const int32_t nHeight = std::max(0, sz.cy / 2 - MARGIN - nRadius);
    for (int n = 0; n <= POINTS; ++n) {
        const double t = static_cast<double>(n) / POINTS;
        const double dWave = StableSinCos(2 * PI * t).dSin;
        const CPoint pt{static_cast<int32_t>((nLeft + nWidth * t) * 8),
                        static_cast<int32_t>((sz.cy / 2.0 - dWave * nHeight) * 8)};
        stroke.AddCtlPoint(pt, static_cast<uint32_t>(FULL_PRESSURE * StableSinCos(PI * t).dSin), UPRIGHT);
    }
    stroke.AddCtlPoint({0, 0}, FINAL_PRESSURE, UPRIGHT);
}

} // namespace

void CBrushView::SetTool(CRasterBrushBase* pTool) {
    m_bTool = pTool != nullptr;
    if (!pTool) return;
    m_shown.param = pTool->GetParam();
    m_shown.color = pTool->GetFreehand().m_clrBrush;
    m_shown.nTool = pTool->GetToolId();
}

std::unique_ptr<CGDIBuffer> DrawBrushSample(const TBrushSample& sample, CSize sz, IClock& clock,
                                            IImageCodecs& codecs) {
    const bool bErase = sample.nTool == TOOL_ERASER, bPencil = sample.nTool == TOOL_PENCIL;
    const TColor clrGround =
        bErase ? MixColors(sample.clrBase, sample.clrText, PAINTED_PART) : sample.clrBase;
    // Its own generator: panels must not influence the strokes on the canvas.
    CStrokeRandom random;
    TStrokeSetup setup{.szCanvas = sz,
                       .color =
                           bErase ? sample.clrBase : ReadableInk(sample.color, clrGround, sample.clrText),
                       .param = sample.param,
                       .clock = clock,
                       .random = random,
                       .pCodecs = &codecs};
    setup.param.BrushRadius =
        std::min(setup.param.BrushRadius, static_cast<uint32_t>(std::max(1, sz.cy - 2 * MARGIN)));
    setup.bDouble = !bPencil && setup.param.BlurLevel >= 51 && setup.param.BrushRadius < 32;
    std::unique_ptr<CRasterStroke> pStroke;
    if (bPencil)
        pStroke = std::make_unique<CRasterPencilStroke>(setup);
    else
        pStroke = std::make_unique<CRasterBrushStroke>(setup);
    AddPoints(*pStroke, sz);
    for (bool bDone = false; !bDone;) bDone = pStroke->Update();

    CColorRasterBuffer plane;
    plane.Create(sz, DEFAULT_BLOCKSIZE);
    auto pBuffer = std::make_unique<CGDIBuffer>(sz);
    const CScreenMap map(sz, {0, 0}, {}, sz);
    plane.ForEachBlock([&](CPoint pt) {
        const auto spBlock = plane.GetBlock(pt, true);
        spBlock->Fill(clrGround, 255);
        pStroke->GetMain().BlendBlockInto(*spBlock, nullptr);
        plane.DrawBlockToScreen(*pBuffer, map, pt);
    });
    return pBuffer;
}

void CBrushView::OnPaint(IPaintTarget& target, const TPanelPaint& paint) {
    Guarded([&] {
        if (!m_bTool) {
            CGDIBuffer buffer(paint.sz);
            FillColor(buffer, CRect({0, 0}, paint.sz), paint.clrBack);
            target.Blit(buffer.GetPixelPtr({0, 0}), buffer.GetStride(), paint.sz, CRect({0, 0}, paint.sz));
            return true;
        }
        m_shown.clrBase = paint.clrBase;
        m_shown.clrText = paint.clrText;
        if (!m_pBuffer || !(m_pBuffer->GetSize() == paint.sz) || !(m_drawn == m_shown)) {
            // A failure is reported once and leaves the view empty, instead of at every paint.
            m_drawn = m_shown;
            m_pBuffer = std::make_unique<CGDIBuffer>(paint.sz);
            FillColor(*m_pBuffer, CRect({0, 0}, paint.sz), paint.clrBack);
            m_pBuffer = DrawBrushSample(m_shown, paint.sz, m_clock, m_codecs);
        }
        target.Blit(m_pBuffer->GetPixelPtr({0, 0}), m_pBuffer->GetStride(), paint.sz,
                    CRect({0, 0}, paint.sz));
        return true;
    });
}
