#include "core/ImageFile/ImageFile.h"
#include "core/Base/Failure.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "tests/support/MemoryBitmap.h"
#include "tests/support/MemoryFiles.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

namespace {

// Codecs that know one picture, "in.png", and keep what is saved.
class CFakeCodecs : public IImageCodecs {
public:
    uintptr_t Startup() override { return 1; }
    void Shutdown(uintptr_t) override {}
    boost::shared_ptr<IBitmap> CreateBitmap(CSize sz) override {
        return boost::make_shared<CMemoryBitmap>(sz);
    }
    boost::shared_ptr<IBitmap> Load(const std::wstring& strPath) override {
        return strPath == L"in.png" ? m_spIn : boost::shared_ptr<IBitmap>();
    }
    boost::shared_ptr<IBitmap> LoadResource(std::string_view) override { return {}; }
    bool Save(const std::wstring&, IBitmap& bitmap) override {
        m_vSaved = static_cast<CMemoryBitmap&>(bitmap).m_vBytes;
        return !m_bDiskFull;
    }
    bool CanSave(const std::wstring& strPath) override { return strPath.ends_with(L".png"); }
    std::string EncodeCodePage932(std::wstring_view, size_t) override { return {}; }

    boost::shared_ptr<CMemoryBitmap> m_spIn = boost::make_shared<CMemoryBitmap>(CSize{97, 3});
    std::vector<uint8_t> m_vSaved;
    bool m_bDiskFull = false;
};

class ImageFile : public testing::Test {
protected:
    ImageFile() {
        for (int x = 0; x < 97; ++x)
            m_codecs.m_spIn->SetPixel(x, 2, MakeColor(static_cast<uint8_t>(x), 7, 200),
                                      static_cast<uint8_t>(x * 2 + 1));
    }

    CFakeCodecs m_codecs;
    CMemoryFiles m_files;
};

} // namespace

TEST_F(ImageFile, APictureComesInWithItsTransparencyAndGoesOutTheSame) {
    const auto spCanvas = OpenDocument(L"in.png", m_files, m_codecs);
    EXPECT_EQ(spCanvas->GetSize(), (CSize{97, 3}));
    EXPECT_EQ(spCanvas->GetPath(), L"in.png");
    EXPECT_FALSE(spCanvas->GetHistory().CanUndo()); // the file's content is nothing to be undone
    EXPECT_EQ(spCanvas->GetActiveLayer()->GetName(), L"新規ラスタレイヤー");
    ExportImage(*spCanvas, L"out.png", m_files, m_codecs);
    EXPECT_EQ(m_codecs.m_vSaved, m_codecs.m_spIn->m_vBytes);
    EXPECT_THROW(ExportImage(*spCanvas, L"out.xyz", m_files, m_codecs), fileopen_error);
    m_codecs.m_bDiskFull = true;
    EXPECT_THROW(ExportImage(*spCanvas, L"out.png", m_files, m_codecs), fileopen_error);
    EXPECT_EQ(spCanvas->GetPath(), L"in.png");
}

TEST_F(ImageFile, ProjectsAreKnownByNameAlone) {
    const auto spCanvas = CreateCanvas({10, 20});
    spCanvas->GetRoot().AddLayer(CreateRasterLayer(spCanvas), -1);
    SaveDocument(*spCanvas, L"page.VLM", m_files);
    EXPECT_FALSE(spCanvas->GetHistory().IsModified());
    const auto spBack = OpenDocument(L"page.VLM", m_files, m_codecs);
    EXPECT_EQ(spBack->GetSize(), (CSize{10, 20}));
    EXPECT_EQ(spBack->GetRoot().GetChildren().size(), 1u);
    m_files.m_mapFiles[L"garbage.vlm"] = "no project";
    EXPECT_THROW(OpenDocument(L"garbage.vlm", m_files, m_codecs), deserialize_error);
    EXPECT_THROW(OpenDocument(L"missing.vlm", m_files, m_codecs), fileopen_error);
    m_files.m_mapFiles[L"project.png"] = m_files.m_mapFiles[L"page.VLM"];
    EXPECT_THROW(OpenDocument(L"project.png", m_files, m_codecs), loadimage_error);
}

TEST_F(ImageFile, AFailedSaveLeavesTheDocumentUnsaved) {
    const auto spCanvas = CreateCanvas({10, 20});
    spCanvas->GetRoot().AddLayer(CreateRasterLayer(spCanvas), -1);
    m_files.m_bReadOnly = true;
    try {
        SaveDocument(*spCanvas, L"page.vlm", m_files);
        FAIL();
    } catch (const fileopen_error& e) {
        EXPECT_EQ(e.message, L"page.vlm");
    }
    m_files.m_bReadOnly = false;
    TLayerPtr spParent = spCanvas->GetRoot().GetChildren().front();
    for (int n = 0; n < MAX_LAYER_NESTING; ++n) {
        const TLayerPtr spChild = CreateRasterLayer(spCanvas);
        spParent->AddLayer(spChild, -1, false);
        spParent = spChild;
    }
    EXPECT_THROW(SaveDocument(*spCanvas, L"page.vlm", m_files), internal_error)
        << "could not be opened again";
    EXPECT_TRUE(spCanvas->GetHistory().IsModified() && m_files.m_mapFiles.empty());
}

TEST_F(ImageFile, AFileThatCannotBeReadToItsEndIsNoCorruptOne) {
    const auto spCanvas = CreateCanvas({400, 400});
    const auto spLayer = CreateRasterLayer(spCanvas);
    spLayer->GetRaster()->ForEachBlock([&](CPoint pt) { spLayer->GetRaster()->GetBlock(pt, true); });
    spCanvas->GetRoot().AddLayer(spLayer, -1);
    SaveDocument(*spCanvas, L"page.vlm", m_files); // more than is read at a time
    for (const wchar_t* psz : {L"page.vlm", L"again.vlm"})
        SaveDocument(*OpenDocument(L"page.vlm", m_files, m_codecs), psz, m_files);
    EXPECT_TRUE(m_files.m_mapFiles[L"again.vlm"] == m_files.m_mapFiles[L"page.vlm"]);
    m_files.m_nReadable = 300000;
    EXPECT_THROW(OpenDocument(L"page.vlm", m_files, m_codecs), fileopen_error);
}
