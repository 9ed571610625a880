// Strokes on their way from one document to another.
#include "core/Base/Failure.h"
#include "core/ImageFile/DibBlock.h"
#include "core/PathSelect/StrokeForms.h"
#include "core/PathSelect/StrokeSelect.h"
#include "session/scripts/SessionPlatform.h"
#include "tests/support/PathSession.h"
#include "tests/support/Paths.h"

#include <gmock/gmock.h>

namespace {

TCopiedStrokes RandomStrokes(int nCount) {
    std::mt19937 random(5);
    TCopiedStrokes strokes{{300, 200}, 0x102030, {}};
    while (nCount-- > 0) strokes.vPaths.push_back(MakeRandomPath(strokes.szCanvas, random));
    return strokes;
}

std::vector<TBytes> BytesOfAll(const CVectorLayerBuffer::TPaths& vPaths) {
    std::vector<TBytes> vBytes;
    for (const auto& spPath : vPaths) vBytes.push_back(BytesOf(*spPath));
    return vBytes;
}

class StrokeClipboard : public testing::Test, protected CPathSession {
protected:
    void Play(const std::function<void()>& fn) { CPathSession::Play(TOOL_STROKE_SELECT, fn); }
    static IClipboard& Clipboard() { return g_AppModule.GetPlatform().clipboard; }
    // Another document with one layer, which becomes the active one.
    static boost::shared_ptr<CCanvasBuffer> OpenOther(CSize sz, bool bVector) {
        const auto spCanvas = CreateCanvas(sz);
        const TLayerPtr spLayer =
            bVector ? TLayerPtr(CreateVectorLayer(spCanvas)) : TLayerPtr(CreateRasterLayer(spCanvas));
        spCanvas->GetRoot().AddLayer(spLayer, -1, false);
        spCanvas->GetRoot().SetActiveChild(spLayer);
        CTestPlatform::Open(spCanvas);
        return spCanvas;
    }
    static CVectorLayerBuffer& Active(const CCanvasBuffer& canvas) {
        return dynamic_cast<CVectorLayerBuffer&>(*canvas.GetActiveLayer());
    }
};

} // namespace

TEST(StrokeForms, AreReadAsTheyWereWrittenAndNothingElse) {
    TCopiedStrokes strokes = RandomStrokes(30);
    const auto spFaint = boost::make_shared<COpenPathObject>();
    for (const CPoint pt : {CPoint{100, 100}, CPoint{900, 300}}) spFaint->AppendControlPoint(pt);
    spFaint->GetStream().AddAlphaPoint(0x4000)->SetAlpha(CDualValue<uint32_t>(90));
    spFaint->Update();
    strokes.vPaths.push_back(spFaint);
    const TStrokeBytes spBytes = WriteStrokes(strokes);
    const TCopiedStrokes read = ReadStrokes(spBytes);
    EXPECT_EQ(read.szCanvas, strokes.szCanvas);
    EXPECT_EQ(read.color, strokes.color);
    EXPECT_EQ(BytesOfAll(read.vPaths), BytesOfAll(strokes.vPaths));
    EXPECT_EQ(*WriteStrokes(read), *spBytes);
    const auto refuses = [](const std::string& str) {
        try {
            ReadStrokes(boost::make_shared<std::string>(str));
        } catch (const deserialize_error&) {
            return true;
        }
        return false;
    };
    const TStrokeBytes spOpaque = WriteStrokes(RandomStrokes(30)); // opacities may be missing
    for (size_t n = 0; n < spOpaque->size(); n += 7) EXPECT_TRUE(refuses(spOpaque->substr(0, n))) << n;
    EXPECT_TRUE(refuses(*WriteStrokes({{300, 200}, 0, {}})));
    EXPECT_TRUE(refuses(*WriteStrokes({{0, 200}, 0, strokes.vPaths})));
    EXPECT_TRUE(refuses(*WriteStrokes({{300, 200}, 0, {boost::make_shared<COpenPathObject>()}})));
    EXPECT_FALSE(refuses(*spBytes + "more")) << "systems round lengths up";
}

