#include "core/Base/Failure.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/ProjectBytes.h"

namespace {

CSerializer Chunk(const char (&pszTag)[5], uint32_t uVersion,
                  const std::function<void(CSerializer&)>& fnFill) {
    CSerializer chunk;
    chunk.SetTag(MakeTag(pszTag), uVersion);
    fnFill(chunk);
    return chunk;
}

// A LAYB chunk; an active index of -1 makes it one of version 0.
CSerializer Base(int32_t nChildren, int32_t idxActive, const std::function<void(CSerializer&)>& fnChildren) {
    return Chunk("LAYB", idxActive < 0 ? 0 : 1, [&](CSerializer& base) {
        base.WriteInt32(nChildren);
        base.WriteString(L"a");
        base.WriteBool(true);
        base.WriteByte(255);
        if (idxActive >= 0) base.WriteInt32(idxActive);
        fnChildren(base);
    });
}

CSerializer Set(const CSerializer& base) {
    return Chunk("LAYS", 0, [&](CSerializer& set) { set.WriteChunk(base); });
}

const auto NOTHING = [](CSerializer&) {};

TBytes File(CSize sz, const CSerializer& root, uint32_t uMeta = 1) {
    CSerializer file;
    file.WriteChunk(Chunk("VLM1", 0, [&](CSerializer& top) {
        top.WriteChunk(Chunk("META", uMeta, [&](CSerializer& meta) {
            meta.WriteSize(sz);
            for (uint32_t u = 0; u < 2 * uMeta; ++u) meta.WriteBool(false);
        }));
        top.WriteChunk(Chunk("CPSB", 0, [&](CSerializer& body) { body.WriteChunk(root); }));
    }));
    return file.GetPayload();
}

TBytes Nested(int nLayers) {
    CSerializer base = Base(0, 0, NOTHING);
    for (int n = 0; n < nLayers; ++n)
        base = Base(1, 1, [&](CSerializer& parent) { parent.WriteChunk(Set(base)); });
    return File({10, 10}, base);
}

} // namespace

TEST(ProjectFile, IsAsItsPageShowsIt) {
    const auto spCanvas = CreateCanvas({200, 100});
    CLayerBuffer& root = spCanvas->GetRoot();
    root.setName(L"a");
    const auto spSet = CreateLayerSet(spCanvas);
    spSet->setName(L"線\U0001F58B");
    const auto spVector = CreateVectorLayer(spCanvas);
    spVector->SetLayerColor(MakeColor(1, 2, 3));
    spVector->SetVisible(false);
    spSet->AddLayer(spVector, -1);
    const auto spRaster = CreateRasterLayer(spCanvas);
    spRaster->SetOpacity(128);
    root.AddLayer(spSet, -1);
    root.AddLayer(spRaster, -1);
    root.SetActiveChild(spRaster);
    const TBytes vFile = SaveToBytes(*spCanvas);
    EXPECT_EQ(vFile, ListedBytes("A whole file"));
    const auto spBack = LoadFromBytes(vFile);
    EXPECT_EQ(SaveToBytes(*spBack), vFile);
    EXPECT_TRUE(spBack->GetPath() == L"page.vlm" && !spBack->GetHistory().IsModified());
    EXPECT_TRUE(spBack->GetActiveLayer()->GetOpacity() == 128 && spBack->GetActiveLayer()->IsVisible());
    // Every cut is refused; what follows the top chunk does not matter.
    for (size_t n = 0; n < vFile.size(); ++n)
        EXPECT_THROW(LoadFromBytes({vFile.data(), vFile.data() + n}), deserialize_error);
    TBytes vMore = vFile;
    vMore.push_back(0);
    EXPECT_NO_THROW(LoadFromBytes(vMore));
    const auto spTile = spRaster->GetRaster()->GetBlock({96, 0}, true);
    spTile->Fill(MakeColor(0x11, 0x22, 0x33), 0x44);
    const TBytes vListed = ListedBytes("A tile");
    TBytes vPlane = spRaster->GetRaster()->Serialize().GetPayload();
    ASSERT_EQ(vPlane.size(), 16 + 12 + 20 + 4 + 12 + 16 + 96 * 96 * 4u);
    vPlane.resize(vListed.size());
    EXPECT_EQ(vPlane, vListed);
}

