// Saving, loading, a thumbnail, full backup and undo of a document of ten layers of 2000 by 2000 pixels. The
// floors are the machine's times to copy, write or read as many bytes. "peak" is the peak of memory during an
// operation beyond that in use before, as a fraction of the document's pixel bytes.
#include "bench/PeakMemory.h"
#include "core/CanvasBuffer/CanvasHistory.h"
#include "core/ImageFile/ImageFile.h"
#include "core/ImageFile/ProjectThumbnail.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "system/files/FileStore.h"
#include "system/pictures/ImageCodecs.h"

#include <QImage>

#include <benchmark/benchmark.h>

#include <boost/make_shared.hpp>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

#include <fcntl.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

constexpr int LAYERS = 10;
constexpr CSize SIDES{2000, 2000};

// Line art: rings of ink with soft edges, different on each layer; no two rows are alike.
uint32_t InkAt(int nLayer, int x, int y) {
    const int nRing = ((x - 1000) * (x - 1000) + (y - 900 - nLayer * 20) * (y - 900)) / (40 + nLayer);
    const uint32_t uAlpha = nRing % 1000 < 120 ? 255u : nRing % 1000 < 160 ? 100u : 0u;
    return uAlpha << 24 | (uAlpha ? 0x203040u + static_cast<uint32_t>(nLayer) * 0x030201u : 0u);
}

struct TDocument {
    boost::shared_ptr<CCanvasBuffer> spCanvas = CreateCanvas(SIDES);
    size_t nBytes = 0; ///< of all tiles' planes

    TDocument() {
        for (int n = 0; n < LAYERS; ++n) {
            const auto spLayer = CreateRasterLayer(spCanvas);
            CRasterBuffer& plane = *spLayer->GetRaster();
            plane.ForEachBlock([&](CPoint pt) {
                const auto spTile = plane.GetBlock(pt, true);
                const size_t nPlane = spTile->GetPlaneBytes();
                uint8_t* p = spTile->GetPixelPtr({0, 0});
                for (int y = 0; y < spTile->GetSize().cy; ++y)
                    for (int x = 0; x < spTile->GetSize().cx; ++x, ++p) {
                        const uint32_t u = InkAt(n, pt.x + x, pt.y + y);
                        for (size_t k = 0; k < 4; ++k) p[k * nPlane] = static_cast<uint8_t>(u >> (8 * k));
                    }
                nBytes += nPlane * 4;
            });
            spCanvas->GetRoot().AddLayer(spLayer, -1, false);
        }
    }
};

TDocument& Document() {
    static TDocument s_document;
    return s_document;
}

const std::string& Folder() {
    static const std::string s_strFolder = [] {
        std::string str = (fs::temp_directory_path() / "vellum-bench-XXXXXX").native();
        return std::string(mkdtemp(str.data()));
    }();
    return s_strFolder;
}

std::wstring ProjectPath() { return fs::path(Folder() + "/page.vlm").wstring(); }

// Times one operation; reports its peak memory and its throughput of the document's pixels.
template <class Operation>
void Time(benchmark::State& state, Operation operation) {
    const double nBytes = static_cast<double>(Document().nBytes);
    size_t nPeak = 0;
    for (auto _ : state) {
        const CPeakMemory peak;
        operation();
        nPeak = std::max(nPeak, peak.Get());
    }
    state.counters["peak"] = static_cast<double>(nPeak) / nBytes;
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(nBytes));
}

TBytes SavedBytes() {
    CSerializer file;
    file.WriteTop(Document().spCanvas->Serialize());
    return file.GetPayload();
}

void SaveToMemory(benchmark::State& state) {
    Time(state, [] { benchmark::DoNotOptimize(SavedBytes().data()); });
}

void LoadFromMemory(benchmark::State& state) {
    const auto spBytes = boost::make_shared<TBytes>(SavedBytes());
    Time(state, [&] {
        CDeserializer file(spBytes);
        CDeserializer top;
        file.ReadTop(top);
        const auto spCanvas = boost::make_shared<CCanvasBuffer>();
        spCanvas->Deserialize(top, L"page.vlm");
    });
}

