// Writes the seed corpus of the project file reader into a folder.
#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/LayerBuffer/LayerSetBuffer.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/LayerBuffer/VectorLayerBuffer.h"
#include "tests/support/Paths.h"

#include <filesystem>
#include <fstream>
#include <iostream>

namespace {

TLayerPtr MakeRaster(const boost::shared_ptr<CCanvasBuffer>& spCanvas, CPoint pt) {
    const auto spLayer = CreateRasterLayer(spCanvas);
    const auto spTile = spLayer->GetRaster()->GetBlock(pt, true);
    for (size_t i = 0; i < spTile->GetPlaneBytes(); ++i)
        spTile->GetPixelPtr({0, 0})[i] = static_cast<uint8_t>(i / 7);
    spLayer->SetOpacity(200);
    return spLayer;
}

boost::shared_ptr<CCanvasBuffer> MakeTree(bool bColor, bool bTiles) {
    const auto spCanvas = CreateCanvas({150, 97}, bColor);
    const auto spSet = CreateLayerSet(spCanvas);
    spSet->setName(L"線\U0001F58B" + std::wstring(1, static_cast<wchar_t>(0xD800)));
    const auto spVector = CreateVectorLayer(spCanvas);
    spVector->SetLayerColor(0x0000FF);
    std::mt19937 random(bColor);
    const auto spStroke = MakeStroke();
    for (const uint32_t t : {0x4000u, 0x18000u})
        spStroke->GetStream().AddAlphaPoint(t)->SetAlpha(CDualValue<uint32_t>(t >> 9));
    spStroke->Update();
    spVector->InsertPath(spStroke);
    for (int n = 0; n < 6; ++n) spVector->InsertPath(MakeRandomPath({150, 97}, random));
    spSet->AddLayer(spVector, -1, false);
    spSet->SetActiveChild(spVector);
    const TLayerPtr spRaster = bTiles ? MakeRaster(spCanvas, {96, 0}) : CreateRasterLayer(spCanvas);
    spRaster->AddLayer(CreateRasterLayer(spCanvas), -1, false);
    spSet->AddLayer(spRaster, -1, false);
    spCanvas->GetRoot().AddLayer(spSet, -1, false);
    spCanvas->GetRoot().SetActiveChild(spSet);
    return spCanvas;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: " << argv[0] << " FOLDER\n";
        return 2;
    }
    int nSeeds = 0;
    const auto write = [&](const CSerializer& file) {
        const TBytes vBytes = file.GetPayload();
        std::ofstream out(std::filesystem::path(argv[1]) / ("seed" + std::to_string(nSeeds++)),
                          std::ios::binary);
        out.write(reinterpret_cast<const char*>(vBytes.data()), static_cast<std::streamsize>(vBytes.size()));
        return out.good();
    };
    bool bOk = true;
    for (const bool bTiles : {false, true})
        for (const bool bColor : {false, true}) {
            const auto spCanvas = MakeTree(bColor, bTiles);
            CSerializer file;
            file.WriteTop(spCanvas->Serialize());
            bOk = write(file) && bOk;
        }
    // The oldest format: neither colour modes nor an active child.
    CSerializer meta, root, body, top, file;
    meta.SetTag(MakeTag("META"), 0);
    meta.WriteSize({10, 10});
    root.SetTag(MakeTag("LAYB"), 0);
    root.WriteInt32(0);
    root.WriteString(L"a");
    root.WriteBool(true);
    root.WriteByte(255);
    body.SetTag(MakeTag("CPSB"), 0);
    body.WriteChunk(root);
    top.SetTag(MakeTag("VLM1"), 0);
    top.WriteChunk(meta);
    top.WriteChunk(body);
    file.WriteChunk(top);
    return write(file) && bOk ? 0 : 1;
}