TEST(ProjectFile, OlderFormsAreRead) {
    const auto spOld = LoadFromBytes(File({10, 20}, Base(0, -1, NOTHING), 0));
    EXPECT_TRUE(spOld->IsColor() && spOld->IsColorRaster());
    const auto spGrey = LoadFromBytes(File({10, 20}, Base(0, -1, NOTHING)));
    EXPECT_FALSE(spGrey->IsColor() || spGrey->IsColorRaster());
    const auto active = [](int32_t idxActive) {
        const auto child = [](CSerializer& root) { root.WriteChunk(Set(Base(0, -1, NOTHING))); };
        return LoadFromBytes(File({10, 20}, Base(1, idxActive, child)))->GetActiveLayer() != nullptr;
    };
    EXPECT_TRUE(active(0));
    EXPECT_FALSE(active(1) || active(-1));
    EXPECT_THROW(active(2), deserialize_error);
}

TEST(ProjectFile, OneByteTooManyInAnyChunkIsRefused) {
    const auto spCanvas = CreateCanvas({10, 10});
    spCanvas->GetRoot().AddLayer(CreateRasterLayer(spCanvas), -1);
    const auto spVector = CreateVectorLayer(spCanvas);
    spVector->InsertPath(MakeStroke());
    spVector->InsertPath(MakeRectPath(CRect(1, 1, 5, 5)));
    spCanvas->GetRoot().AddLayer(spVector, -1);
    spCanvas->GetRoot().GetChildren().front()->AddLayer(CreateLayerSet(spCanvas), -1);
    const TBytes vWhole = SaveToBytes(*spCanvas);
    // Every chunk in turn, found by its tag, grows by one byte, and with it all chunks around it.
    const auto at = [&](size_t i) { return uint32_t{vWhole[i]} << 8 | vWhole[i + 1]; };
    int nChunks = 0;
    std::vector<size_t> vAround;
    for (size_t i = 0; i + 12 <= vWhole.size(); ++i) {
        const bool bTag = std::string("VMCLRP").find(static_cast<char>(vWhole[i])) != std::string::npos &&
                          vWhole[i + 1] >= 'A' && vWhole[i + 2] >= 'A' && vWhole[i + 3] >= '1';
        if (!bTag) continue;
        const auto end = [&](size_t n) { return n + 12 + at(n + 10); };
        while (!vAround.empty() && end(vAround.back()) <= i) vAround.pop_back();
        vAround.push_back(i);
        TBytes vBytes = vWhole;
        vBytes.insert(vBytes.begin() + static_cast<ptrdiff_t>(end(i)), 0);
        for (const size_t n : vAround) {
            const uint32_t uLength = at(n + 10) + 1;
            vBytes[n + 10] = static_cast<uint8_t>(uLength >> 8);
            vBytes[n + 11] = static_cast<uint8_t>(uLength);
        }
        EXPECT_THROW(LoadFromBytes(vBytes), deserialize_error) << "chunk at " << i;
        ++nChunks;
    }
    EXPECT_EQ(nChunks, 29);
}

TEST(ProjectFile, SmallFilesCannotTakeGigabytes) {
    EXPECT_EQ(LoadFromBytes(Nested(256))->GetRoot().GetNesting(), 256);
    EXPECT_THROW(LoadFromBytes(Nested(257)), deserialize_error);
    EXPECT_THROW(LoadFromBytes(Nested(5000)), deserialize_error);
    const auto wide = [](CSize sz, int nLayers) {
        const auto children = [&](CSerializer& root) {
            for (int n = 0; n < nLayers; ++n) root.WriteChunk(Set(Base(0, -1, NOTHING)));
        };
        return LoadFromBytes(File(sz, Base(nLayers, 0, children)));
    };
    EXPECT_EQ(wide({12000, 12000}, 1000)->GetRoot().GetChildren().size(), 1000u);
    EXPECT_THROW(wide({32767, 32767}, 1000), deserialize_error);
    EXPECT_THROW(wide({32768, 1}, 0), deserialize_error);
    EXPECT_THROW(LoadFromBytes(File({10, 10}, Base(0x7FFFFFFF, 0, NOTHING))), deserialize_error);
    // A plane of its own size in a small canvas.
    const auto refuse = [](const CSerializer& layer) {
        const auto child = [&](CSerializer& root) { root.WriteChunk(layer); };
        EXPECT_THROW(LoadFromBytes(File({10, 10}, Base(1, 0, child))), deserialize_error);
    };
    const auto plane = Chunk("RASC", 0, [](CSerializer& chunk) {
        for (int n = 0; n < 2; ++n) chunk.WriteSize(n ? CSize{1, 1} : CSize{60000, 60000});
        chunk.WriteChunk(Chunk("RASB", 0, NOTHING));
    });
    refuse(Chunk("LAYR", 0, [&](CSerializer& chunk) {
        chunk.WriteChunk(Base(0, 0, NOTHING));
        chunk.WriteChunk(plane);
    }));
    refuse(Chunk("LAYX", 0, NOTHING));
}
