// Layers with seeded random content, and the picture of a canvas.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/CanvasBuffer/CanvasHistory.h"
#include "core/LayerBuffer/LayerMerge.h"
#include "core/LayerBuffer/LayerSetBuffer.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/LayerBuffer/VectorLayerBuffer.h"
#include "core/RasterBuffer/MonoRasterBuffer.h"
#include "tests/support/Paths.h"
#include "tests/support/Planes.h"

/// A canvas whose only raster layer is active.
inline boost::shared_ptr<CCanvasBuffer> MakePage(CSize sz) {
    const auto spCanvas = CreateCanvas(sz);
    const auto spLayer = CreateRasterLayer(spCanvas);
    spCanvas->GetRoot().AddLayer(spLayer, -1, false);
    spCanvas->GetRoot().SetActiveChild(spLayer);
    return spCanvas;
}

/// A filled rectangle of canvas pixels.
inline boost::shared_ptr<CPathObject> MakeRectPath(const CRect& rc) {
    const auto spPath = boost::make_shared<CClosedPathObject>();
    for (const CPoint pt :
         {CPoint{rc.left, rc.top}, {rc.right, rc.top}, {rc.right, rc.bottom}, {rc.left, rc.bottom}})
        spPath->AppendControlPoint({pt.x * 8, pt.y * 8});
    return spPath;
}

/// A raster layer of which about half the tiles exist, with random pixels in every channel.
inline boost::shared_ptr<CRasterLayerBuffer> MakeRandomLayer(const boost::shared_ptr<CCanvasBuffer>& spCanvas,
                                                             std::mt19937& random) {
    const auto spLayer = CreateRasterLayer(spCanvas);
    CRasterBuffer& raster = *spLayer->GetRaster();
    const size_t nPlanes = spCanvas->IsColorRaster() ? 4 : 2;
    raster.ForEachBlock([&](CPoint pt) {
        if (random() % 2) return;
        const auto spTile = raster.GetBlock(pt, true);
        for (size_t i = 0; i < spTile->GetPlaneBytes() * nPlanes; ++i)
            spTile->GetPixelPtr({0, 0})[i] = static_cast<uint8_t>(random());
    });
    return spLayer;
}

/// Adds `nCount` random layers of all kinds at random places of the tree, some hidden, some not opaque.
inline void FillRandomTree(const boost::shared_ptr<CCanvasBuffer>& spCanvas, int nCount,
                           std::mt19937& random) {
    std::vector<TLayerPtr> vParents{spCanvas->GetRoot().shared_from_this()};
    for (int n = 0; n < nCount; ++n) {
        TLayerPtr spLayer;
        if (random() % 4 == 0) {
            spLayer = CreateLayerSet(spCanvas);
        } else if (random() % 3 == 0) {
            const auto spVector = CreateVectorLayer(spCanvas);
            spVector->SetLayerColor(random() & 0xFFFFFF);
            for (auto nPaths = random() % 4; nPaths > 0; --nPaths)
                spVector->InsertPath(MakeRandomPath(spCanvas->GetSize(), random));
            spLayer = spVector;
        } else {
            spLayer = MakeRandomLayer(spCanvas, random);
        }
        if (random() % 4 == 0) spLayer->SetVisible(false);
        if (random() % 2 == 0) spLayer->SetOpacity(static_cast<uint8_t>(random()));
        spLayer->setName(L"layer " + std::to_wstring(n));
        vParents[random() % vParents.size()]->AddLayer(spLayer, -1, false);
        vParents.push_back(spLayer);
    }
}

/// The pixels of the page; a tile beyond its edge may hold anything.
inline std::vector<uint32_t> PageOf(CCanvasBuffer& canvas) {
    canvas.ComposeAll();
    std::vector<uint32_t> v;
    for (int32_t y = 0; y < canvas.GetSize().cy; ++y)
        for (int32_t x = 0; x < canvas.GetSize().cx; ++x) v.push_back(PixelAt(canvas.GetComposite(), {x, y}));
    return v;
}

/// All pixels of a plane in the grid's order, missing tiles as zeros.
inline std::vector<uint8_t> PixelsOf(CRasterBuffer& plane) {
    std::vector<uint8_t> v;
    const size_t nPlanes = dynamic_cast<CMonoRasterBuffer*>(&plane) ? 2 : 4;
    plane.ForEachBlock([&](CPoint pt) {
        const auto spTile = plane.GetBlockOrBlank(pt);
        const uint8_t* p = spTile->GetPixelPtr({0, 0});
        v.insert(v.end(), p, p + spTile->GetPlaneBytes() * nPlanes);
    });
    return v;
}
