#include "core/ImageFile/SvgLayers.h"

#include "core/Base/Failure.h"
#include "core/ImageFile/SvgImage.h"
#include "core/ImageFile/SvgShape.h"
#include "core/ImageFile/SvgText.h"
#include "core/LayerBuffer/VectorLayerBuffer.h"

#include <utility>

namespace {

constexpr TColor WHITE = 0xFFFFFF;
constexpr char HEAD[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                        "<svg xmlns=\"http://www.w3.org/2000/svg\"";
constexpr char TAIL[] = "</svg>\n";

std::string SizeOf(CSize sz) {
    return " width=\"" + std::to_string(sz.cx) + "\" height=\"" + std::to_string(sz.cy) + '"';
}

std::string ViewBoxOf(const CRect& rc) {
    return " viewBox=\"" + std::to_string(rc.left) + ' ' + std::to_string(rc.top) + ' ' +
           std::to_string(rc.Width()) + ' ' + std::to_string(rc.Height()) + '"';
}

std::string FillOf(TColor color) {
    std::string strFill = " fill=\"";
    AppendColor(strFill, color);
    return strFill + '"';
}

// The attribute in thousandths, unless it would say opaque.
void AppendOpacity(std::string& strText, uint32_t uOpacity) {
    if (uOpacity == 255) return;
    strText += " opacity=\"";
    AppendThousandths(strText, (uOpacity * 1000 + 127) / 255);
    strText += '"';
}

// The format has one opacity for a shape: the mean. The group keeps elements that overlap even.
void AppendPath(std::string& strText, const CPathObject& path, const std::string& strFill, CSize szCanvas) {
    const auto spOpacity = path.GetStream().GetOpacity(STATE_COMMITTED);
    const uint32_t uOpacity = spOpacity ? spOpacity->GetMean() : 255;
    if (uOpacity != 255) {
        strText += "<g";
        AppendOpacity(strText, uOpacity);
        strText += ">\n";
    }
    for (const TSvgShape& shape : GroupOutlines(path.GetStream().GetShape(STATE_COMMITTED), szCanvas)) {
        strText += "<path" + strFill + " d=\"";
        for (const TPolyBezier& vCurve : shape) AppendCurve(strText, vCurve);
        strText += "\"/>\n";
    }
    if (uOpacity != 255) strText += "</g>\n";
}

class CSvgWriter {
public:
    CSvgWriter(CSize szCanvas, const std::wstring& strPath, IImageCodecs& codecs, IProgress& progress)
        : m_szCanvas(szCanvas), m_strPath(strPath), m_codecs(codecs), m_progress(progress) {}

    std::string Write(const CLayerBuffer& root) {
        m_strSize = SizeOf(m_szCanvas);
        m_strText = HEAD +
                    std::string(" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
                                "xmlns:inkscape=\"http://www.inkscape.org/namespaces/inkscape\"") +
                    m_strSize + ViewBoxOf({{}, m_szCanvas}) + ">\n";
        WriteChildren(root);
        m_strText += TAIL;
        return std::move(m_strText);
    }

private:
    void WriteChildren(const CLayerBuffer& layer) {
        for (const TLayerPtr& spChild : layer.GetChildren()) WriteLayer(*spChild);
    }
    void WriteLayer(CLayerBuffer& layer) {
        const std::string strNumber = std::to_string(++m_nLayers);
        m_strText += "<g id=\"layer" + strNumber + "\" inkscape:groupmode=\"layer\" inkscape:label=\"";
        AppendAttribute(m_strText, layer.GetName());
        m_strText += '"';
        if (!layer.IsPassThrough()) AppendOpacity(m_strText, layer.GetOpacity());
        if (!layer.IsVisible()) m_strText += " style=\"display:none\"";
        m_strText += ">\n";
        if (layer.IsPassThrough())
            WriteChildren(layer);
        else if (layer.GetChildren().empty())
            WriteOwn(layer, ESvgPart::Content);
        else
            WriteClipped(layer, "shape" + strNumber);
        m_strText += "</g>\n";
    }
    // Clipped children add colour but no coverage: they lie on the layer's colours alone, and the layer's
    // coverage masks both.
    void WriteClipped(CLayerBuffer& layer, const std::string& strMask) {
        m_strText +=
            "<mask id=\"" + strMask + "\" maskUnits=\"userSpaceOnUse\" x=\"0\" y=\"0\"" + m_strSize + ">\n";
        WriteOwn(layer, ESvgPart::Mask);
        m_strText += "</mask>\n<g mask=\"url(#" + strMask + ")\">\n";
        WriteOwn(layer, ESvgPart::Ground);
        WriteChildren(layer);
        m_strText += "</g>\n";
    }
    void WriteOwn(CLayerBuffer& layer, ESvgPart part) {
        const auto* pVector = dynamic_cast<const CVectorLayerBuffer*>(&layer);
        if (!pVector) return WriteImage(layer, part);
        const std::string strFill = FillOf(part == ESvgPart::Mask ? WHITE : GetShownColor(*pVector));
        if (part == ESvgPart::Ground)
            m_strText += "<rect" + m_strSize + strFill + "/>\n";
        else
            WritePaths(*pVector, strFill);
    }
    void WritePaths(const CVectorLayerBuffer& layer, const std::string& strFill) {
        m_progress.Begin(L"レイヤーをまとめています", layer.GetPaths().size());
        for (const auto& spPath : layer.GetPaths()) {
            AppendPath(m_strText, *spPath, strFill, m_szCanvas);
            m_progress.Advance();
        }
    }
    void WriteImage(CLayerBuffer& layer, ESvgPart part) {
        const auto [rc, png] = MakeSvgImage(layer, part, m_codecs, m_progress);
        if (rc.IsEmpty()) return;
        if (!png) throw fileopen_error(m_strPath, png.failure);
        m_strText += "<image x=\"" + std::to_string(rc.left) + "\" y=\"" + std::to_string(rc.top) +
                     "\" width=\"" + std::to_string(rc.Width()) + "\" height=\"" +
                     std::to_string(rc.Height()) +
                     "\" preserveAspectRatio=\"none\" image-rendering=\"optimizeSpeed\" "
                     "xlink:href=\"data:image/png;base64,";
        AppendBase64(m_strText, *png);
        m_strText += "\"/>\n";
    }

    const CSize m_szCanvas;
    const std::wstring& m_strPath;
    IImageCodecs& m_codecs;
    IProgress& m_progress;
    std::string m_strSize; ///< attributes of what covers the canvas
    std::string m_strText;
    int m_nLayers = 0;
};

} // namespace

std::string WriteSvg(CCanvasBuffer& canvas, const std::wstring& strPath, IImageCodecs& codecs,
                     IProgress& progress) {
    return CSvgWriter(canvas.GetSize(), strPath, codecs, progress).Write(canvas.GetRoot());
}

std::string WritePathsSvg(const CVectorLayerBuffer::TPaths& vPaths, TColor color, CSize szCanvas) {
    CRect rc;
    for (const auto& spPath : vPaths) rc = rc.Union(CoveredPixels(spPath->RectIncludingPath()));
    std::string strText = HEAD + SizeOf(rc.Size()) + ViewBoxOf(rc) + ">\n";
    for (const auto& spPath : vPaths) AppendPath(strText, *spPath, FillOf(color), szCanvas);
    return strText + TAIL;
}

TColor GetShownColor(const CVectorLayerBuffer& layer) {
    const TColor color = layer.GetLayerColor();
    if (layer.GetCanvas()->IsColorPicture()) return color;
    const uint8_t uGrey = GreyOf(RedOf(color), GreenOf(color), BlueOf(color));
    return MakeColor(uGrey, uGrey, uGrey);
}
