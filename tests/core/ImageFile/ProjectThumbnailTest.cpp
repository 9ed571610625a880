#include "core/ImageFile/ProjectThumbnail.h"
#include "core/Base/Failure.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/MemoryFiles.h"
#include "tests/support/ProjectBytes.h"

namespace {

constexpr size_t TILE_BYTES = 96 * 96 * 4;
/// The byte of a file that says whether raster layers hold colour.
constexpr size_t COLOR_RASTER_AT = 32;

boost::shared_ptr<const TPicture> Reduce(const TBytes& vBytes, int32_t nSide) {
    CMemoryFiles files;
    files.m_mapFiles[L"a.vlm"].assign(vBytes.begin(), vBytes.end());
    return ReadThumbnail(files.Open(L"a.vlm"), L"a.vlm", nSide);
}

// How much of [n, n + 1) lies under pixel i of nTo that cover nFrom.
double Part(int32_t n, int32_t i, int32_t nFrom, int32_t nTo) {
    const double dStep = double(nFrom) / nTo;
    return std::max(0.0, std::min(n + 1.0, (i + 1) * dStep) - std::max(double(n), i * dStep));
}

// The largest difference of a channel of the picture from the exact mean of the page on white, composed as a
// whole.
double ErrorOf(const TPicture& picture, CCanvasBuffer& canvas) {
    const std::vector<uint32_t> vPage = PageOf(canvas);
    const CSize sz = canvas.GetSize();
    double dMost = 0;
    for (int32_t y = 0; y < picture.sz.cy; ++y)
        for (int32_t x = 0; x < picture.sz.cx; ++x) {
            double adSum[3] = {}, dWhole = 0;
            for (int32_t v = y * sz.cy / picture.sz.cy; v < sz.cy && Part(v, y, sz.cy, picture.sz.cy) > 0;
                 ++v)
                for (int32_t u = x * sz.cx / picture.sz.cx; u < sz.cx && Part(u, x, sz.cx, picture.sz.cx) > 0;
                     ++u) {
                    const uint32_t uPixel = vPage[static_cast<size_t>(v * sz.cx + u)];
                    const double dPart = Part(v, y, sz.cy, picture.sz.cy) * Part(u, x, sz.cx, picture.sz.cx);
                    const uint32_t uCover = (uPixel >> 24) * 1024 / 255;
                    for (int n = 0; n < 3; ++n)
                        adSum[n] += dPart * (255 - ((255 - (uPixel >> 8 * n & 255)) * uCover >> 10));
                    dWhole += dPart;
                }
            const uint8_t* p = picture.vPixels.data() + (y * picture.sz.cx + x) * 4;
            for (int n = 0; n < 3; ++n) dMost = std::max(dMost, std::abs(p[2 - n] - adSum[n] / dWhole));
        }
    return dMost;
}

} // namespace

TEST(ProjectThumbnail, IsTheWholePictureReduced) {
    std::mt19937 random(11);
    for (const auto& [sz, nSide, szSmall] : {std::tuple{CSize{1000, 700}, 128, CSize{128, 90}},
                                             {{300, 200}, 37, {37, 25}},
                                             {{150, 97}, 256, {150, 97}},
                                             {{1, 32767}, 256, {1, 256}},
                                             {{2000, 3}, 128, {128, 1}}})
        for (const bool bColor : {true, false}) {
            const auto spCanvas = CreateCanvas(sz, bColor);
            FillRandomTree(spCanvas, sz.cy > 1000 ? 3 : 14, random);
            TBytes vBytes = SaveToBytes(*spCanvas);
            for (const bool bOtherPlanes : {false, true}) {
                if (bOtherPlanes) vBytes[COLOR_RASTER_AT] ^= 1;
                const auto spPicture = Reduce(vBytes, nSide);
                EXPECT_EQ(spPicture->sz, szSmall) << sz.cx;
                EXPECT_LE(ErrorOf(*spPicture, *LoadFromBytes(vBytes)), 0.5001)
                    << sz.cx << bColor << bOtherPlanes;
            }
        }
}