TEST(StrokeForms, OthersSeeTheSamePixelsAndCurves) {
    const auto spCanvas = CreateCanvas({300, 200});
    const auto spLayer = CreateVectorLayer(spCanvas);
    spLayer->SetLayerColor(0x102030);
    TCopiedStrokes strokes = RandomStrokes(12);
    for (const auto& spPath : strokes.vPaths) spLayer->InsertPath(spPath);
    const TStrokeForms forms = MakeStrokeForms(strokes);
    const auto spFlat = spLayer->CreateFlatBlock();
    const CRect rc = CoveredPixels(BoundsOfPaths(strokes.vPaths)).Intersect({0, 0, 300, 200});
    const TLoadedPicture picture = ReadDibBlock(forms.spPicture, EZeroAlpha::Transparent);
    TLockedBits bits;
    ASSERT_TRUE(picture && picture->LockBits(CRect({}, rc.Size()), ELockMode::Read, bits));
    int nWrong = 0, nPaint = 0;
    for (int32_t y = 0; y < rc.Height(); ++y)
        for (int32_t x = 0; x < rc.Width(); ++x) {
            const uint8_t* p = bits.pData + std::ptrdiff_t{y} * bits.nStride + x * 4;
            const uint8_t uAlpha = spFlat->GetPixelAlpha(CPoint{x, y} + rc.TopLeft());
            nPaint += uAlpha != 0;
            nWrong += p[3] != uAlpha || (uAlpha && MakeColor(p[2], p[1], p[0]) != 0x102030u);
        }
    picture->UnlockBits();
    EXPECT_EQ(nWrong, 0);
    EXPECT_GT(nPaint, 1000);
    strokes.vPaths = {MakeEvenStroke({80, 160})};
    EXPECT_THAT(MakeStrokeForms(strokes).strSvg,
                testing::AllOf(testing::HasSubstr("width=\"133\" height=\"13\" viewBox=\"4 14 133 13\""),
                               testing::HasSubstr("<path fill=\"#302010\" d=\"M"),
                               testing::EndsWith("</svg>\n")));
    strokes.vPaths = {MakeEvenStroke({-4000, 160})};
    EXPECT_FALSE(MakeStrokeForms(strokes).spPicture) << "beyond the canvas";
}

TEST_F(StrokeClipboard, StrokesGoFromDocumentToDocumentAtTheirPlace) {
    Play([&] {
        for (const int y : {400, 800, 1200}) Layer().InsertPath(MakeEvenStroke({400, y}));
        const TStrokes vAll(Layer().GetPaths().begin(), Layer().GetPaths().end());
        EXPECT_FALSE(g_pMainFrame->IsCommandEnabled(ID_EDIT_COPY) ||
                     g_pMainFrame->IsCommandEnabled(ID_EDIT_PASTE));
        Layer().SelectPaths({vAll[0], vAll[2]});
        const TBytes vStart = Bytes();
        Command(ID_EDIT_CUT);
        EXPECT_EQ(Labels(), std::vector<std::wstring>{L"切り取り"});
        EXPECT_EQ(Layer().GetPaths().size(), 1u);
        Command(ID_EDIT_UNDO);
        EXPECT_EQ(Bytes(), vStart);
        EXPECT_TRUE(Clipboard().HasPicture()) << "for other programs and tools";
        // On a vector layer: on top, selected, one step.
        const auto spOther = OpenOther({400, 300}, true);
        Active(*spOther).InsertPath(MakeEvenStroke());
        const TBytes vEmpty = SaveToBytes(*spOther);
        Command(ID_EDIT_PASTE);
        const TStrokes vPasted = Active(*spOther).GetSelectedPaths();
        EXPECT_EQ(BytesOfAll(vPasted), BytesOfAll({vAll[0], vAll[2]}));
        EXPECT_EQ(Active(*spOther).GetPaths().back(), vPasted.back());
        const TBytes vFull = SaveToBytes(*spOther);
        Command(ID_EDIT_UNDO);
        EXPECT_EQ(SaveToBytes(*spOther), vEmpty);
        Command(ID_EDIT_REDO);
        EXPECT_EQ(SaveToBytes(*spOther), vFull);
        // Above a raster layer a new layer of the same colour.
        Layer().SetLayerColor(0x345678);
        Clipboard().SetStrokes(MakeStrokeForms({{400, 300}, 0x345678, {vAll[1]}}));
        const auto spRaster = OpenOther({400, 300}, false);
        const TBytes vRaster = SaveToBytes(*spRaster);
        Command(ID_EDIT_PASTE);
        EXPECT_EQ(Active(*spRaster).GetLayerColor(), 0x345678u);
        EXPECT_EQ(BytesOfAll(Active(*spRaster).GetSelectedPaths()), BytesOfAll({vAll[1]}));
        EXPECT_EQ(spRaster->GetHistory().GetUndoList().size(), 1u);
        EXPECT_EQ(spRaster->GetHistory().GetUndoList().front()->GetName(), L"貼り付け");
        Command(ID_EDIT_UNDO);
        EXPECT_EQ(SaveToBytes(*spRaster), vRaster);
        // Strokes that would lie beyond the canvas go to its middle, by whole pixels.
        const auto spSmall = OpenOther({60, 40}, true);
        Command(ID_EDIT_PASTE);
        const auto spPasted = Active(*spSmall).GetSelectedPath();
        ASSERT_TRUE(spPasted);
        const CPoint pt = spPasted->GetStream().GetControlPoint(1)->GetAnchor()[STATE_COMMITTED];
        EXPECT_EQ(pt, (CPoint{240, 160}));
        for (const auto& spCanvas : {spOther, spRaster, spSmall}) spCanvas->GetHistory().SetModified(false);
    });
}
