// Long work that the user cancels at any of its steps leaves documents and files as they were.
#include "core/ImageFile/ImageFile.h"
#include "system/pictures/ImageCodecs.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/MemoryFiles.h"
#include "tests/support/ProjectBytes.h"
#include "tests/support/TestProgress.h"

namespace {

class CancelledWork : public testing::Test {
protected:
    CancelledWork() {
        std::mt19937 random(5);
        for (int n = 0; n < 2; ++n) m_spCanvas->GetRoot().AddLayer(MakeRandomLayer(m_spCanvas, random), -1);
        m_spCanvas->GetRoot().AddLayer(MakeRandomLayer(m_spCanvas, random), -1);
        m_spCanvas->SelectLayer(m_spCanvas->GetRoot().GetChildren().front());
    }
    const TLayerPtr& GetLayer(int idx) {
        return *std::next(m_spCanvas->GetRoot().GetChildren().begin(), idx);
    }
    // Cancels the work at its first call, at later ones farther and farther apart, until it comes to its end.
    void ExpectNothingLost(const char* pszWork, const std::function<void(IProgress&)>& fnWork) {
        const auto state = [&] {
            return std::tuple(SaveToBytes(*m_spCanvas), m_spCanvas->GetPath(), m_files.m_mapFiles,
                              m_spCanvas->GetHistory().GetChangeCount(),
                              m_spCanvas->GetHistory().IsModified());
        };
        const auto before = state();
        for (size_t nAt = 0;; nAt += 1 + nAt / 8) {
            CCountedProgress progress(nAt);
            try {
                fnWork(progress);
                EXPECT_GT(nAt, 3u) << pszWork << ": hardly a place to cancel it";
                for (const auto& [uSteps, uDone] : progress.vParts)
                    EXPECT_TRUE(uSteps == 0 || uSteps == uDone)
                        << pszWork << ": " << uDone << " of " << uSteps;
                return;
            } catch (const cancelled_error&) {
                ASSERT_TRUE(state() == before) << pszWork << " cancelled at " << nAt;
            }
        }
    }

    boost::shared_ptr<CCanvasBuffer> m_spCanvas = CreateCanvas({300, 200});
    CMemoryFiles m_files;
    CImageCodecs m_codecs{m_files};
};

} // namespace

TEST_F(CancelledWork, SavingAndExportingKeepTheOldFile) {
    for (const wchar_t* psz : {L"a.vlm", L"a.png", L"a.jpg", L"a.gif", L"a.tif", L"a.bmp", L"a.psd"})
        m_files.m_mapFiles[psz] = "old";
    for (const wchar_t* psz : {L"a.png", L"a.jpg", L"a.gif", L"a.tif", L"a.bmp", L"a.psd"})
        ExpectNothingLost(ToUtf8(psz).c_str(), [&](IProgress& progress) {
            m_spCanvas->GetRoot().GetPicture().MarkAllDirty(); // or only the first time would compose
            ExportImage(*m_spCanvas, psz, m_files, m_codecs, {}, progress);
        });
    ExpectNothingLost("save",
                      [&](IProgress& progress) { SaveDocument(*m_spCanvas, L"a.vlm", m_files, progress); });
    EXPECT_EQ(m_spCanvas->GetPath(), L"a.vlm");
}

TEST_F(CancelledWork, OpeningGivesNoDocument) {
    SaveDocument(*m_spCanvas, L"a.vlm", m_files);
    for (const wchar_t* psz : {L"a.png", L"a.jpg", L"a.gif", L"a.tif", L"a.bmp"})
        ExportImage(*m_spCanvas, psz, m_files, m_codecs);
    for (const wchar_t* psz : {L"a.vlm", L"a.png", L"a.jpg", L"a.gif", L"a.tif", L"a.bmp"})
        ExpectNothingLost(ToUtf8(psz).c_str(), [&](IProgress& progress) {
            EXPECT_EQ(OpenDocument(psz, m_files, m_codecs, progress)->GetSize(), m_spCanvas->GetSize());
        });
}

TEST_F(CancelledWork, LayersStayAsTheyWere) {
    ExpectNothingLost("grey",
                      [&](IProgress& progress) { ChangeColorMode(m_spCanvas, false, false, progress); });
    ExpectNothingLost("merge", [&](IProgress& progress) {
        MergeLayers(m_spCanvas->GetRoot().shared_from_this(), GetLayer(0), GetLayer(1), progress);
    });
    m_spCanvas->GetRoot().MoveLayer(GetLayer(1), GetLayer(0), -1);
    ExpectNothingLost("rasterize", [&](IProgress& progress) {
        RasterizeLayer(m_spCanvas->GetRoot().shared_from_this(), GetLayer(0), progress);
    });
}