void SaveToFile(benchmark::State& state) {
    CFileStore files;
    Time(state, [&] { SaveDocument(*Document().spCanvas, ProjectPath(), files); });
}

void LoadFromFile(benchmark::State& state) {
    CFileStore files;
    CImageCodecs codecs(files);
    SaveDocument(*Document().spCanvas, ProjectPath(), files);
    Time(state, [&] { OpenDocument(ProjectPath(), files, codecs); });
}

void Thumbnail(benchmark::State& state) {
    CFileStore files;
    SaveDocument(*Document().spCanvas, ProjectPath(), files);
    Time(state, [&] { ReadThumbnail(files.Open(ProjectPath()), ProjectPath(), 256); });
}

// The floor of a save: the same bytes, in memory, written at once and flushed.
void WriteRaw(benchmark::State& state) {
    const std::vector<char> vBytes(Document().nBytes, 7);
    const std::string strPath = Folder() + "/raw";
    Time(state, [&] {
        const int fd = open(strPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        if (write(fd, vBytes.data(), vBytes.size()) != static_cast<ssize_t>(vBytes.size()) || fsync(fd) != 0)
            state.SkipWithError("the disk is full");
        close(fd);
    });
}

void ReadRaw(benchmark::State& state) {
    const std::string strPath = Folder() + "/raw";
    Time(state, [&] {
        const std::unique_ptr<char[]> pBytes(new char[Document().nBytes]);
        const int fd = open(strPath.c_str(), O_RDONLY);
        benchmark::DoNotOptimize(read(fd, pBytes.get(), Document().nBytes));
        close(fd);
    });
}

// The same pixels as one PNG file per layer: the cost of lossless compression.
void WritePngs(const std::vector<QImage>& vLayers) {
    for (size_t n = 0; n < vLayers.size(); ++n)
        vLayers[n].save(QString::fromStdString(Folder() + "/layer" + std::to_string(n) + ".png"), "PNG");
}

std::vector<QImage> MakeImages() {
    std::vector<QImage> vLayers;
    for (int n = 0; n < LAYERS; ++n) {
        QImage& image = vLayers.emplace_back(SIDES.cx, SIDES.cy, QImage::Format_ARGB32);
        for (int y = 0; y < SIDES.cy; ++y)
            for (int x = 0; x < SIDES.cx; ++x)
                reinterpret_cast<uint32_t*>(image.scanLine(y))[x] = InkAt(n, x, y);
    }
    return vLayers;
}

void SavePngs(benchmark::State& state) {
    const std::vector<QImage> vLayers = MakeImages();
    Time(state, [&] { WritePngs(vLayers); });
}

void LoadPngs(benchmark::State& state) {
    Time(state, [] {
        std::vector<QImage> vLayers;
        for (int n = 0; n < LAYERS; ++n)
            vLayers.emplace_back(QString::fromStdString(Folder() + "/layer" + std::to_string(n) + ".png"));
    });
}

// The same pixels as an XCF file with its layers, timed by GIMP itself in one run without windows.
struct TXcfTimes {
    double dSave = 0;
    double dLoad = 0;

    TXcfTimes() {
        WritePngs(MakeImages());
        // A failing script must not leave the program waiting for input.
        const std::string strCommand = "timeout 120 gimp-console -i -d -f -b '(begin (load \"" VELLUM_SOURCE
                                       "/bench/xcf-peer.scm\") (measure \"" +
                                       Folder() + "\"))' -b '(gimp-quit 1)' >/dev/null 2>&1";
        if (std::system(strCommand.c_str()) == 0) std::ifstream(Folder() + "/xcf-times") >> dSave >> dLoad;
    }
};

const TXcfTimes& XcfTimes() {
    static const TXcfTimes s_times;
    return s_times;
}

template <double TXcfTimes::*MEMBER>
void Xcf(benchmark::State& state) {
    const TXcfTimes& times = XcfTimes();
    if (times.*MEMBER <= 0) state.SkipWithError("no GIMP");
    for (auto _ : state) state.SetIterationTime(times.*MEMBER / 1000);
}

void Backup(benchmark::State& state) {
    Time(state, [] { Document().spCanvas->CreateFullBackup(); });
}

// Five toggles of the display between colour and grey: the memory of their undo steps for an unchanged
// picture.
void Toggle(benchmark::State& state) {
    const auto spCanvas = Document().spCanvas;
    const CPeakMemory memory;
    for (int n = 0; n < 5; ++n) ChangeColorMode(spCanvas, !spCanvas->IsColor(), true);
    state.counters["MB"] = static_cast<double>(memory.Get()) / 1e6;
    Time(state, [&] { ChangeColorMode(spCanvas, !spCanvas->IsColor(), true); });
    spCanvas->GetHistory().Clear();
}

// The floor of a backup: copies every tile's bytes into new memory, and frees it.
void CopyTiles(benchmark::State& state) {
    std::vector<const uint8_t*> vTiles;
    size_t nTile = 0;
    for (const TLayerPtr& spLayer : Document().spCanvas->GetRoot().GetChildren()) {
        CRasterBuffer& plane = *static_cast<CRasterLayerBuffer&>(*spLayer).GetRaster();
        plane.ForEachBlock([&](CPoint pt) {
            vTiles.push_back(plane.GetBlock(pt, true)->GetPixelPtr({0, 0}));
            nTile = plane.GetBlock(pt, true)->GetPlaneBytes() * 4;
        });
    }
    Time(state, [&] {
        std::vector<std::unique_ptr<uint8_t[]>> vCopies;
        for (const uint8_t* p : vTiles) {
            vCopies.emplace_back(new uint8_t[nTile]);
            std::memcpy(vCopies.back().get(), p, nTile);
        }
        benchmark::DoNotOptimize(vCopies.data());
    });
}

// The same into memory that is already allocated.
void CopyBlock(benchmark::State& state) {
    const std::vector<uint8_t> vFrom(Document().nBytes, 7);
    std::vector<uint8_t> vTo(Document().nBytes);
    Time(state, [&] {
        std::memcpy(vTo.data(), vFrom.data(), vTo.size());
        benchmark::ClobberMemory();
    });
}

// Undo or redo of a stroke over a hundred tiles: swaps the plane's tiles with those of its snapshot.
void SwapStroke(benchmark::State& state) {
    const auto spLayer = CreateRasterLayer(Document().spCanvas);
    CRasterBuffer& plane = *spLayer->GetRaster();
    plane.ForEachBlockIn({0, 0, 960, 960}, [&](CPoint pt) { plane.GetBlock(pt, true)->Fill(7, 255); });
    const auto spBefore = plane.DeepCopy();
    for (auto _ : state) plane.Swap(*spBefore);
}

} // namespace

