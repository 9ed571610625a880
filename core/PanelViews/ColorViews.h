// The custom-painted views of the colour panel.
#pragma once

#include "core/GDIBuffer/GDIBuffer.h"
#include "core/PanelViews/HsvColor.h"
#include "core/Platform/Panel.h"

#include <boost/noncopyable.hpp>

#include <memory>
#include <optional>
#include <vector>

/// A view that redraws its whole picture at each paint.
class CPaintedView : public IPanelView, boost::noncopyable {
public:
    void OnPaint(IPaintTarget& target, const TPanelPaint& paint) override;

protected:
    virtual void Draw(CGDIBuffer& buffer, const TPanelPaint& paint) = 0;
    /// The size of the last paint; empty before it.
    CSize GetSize() const { return m_size; }

private:
    CSize m_size;
};

/// A ring of hues around a square of saturation (to the right) and value (upwards).
class CColorCircleView : public CPaintedView {
public:
    THsv m_hsv;

    /// Handles the pointer: the part that was pressed keeps the drag until the button is released. True
    /// when the colour changed.
    bool OnPointer(EMessage id, CPoint pt);
    /// Arrow keys move within the square; true when the colour changed.
    bool OnKey(int nKey);

protected:
    void Draw(CGDIBuffer& buffer, const TPanelPaint& paint) override;

private:
    enum class EPart { None, Ring, Square };
    struct TGeometry {
        double x, y;                ///< the middle
        double dOuter, dInner;      ///< of the ring
        int32_t nLeft, nTop, nSide; ///< the square
    };
    static TGeometry Measure(CSize sz);
    static void DrawRing(CGDIBuffer& buffer, const TGeometry& geometry);
    static void DrawSquare(CGDIBuffer& buffer, const TGeometry& geometry, int nHue);

    EPart m_part = EPart::None;
    // Cached, since ring and square stay the same while a colour of one hue is chosen.
    std::unique_ptr<CGDIBuffer> m_pGround;
    THsv m_hsvGround;
    TColor m_clrGround = 0;
};

/// Drawing and background colour as two overlapping boxes.
class CTwoColorBoxView : public CPaintedView {
public:
    TColor m_clrBrush = 0;
    TColor m_clrBack = 0;

protected:
    void Draw(CGDIBuffer& buffer, const TPanelPaint& paint) override;
};

/// One colour in a frame, or a struck out frame without a colour.
class CSwatchView : public CPaintedView {
public:
    std::optional<TColor> m_color;

protected:
    void Draw(CGDIBuffer& buffer, const TPanelPaint& paint) override;
};

/// A row of recently used colours.
class CColorListView : public CPaintedView {
public:
    static constexpr int COLUMNS = 12;
    std::vector<TColor> m_vColors;

    /// The colour at a position, -1 for none.
    int FindAt(CPoint pt) const;
    int m_nSelected = 0; ///< the keyboard's selection

protected:
    void Draw(CGDIBuffer& buffer, const TPanelPaint& paint) override;
};
