#include "session/scripts/DocumentState.h"

#include "core/Base/Text.h"
#include "core/CanvasFrame/CanvasFrame.h"
#include "core/LayerBuffer/LayerSetBuffer.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/LayerBuffer/VectorLayerBuffer.h"
#include "core/PathObject/PathObjects.h"
#include "core/Platform/Bitmap.h"
#include "session/scripts/Script.h"

#include <boost/pointer_cast.hpp>
#include <nlohmann/json.hpp>

#include <cstdio>

using nlohmann::json;

namespace {

// FNV-1a, 64 bits.
constexpr uint64_t FNV_BASIS = 0xCBF29CE484222325u;
constexpr uint64_t FNV_PRIME = 0x100000001B3u;

json ToJson(CSize sz) { return {{"width", sz.cx}, {"height", sz.cy}}; }
json ToJson(CPoint pt) { return {{"x", pt.x}, {"y", pt.y}}; }

// The composite as a bitmap, locked for reading.
class CCompositeBits {
public:
    CCompositeBits(CCanvasBuffer& canvas, IImageCodecs& codecs)
        : m_session{codecs.CreateBitmap(canvas.GetSize())} {
        if (!m_session.spBitmap) throw step_failure("no memory for the document's pixels");
        canvas.Flatten()->WriteBitmap(m_session);
        if (!m_session.bOk ||
            !m_session.spBitmap->LockBits({{0, 0}, canvas.GetSize()}, ELockMode::Read, m_bits))
            throw step_failure("the document's pixels cannot be read");
    }
    ~CCompositeBits() { m_session.spBitmap->UnlockBits(); }
    CCompositeBits(const CCompositeBits&) = delete;
    CCompositeBits& operator=(const CCompositeBits&) = delete;

    const uint8_t* GetRow(int32_t y) const {
        return m_bits.pData + static_cast<ptrdiff_t>(y) * m_bits.nStride;
    }

private:
    CBitmapSession m_session;
    TLockedBits m_bits;
};

std::string DigestPixels(CCanvasBuffer& canvas, IImageCodecs& codecs) {
    const CCompositeBits bits(canvas, codecs);
    const CSize sz = canvas.GetSize();
    uint64_t uDigest = FNV_BASIS;
    for (int32_t y = 0; y < sz.cy; ++y) {
        const uint8_t* pRow = bits.GetRow(y);
        for (int32_t i = 0; i < sz.cx * 4; ++i) uDigest = (uDigest ^ pRow[i]) * FNV_PRIME;
    }
    char szDigest[17];
    std::snprintf(szDigest, sizeof szDigest, "%016llx", static_cast<unsigned long long>(uDigest));
    return szDigest;
}

const char* KindOf(const CLayerBuffer& layer) {
    if (dynamic_cast<const CRasterLayerBuffer*>(&layer)) return "raster";
    if (dynamic_cast<const CVectorLayerBuffer*>(&layer)) return "vector";
    if (dynamic_cast<const CLayerSetBuffer*>(&layer)) return "set";
    return "other";
}

json DescribeLayers(const TLayerList& lstLayers, const TLayerPtr& spActive) {
    json layers = json::array();
    for (const TLayerPtr& spLayer : lstLayers)
        layers.push_back({{"name", ToUtf8(spLayer->GetName())},
                          {"kind", KindOf(*spLayer)},
                          {"visible", spLayer->IsVisible()},
                          {"opacity", spLayer->GetOpacity()},
                          {"active", spLayer == spActive},
                          {"children", DescribeLayers(spLayer->GetChildren(), spActive)}});
    return layers;
}

// The marks of one class in their order along the path; `fnDescribe` adds their values to the place.
template <class TPoint, class Describe>
json DescribeMarks(const COpenPathStream& stream, Describe fnDescribe) {
    json marks = json::array();
    for (const auto& spMark : SortedByParameter(stream.GetMarks<TPoint>(), STATE_COMMITTED)) {
        marks.push_back({{"at", spMark->GetParameter()[STATE_COMMITTED]}});
        fnDescribe(*spMark, marks.back());
    }
    return marks;
}

// The open path that is selected on the active layer; null without one.
json DescribeStroke(const TLayerPtr& spLayer) {
    const auto pVector = dynamic_cast<const CVectorLayerBuffer*>(spLayer.get());
    const auto spPath = boost::dynamic_pointer_cast<COpenPathObject>(
        pVector ? pVector->GetSelectedPath() : boost::shared_ptr<CPathObject>());
    if (!spPath) return {};
    const COpenPathStream& stream = spPath->GetStream();
    return {{"anchors", stream.ControlPointCount()},
            {"width", stream.GetWidth()},
            {"widths", DescribeMarks<CPathWidthControlPoint>(stream,
                                                             [](const CPathWidthControlPoint& mark, json& j) {
                                                                 j["left"] = mark.GetWidth(SIDE_LEFT,
                                                                                           STATE_COMMITTED);
                                                                 j["right"] = mark.GetWidth(SIDE_RIGHT,
                                                                                            STATE_COMMITTED);
                                                             })},
            {"cuts", DescribeMarks<CPathTransControlPoint>(stream,
                                                           [](const CPathTransControlPoint& mark, json& j) {
                                                               j["angle"] = mark.GetAngle()[STATE_COMMITTED];
                                                           })},
            {"opacities",
             DescribeMarks<CPathAlphaControlPoint>(stream, [](const CPathAlphaControlPoint& mark, json& j) {
                 j["opacity"] = mark.GetAlpha()[STATE_COMMITTED];
             })}};
}

// Labels in the user's order: undoable steps from the oldest on, then redoable ones, next first.
json DescribeHistory(CHistoryStream& history) {
    json undo = json::array();
    json redo = json::array();
    for (const auto& spHistory : history.GetUndoList())
        undo.insert(undo.begin(), ToUtf8(spHistory->GetName()));
    for (const auto& spHistory : history.GetRedoList()) redo.push_back(ToUtf8(spHistory->GetName()));
    return {{"first", ToUtf8(history.GetInitialName())}, {"undo", undo}, {"redo", redo}};
}

json DescribeView(const CCanvasView& view) {
    const TViewState& state = view.GetState();
    return {{"zoom", state.uZoom},
            {"angle", state.uAngle},
            {"flipH", state.bFlipH},
            {"flipV", state.bFlipV},
            {"scroll", ToJson(view.GetScroll())},
            {"extent", ToJson(view.GetExtent())},
            {"client", ToJson(view.GetClient())}};
}

} // namespace

