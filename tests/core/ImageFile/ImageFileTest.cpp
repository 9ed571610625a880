#include "core/ImageFile/ImageFile.h"
#include "system/pictures/ImageCodecs.h"
#include "system/pictures/QtBitmap.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/MemoryFiles.h"

namespace {

class ImageFile : public testing::Test {
protected:
    ImageFile() {
        for (int x = 0; x < 97; ++x) m_image.setPixel(x, 2, qRgba(x, 7, 200, x * 2 + 1));
        CQtBitmap bitmap(m_image);
        m_codecs.Save(L"in.png", bitmap);
    }

    QImage m_image = MakeTransparentImage({97, 3});
    CMemoryFiles m_files;
    CImageCodecs m_codecs{m_files};
};

} // namespace

TEST_F(ImageFile, APictureComesInWithItsTransparencyAndGoesOutTheSame) {
    const auto spCanvas = OpenDocument(L"in.png", m_files, m_codecs);
    EXPECT_FALSE(spCanvas->GetHistory().CanUndo()); // the file's content is nothing to be undone
    EXPECT_EQ(spCanvas->GetActiveLayer()->GetName(), L"新規ラスタレイヤー");
    ExportImage(*spCanvas, L"out.png", m_files, m_codecs);
    EXPECT_EQ(static_cast<CQtBitmap&>(*m_codecs.Load(L"out.png")).GetImage(), m_image);
    EXPECT_THROW(ExportImage(*spCanvas, L"out.xyz", m_files, m_codecs), fileopen_error);
    m_files.m_bReadOnly = true;
    EXPECT_THROW(ExportImage(*spCanvas, L"out.png", m_files, m_codecs), fileopen_error);
    EXPECT_EQ(spCanvas->GetPath(), L"in.png");
}

TEST_F(ImageFile, ProjectsAreKnownByNameAlone) {
    SaveDocument(*CreateCanvas({10, 20}), L"page.VLM", m_files);
    EXPECT_TRUE(OpenDocument(L"page.VLM", m_files, m_codecs)->GetHistory().IsSavedState({}));
    m_files.m_mapFiles[L"project.png"] = m_files.m_mapFiles[L"page.VLM"];
    EXPECT_THROW(OpenDocument(L"project.png", m_files, m_codecs), loadimage_error);
    m_files.m_mapFiles[L"picture.vlm"] = m_files.m_mapFiles[L"in.png"];
    EXPECT_THROW(OpenDocument(L"picture.vlm", m_files, m_codecs), deserialize_error);
}

TEST_F(ImageFile, AFailedSaveLeavesTheDocumentUnsaved) {
    const auto spCanvas = CreateCanvas({10, 20});
    spCanvas->GetRoot().AddLayer(CreateRasterLayer(spCanvas), -1);
    m_files.m_bReadOnly = true;
    EXPECT_THROW(SaveDocument(*spCanvas, L"page.vlm", m_files), fileopen_error);
    EXPECT_TRUE(spCanvas->GetHistory().IsModified() && spCanvas->GetPath().empty());
    EXPECT_EQ(spCanvas->GetTitle(), L"名称未設定");
}

TEST_F(ImageFile, AFileThatCannotBeReadToItsEndIsNoCorruptOne) {
    const auto spCanvas = CreateCanvas({400, 400});
    const auto spLayer = CreateRasterLayer(spCanvas);
    spLayer->GetRaster()->ForEachBlock([&](CPoint pt) { spLayer->GetRaster()->GetBlock(pt, true); });
    spCanvas->GetRoot().AddLayer(spLayer, -1);
    SaveDocument(*spCanvas, L"a/page.vlm", m_files); // more than is read at a time
    EXPECT_TRUE(spCanvas->GetPath() == L"a/page.vlm" && spCanvas->GetTitle() == L"page.vlm");
    m_files.m_mapFiles[L"page.vlm"] = m_files.m_mapFiles[L"a/page.vlm"];
    SaveDocument(*OpenDocument(L"page.vlm", m_files, m_codecs), L"page.vlm", m_files);
    EXPECT_TRUE(m_files.m_mapFiles[L"page.vlm"] == m_files.m_mapFiles[L"a/page.vlm"]) << "its title too";
    m_files.m_nReadable = 300000;
    EXPECT_THROW(OpenDocument(L"page.vlm", m_files, m_codecs), fileopen_error);
}