TEST(ProjectThumbnail, ThereIsNoneOfADamagedFile) {
    const auto spCanvas = CreateCanvas({190, 90});
    const auto spLayer = CreateRasterLayer(spCanvas);
    spLayer->GetRaster()->GetBlock({0, 0}, true);
    spLayer->GetRaster()->GetBlock({96, 0}, true);
    spLayer->SetVisible(false); // not read, and checked all the same
    const auto spVector = CreateVectorLayer(spCanvas);
    spVector->InsertPath(MakeStroke());
    for (const TLayerPtr& sp : {TLayerPtr(spLayer), TLayerPtr(spVector)})
        spCanvas->GetRoot().AddLayer(sp, -1, false);
    const TBytes vWhole = SaveToBytes(*spCanvas);
    int nRefused = 0, nDifferent = 0;
    const auto refuses = [](auto fn) {
        try {
            fn();
        } catch (const deserialize_error&) {
            return true;
        }
        return false;
    };
    const auto compare = [&](const TBytes& vBytes) {
        const bool bRefused = refuses([&] { LoadFromBytes(vBytes); });
        nRefused += bRefused;
        nDifferent += refuses([&] { Reduce(vBytes, 8); }) != bRefused;
    };
    const size_t nTile = static_cast<size_t>(
        std::search_n(vWhole.begin(), vWhole.end(), TILE_BYTES, uint8_t{0}) - vWhole.begin());
    for (size_t i = 0; i < vWhole.size(); ++i) {
        // Inside the tiles every byte is a colour.
        if (i == nTile + 8) i += TILE_BYTES - 16;
        if (i == nTile + TILE_BYTES + 32 + 8) i += TILE_BYTES - 16;
        compare(TBytes(vWhole.begin(), vWhole.begin() + static_cast<ptrdiff_t>(i)));
        for (const uint8_t u : {1, 0x80}) {
            TBytes vBytes = vWhole;
            vBytes[i] ^= u;
            compare(vBytes);
        }
    }
    EXPECT_EQ(nDifferent, 0);
    EXPECT_GT(nRefused, 1000);
    CMemoryFiles files;
    files.m_mapFiles[L"a.vlm"].assign(vWhole.begin(), vWhole.end());
    EXPECT_THROW(ReadThumbnail(files.Open(L"none"), L"none", 8), fileopen_error);
    files.m_nReadable = vWhole.size() - 1; // the disk fails
    EXPECT_THROW(ReadThumbnail(files.Open(L"a.vlm"), L"a.vlm", 8), fileopen_error);
}

TEST(ProjectThumbnail, TakesWhatItNeedsOfALargeFile) {
    // Counts what is read, by any thread.
    struct CCounted : IFileReader {
        CCounted(const TBytes& v, std::atomic<uint64_t>& u) : vBytes(v), uRead(u) {}
        uint64_t GetSize() const override { return vBytes.size(); }
        bool Read(uint64_t uFrom, uint8_t* pTo, size_t nLength) override {
            std::copy_n(vBytes.begin() + static_cast<ptrdiff_t>(uFrom), nLength, pTo);
            uRead += nLength;
            return true;
        }
        const TBytes& vBytes;
        std::atomic<uint64_t>& uRead;
    };
    const auto spCanvas = CreateCanvas({960, 960});
    for (const bool bShown : {true, false, false}) {
        const auto spLayer = CreateRasterLayer(spCanvas);
        CRasterBuffer& raster = *spLayer->GetRaster();
        raster.ForEachBlock([&](CPoint pt) { raster.GetBlock(pt, true); });
        spLayer->SetVisible(bShown);
        spCanvas->GetRoot().AddLayer(spLayer, -1, false);
    }
    const TBytes vBytes = SaveToBytes(*spCanvas);
    std::atomic<uint64_t> uRead{0};
    ReadThumbnail(std::make_unique<CCounted>(vBytes, uRead), L"a", 8);
    EXPECT_LT(uRead, TILE_BYTES * 100 * 5 / 4) << "the tiles of the hidden layers were read too";
    // A few dozen bytes make a layer, whose flags take memory: thousands of them are not a picture.
    const auto spLarge = CreateCanvas({32767, 32767});
    TBytes vLayers = SaveToBytes(*spLarge);
    const TBytes vSet = FileOf(CreateLayerSet(spLarge)->Serialize());
    const auto grow = [&](size_t nLength, uint32_t uBy) {
        for (size_t i = nLength + 4; uBy > 0 && i-- > nLength; uBy >>= 8) {
            uBy += vLayers[i];
            vLayers[i] = static_cast<uint8_t>(uBy);
        }
    };
    for (int n = 0; n < 200; ++n) vLayers.insert(vLayers.end(), vSet.begin(), vSet.end());
    for (const size_t nLength : {8, 42, 54}) grow(nLength, static_cast<uint32_t>(200 * vSet.size()));
    grow(58, 200); // children, and the index of none
    grow(vLayers.size() - 200 * vSet.size() - 4, 200);
    EXPECT_EQ(LoadFromBytes(vLayers)->GetRoot().GetChildren().size(), 200u);
    EXPECT_THROW(Reduce(vLayers, 8), deserialize_error);
}