CCanvasFrame& GetActiveFrame() {
    const auto spFrame = g_wpActiveFrame.lock();
    if (!spFrame || !spFrame->GetWindow()) throw step_failure("no document is open");
    return *spFrame;
}

json DescribeDocument(IImageCodecs& codecs, bool bPixels) {
    json state{{"frames", g_lstCanvasFrame.size()}};
    const auto spFrame = g_wpActiveFrame.lock();
    if (!spFrame) return state;
    CCanvasBuffer& canvas = *spFrame->GetCanvas();
    state["size"] = ToJson(canvas.GetSize());
    state["color"] = canvas.IsColor();
    state["colorRaster"] = canvas.IsColorRaster();
    state["title"] = ToUtf8(canvas.GetTitle());
    state["path"] = ToUtf8(canvas.GetPath());
    state["modified"] = canvas.GetHistory().IsModified();
    state["layers"] = DescribeLayers(canvas.GetRoot().GetChildren(), canvas.GetActiveLayer());
    if (json stroke = DescribeStroke(canvas.GetActiveLayer()); !stroke.is_null())
        state["stroke"] = std::move(stroke);
    state["history"] = DescribeHistory(canvas.GetHistory());
    state["view"] = DescribeView(spFrame->GetView());
    if (bPixels) state["pixels"] = DigestPixels(canvas, codecs);
    return state;
}

const json& GetDocumentShape() {
    static const json SIZE{{"width", "number"}, {"height", "number"}};
    static const json SHAPE{
        {"frames", "number"},
        {"size", SIZE},
        {"color", "flag"},
        {"colorRaster", "flag"},
        {"title", "text"},
        {"path", "text"},
        {"modified", "flag"},
        {"layers", "layers"},
        {"stroke",
         {{"anchors", "number"},
          {"width", "number"},
          {"widths", json::array({{{"at", "number"}, {"left", "number"}, {"right", "number"}}})},
          {"cuts", json::array({{{"at", "number"}, {"angle", "number"}}})},
          {"opacities", json::array({{{"at", "number"}, {"opacity", "number"}}})}}},
        {"history", {{"first", "text"}, {"undo", json::array({"text"})}, {"redo", json::array({"text"})}}},
        {"view",
         {{"zoom", "number"},
          {"angle", "number"},
          {"flipH", "flag"},
          {"flipV", "flag"},
          {"scroll", {{"x", "number"}, {"y", "number"}}},
          {"extent", SIZE},
          {"client", SIZE}}},
        {"pixels", "text"},
    };
    return SHAPE;
}

const json& GetLayerShape() {
    static const json SHAPE{{"name", "text"},      {"kind", "text"},   {"visible", "flag"},
                            {"opacity", "number"}, {"active", "flag"}, {"children", "layers"}};
    return SHAPE;
}

json DescribePixel(CCanvasBuffer& canvas, IImageCodecs& codecs, int32_t x, int32_t y) {
    if (x >= canvas.GetSize().cx || y >= canvas.GetSize().cy)
        throw step_failure("pixel: (" + std::to_string(x) + ", " + std::to_string(y) +
                           ") lies outside the canvas");
    const CCompositeBits bits(canvas, codecs);
    const uint8_t* pPixel = bits.GetRow(y) + static_cast<ptrdiff_t>(x) * 4;
    return json::array({pPixel[2], pPixel[1], pPixel[0], pPixel[3]});
}
