// A layer's pixels as an operation would change them.
#pragma once

#include "core/ImageOperation/PixelOperation.h"
#include "core/Platform/Controls.h"
#include "core/RasterKernel/RescaleKernel.h"

#include <boost/noncopyable.hpp>

#include <array>
#include <memory>
#include <vector>

class CGDIBuffer;
class CSelectBuffer;

/// The picture that a preview works on.
struct TPreviewSource {
    boost::shared_ptr<CRasterBuffer> rstPreview; ///< the layer's plane, colour or grey
    boost::shared_ptr<CSelectBuffer> rstSelect;  ///< of the same size; null when all pixels change
    CPoint ptCentre;                             ///< the canvas pixel that stands in the middle at first
};

/// Shows a part of the picture on white paper in one of several zooms; the pointer drags the picture. Only
/// the part that is seen is reduced, changed and drawn, so the canvas's size does not matter.
class CLevelPreview : public IPanelView, boost::noncopyable {
public:
    /// Self-checks fail without a plane, or when the selection has another size.
    explicit CLevelPreview(const TPreviewSource& source);

    /// Sets the operation that the preview shows; an empty one shows the pixels as they are.
    void SetOperation(TPixelOperation fnOperation);
    /// Shows the pixels as they are for the time being.
    void ShowBefore(bool bBefore);
    /// In 48ths; the picture's pixel in the middle stays there.
    void SetZoom(uint16_t uZoom);
    uint16_t GetZoom() const { return m_uZoom; }
    void OnPointer(EMessage id, CPoint pt);
    void OnPaint(IPaintTarget& target, const TPanelPaint& paint) override;

private:
    /// The picture's rectangle in the view at the present zoom.
    CRect GetPlace(CSize szView) const;
    /// Makes the flat planes of a rectangle of the scaled picture, unless they hold it already.
    void TakeShown(const CRect& rcShown);
    void Draw(CSize szView);

    boost::shared_ptr<CRasterBuffer> m_rstPreview;
    boost::shared_ptr<CSelectBuffer> m_rstSelect;
    size_t m_nChannels = 0; ///< the plane's
    TPixelOperation m_fnOperation;
    bool m_bBefore = false;
    uint16_t m_uZoom = 48;
    double m_dCentreX, m_dCentreY; ///< the picture's point in the view's middle, in its pixels
    CPoint m_ptPointer;            ///< at the last event of a drag
    bool m_bDrag = false;
    CSize m_szView; ///< at the last paint

    std::unique_ptr<CRescaleMap> m_pMap;              ///< for the present zoom
    CRect m_rcShown;                                  ///< of the scaled picture; what the planes hold
    std::array<std::vector<uint8_t>, 5> m_bufPreview; ///< by channel; the last one is the selection
    std::array<std::vector<uint8_t>, COLOR_CHANNELS> m_bufWork;
    std::unique_ptr<CGDIBuffer> m_pPicture; ///< the view; null while it is out of date
};
