// Long work that the user cancels at any of its steps leaves documents and files as they were.
#include "core/ImageFile/ImageFile.h"
#include "core/ImageOperation/PixelOperation.h"
#include "core/ImageOperation/RescaleCanvas.h"
#include "core/RasterMove/SelectionCommands.h"
#include "system/pictures/ImageCodecs.h"
#include "tests/support/ForeignLeaks.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/MemoryFiles.h"
#include "tests/support/ProjectBytes.h"
#include "tests/support/TestProgress.h"

namespace {

// Qt's writer of PNG files keeps its table of rows when its device fails.
struct CLeakingCodecs : CImageCodecs {
    using CImageCodecs::CImageCodecs;
    CFileOutcome Save(const std::wstring& strPath, IBitmap& bitmap, const TPictureEncoding& encoding,
                      IProgress& progress) override {
        if (!strPath.ends_with(L".png")) return CImageCodecs::Save(strPath, bitmap, encoding, progress);
        const CForeignLeaks leaks;
        return CImageCodecs::Save(strPath, bitmap, encoding, progress);
    }
    TEncodedPicture EncodePng(IBitmap& bitmap, IProgress& progress) override {
        const CForeignLeaks leaks;
        return CImageCodecs::EncodePng(bitmap, progress);
    }
};

class CancelledWork : public testing::Test {
protected:
    CancelledWork() {
        std::mt19937 random(5);
        for (int n = 0; n < 3; ++n) Root().AddLayer(MakeRandomLayer(m_spCanvas, random), -1);
        const auto spVector = CreateVectorLayer(m_spCanvas);
        for (int n = 0; n < 3; ++n) spVector->InsertPath(MakeRandomPath(m_spCanvas->GetSize(), random));
        Root().AddLayer(spVector, -1);
        m_spCanvas->SelectLayer(GetLayer(0));
    }
    CLayerBuffer& Root() { return m_spCanvas->GetRoot(); }
    TLayerPtr GetLayer(int idx) { return *std::next(Root().GetChildren().begin(), idx); }
    // Cancels the work at its first call, at later ones farther and farther apart, until it comes to its end.
    void ExpectNothingLost(const std::string& strWork, const std::function<void(IProgress&)>& fnWork) {
        const auto state = [&] {
            return std::tuple(SaveToBytes(*m_spCanvas), m_spCanvas->GetPath(), m_files.m_mapFiles,
                              m_spCanvas->GetHistory().GetChangeCount(), m_spCanvas->GetSize(),
                              m_spCanvas->GetPlace(), m_spCanvas->GetSelect());
        };
        const auto before = state();
        for (size_t nAt = 0;; nAt += 1 + nAt / 8) {
            CCountedProgress progress(nAt);
            try {
                fnWork(progress);
                EXPECT_GT(nAt, 3u) << strWork << ": hardly a place to cancel it";
                for (const auto& [uSteps, uDone] : progress.vParts)
                    EXPECT_TRUE(uSteps == 0 || uSteps == uDone) << strWork << uDone << " of " << uSteps;
                return;
            } catch (const cancelled_error&) {
                ASSERT_TRUE(state() == before) << strWork << " cancelled at " << nAt;
            }
        }
    }

    boost::shared_ptr<CCanvasBuffer> m_spCanvas = CreateCanvas({300, 200});
    CMemoryFiles m_files;
    CLeakingCodecs m_codecs{m_files};
};

} // namespace

TEST_F(CancelledWork, FilesStayAsTheyWereAndNoDocumentOpens) {
    for (const std::string strKind : {"png", "jpg", "gif", "tif", "bmp", "psd", "svg", "vlm"}) {
        const std::wstring strPath = L"a." + FromUtf8(strKind);
        m_files.m_mapFiles[strPath] = "old";
        ExpectNothingLost("write " + strKind, [&](IProgress& progress) {
            Root().GetPicture().MarkAllDirty(); // or only the first time would compose
            if (IsProjectFile(strPath)) return SaveDocument(*m_spCanvas, strPath, m_files, progress);
            ExportImage(*m_spCanvas, strPath, m_files, m_codecs, {}, progress);
        });
        if (strKind != "psd" && strKind != "svg")
            ExpectNothingLost("read " + strKind, [&](IProgress& progress) {
                EXPECT_TRUE(OpenDocument(strPath, m_files, m_codecs, progress));
            });
    }
}

TEST_F(CancelledWork, TheCanvasKeepsItsSize) {
    SelectAll(m_spCanvas);
    ExpectNothingLost("margins", [&](IProgress& progress) {
        ResizeCanvas(m_spCanvas, {400, 250}, ShiftChange({50, 20}), L"画像サイズ変更", progress);
    });
    ExpectNothingLost("resolution", [&](IProgress& progress) {
        RescaleCanvas(m_spCanvas, {150, 333}, ERescaleMode::Bicubic, progress);
    });
}

TEST_F(CancelledWork, LayersStayAsTheyWere) {
    ExpectNothingLost("grey",
                      [&](IProgress& progress) { ChangeColorMode(m_spCanvas, false, false, progress); });
    const TLayerPtr spRoot = Root().shared_from_this();
    ExpectNothingLost("merge",
                      [&](IProgress& progress) { MergeLayers(spRoot, GetLayer(0), GetLayer(1), progress); });
    spRoot->MoveLayer(GetLayer(1), GetLayer(0), -1);
    ExpectNothingLost("rasterize",
                      [&](IProgress& progress) { RasterizeLayer(spRoot, GetLayer(0), progress); });
    const auto spLayer = boost::dynamic_pointer_cast<CRasterLayerBuffer>(GetLayer(0));
    ExpectNothingLost("levels", [&](IProgress& progress) {
        ChangePixels(spLayer, LevelOperation(MakeLevelTable({100, 101, 1}), 15), L"レベル補正", progress);
    });
}
