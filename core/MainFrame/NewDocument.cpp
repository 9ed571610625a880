#include "core/MainFrame/NewDocument.h"

#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/Commands/CommandIds.h"
#include "core/IniConfig/IniConfig.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"

#include <boost/make_shared.hpp>

namespace {

constexpr wchar_t SECTION[] = L"NewDocument";

bool IsSide(int32_t n) { return n >= 1 && n <= MAX_CANVAS_SIDE; }

} // namespace

std::optional<TNewDocument> FindNewDocument(int nCommand, CIniConfig& config) {
    switch (nCommand) {
    case ID_NEW_A4_350: // 210 by 297 mm
        return TNewDocument{{2894, 4093}};
    case ID_NEW_A4_600:
        return TNewDocument{{4961, 7016}};
    case ID_NEW_FULL_HD:
        return TNewDocument{{1920, 1080}};
    case ID_NEW_LAST:
        break;
    default:
        return std::nullopt;
    }
    const auto spSection = config.GetSection(SECTION);
    const TNewDocument document{{spSection->GetInt(L"Width", 0), spSection->GetInt(L"Height", 0)},
                                spSection->GetInt(L"Color", 1) != 0,
                                spSection->GetInt(L"Light", 0) != 0};
    if (!IsSide(document.sz.cx) || !IsSide(document.sz.cy)) return std::nullopt;
    return document;
}

void KeepNewDocument(const TNewDocument& document, CIniConfig& config) {
    config.GetSection(SECTION)->SetInts({{L"Width", document.sz.cx},
                                         {L"Height", document.sz.cy},
                                         {L"Color", document.bColor},
                                         {L"Light", document.bLight}});
}

boost::shared_ptr<CCanvasBuffer> MakeDocument(const TNewDocument& document) {
    const auto spCanvas = boost::make_shared<CCanvasBuffer>();
    spCanvas->SetColorMode(document.bColor && !document.bLight, document.bColor);
    spCanvas->Create(document.sz);
    const auto spLayer = CreateRasterLayer(spCanvas);
    spLayer->setName(L"新規ラスタレイヤー");
    spCanvas->GetRoot().AddLayer(spLayer, -1, false);
    spCanvas->GetRoot().SetActiveChild(spLayer);
    return spCanvas;
}