int main(int argc, char** argv) {
    const auto add = [](const char* pszName, void (*fn)(benchmark::State&)) {
        benchmark::RegisterBenchmark(pszName, fn)->Unit(benchmark::kMillisecond)->UseRealTime();
    };
    add("save/memory", SaveToMemory);
    add("save/file", SaveToFile);
    add("save/raw bytes, floor", WriteRaw);
    add("save/PNG a layer", SavePngs);
    const auto addXcf = [](const char* pszName, void (*fn)(benchmark::State&)) {
        benchmark::RegisterBenchmark(pszName, fn)
            ->Unit(benchmark::kMillisecond)
            ->UseManualTime()
            ->Iterations(1);
    };
    addXcf("save/XCF by GIMP", Xcf<&TXcfTimes::dSave>);
    add("load/memory", LoadFromMemory);
    add("load/file", LoadFromFile);
    add("load/raw bytes, floor", ReadRaw);
    add("load/PNG a layer", LoadPngs);
    addXcf("load/XCF by GIMP", Xcf<&TXcfTimes::dLoad>);
    add("load/thumbnail of the file", Thumbnail);
    add("backup/full", Backup);
    add("backup/five toggles of the display", Toggle);
    add("backup/memcpy of tiles, floor", CopyTiles);
    add("backup/memcpy in place", CopyBlock);
    add("undo/stroke over 100 tiles", SwapStroke);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    fs::remove_all(Folder());
    return 0;
}
