// The client area of a canvas's window and its scroll bars.
#pragma once

#include "core/Base/Geometry.h"

#include <QAbstractScrollArea>

#include <functional>

class IPaintTarget;

/// Sizes and rectangles are device pixels; the viewport's top-left pixel is (0, 0).
class CQtCanvasView : public QAbstractScrollArea {
public:
    struct TEvents {
        std::function<void(CSize)> size;                         ///< the client size has changed
        std::function<void(IPaintTarget&, const CRect&)> paint;  ///< the rectangle is out of date
        std::function<void(bool bVertical, int nOffset)> scroll; ///< the user moved a scroll bar
        std::function<void(int nDelta)> wheel;                   ///< whole steps of 120
    };

    CQtCanvasView(TEvents events, QWidget* pParent);

    CSize GetClientSize() const;
    void Invalidate(const CRect& rc);
    /// Sets both scroll bars without telling anybody.
    void SetScroll(CSize szExtent, CSize szLine, CSize szPage, CPoint ptOffset);
    /// Brings the viewport to the size that the view has, for a view that has not been shown yet.
    void SettleLayout();

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;
    void wheelEvent(QWheelEvent* pEvent) override;
    /// Nothing moves by itself: the application paints what it scrolled to.
    void scrollContentsBy(int, int) override {}

private:
    void CheckSize();
    void WatchBar(bool bVertical);

    TEvents m_events;
    CSize m_szTold;
    CSize m_szPage;          ///< what a click beside a scroll bar's handle moves
    bool m_bSetting = false; ///< the application moves the scroll bars
    int m_nWheel = 0;        ///< part of a wheel step so far
};
