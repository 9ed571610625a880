// A session in real windows of a compositor of its own, in which a pen draws.
#pragma once

#include "core/CanvasFrame/CanvasFrame.h"
#include "core/MainFrame/MainFrame.h"
#include "core/MainFrame/SessionScope.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/Session.h"
#include "tests/support/TempFolder.h"
#include "tests/ui/UiTest.h"
#include "tests/wayland/Compositor.h"
#include "tests/wayland/Tablet.h"

#include <QWindow>

extern CCompositor* g_pCompositor;

class CWaylandTest : public testing::Test, public CUiSession {
protected:
    CWaylandTest() : m_scope(m_platform.GetPlatform()) {
        CreateMainFrame();
        m_spFrame = CreateCanvasFrame(MakePage({300, 200}));
        g_pMainFrame->OpenFrame(m_spFrame);
        Sync();
        m_pViewport = ViewOf(m_spFrame->GetWindow()).viewport();
    }

    ~CWaylandTest() override { Leave(CTestTablet::PEN); }

    /// Handles all that the compositor has sent.
    void Sync() {
        g_pCompositor->Ping();
        while (!g_pCompositor->IsAnswered()) Settle(), QThread::msleep(1);
        Settle();
    }
    /// Calls `fn` with the tablet and the main window's surface.
    template <class Function>
    void Play(const Function& fn) {
        const CCompositor::CLock lock = g_pCompositor->Lock();
        fn(g_pCompositor->GetTablet(), *g_pCompositor->FindWindow("Vellumcraft"));
    }
    void Leave(CTestTablet::ETool tool) {
        Play([&](CTestTablet& tablet, const TSurface&) { tablet.Leave(tool); });
        Sync();
    }
    void Key(uint32_t uKey, bool bDown) {
        g_pCompositor->Key(uKey, bDown);
        Sync();
    }
    void FocusWindow(bool bFocus) {
        Play([&](CTestTablet&, TSurface& surface) {
            g_pCompositor->FocusKeyboard(bFocus ? &surface : nullptr);
        });
        Sync();
    }
    /// The button below `parent` whose tool tip begins with `strText`.
    static QAbstractButton* FindButton(const QWidget& parent, QStringView strText) {
        for (auto* pButton : parent.findChildren<QAbstractButton*>())
            if (pButton->toolTip().startsWith(strText)) return pButton;
        return nullptr;
    }
    /// Touches a widget of some window with the pen.
    void Tap(const QWidget& widget) {
        const QPointF pt = OnSurface(widget, QPointF(widget.rect().center()));
        const CCompositor::CLock lock = g_pCompositor->Lock();
        const TSurface* pSurface =
            g_pCompositor->FindWindow(widget.window()->windowHandle()->title().toStdString());
        ASSERT_TRUE(pSurface);
        CTestTablet& tablet = g_pCompositor->GetTablet();
        tablet.Enter(CTestTablet::PEN, *pSurface, {pt});
        tablet.Move(CTestTablet::PEN, {pt, 0.5});
        tablet.Move(CTestTablet::PEN, {pt, 0});
        tablet.Leave(CTestTablet::PEN);
    }
    /// A place of a widget on its window's surface, whose frame the program draws itself.
    static QPointF OnSurface(const QWidget& widget, QPointF pt) {
        const QMargins frame = widget.window()->windowHandle()->frameMargins();
        return pt + widget.mapTo(widget.window(), QPointF()) + QPointF(frame.left(), frame.top());
    }
    /// A sample at a pixel of the document, which the view shows at its scale.
    TPenSample At(double x, double y, double dPressure, double dTilt = 0) const {
        const CPoint pt = m_spFrame->GetView().ToWindow({0, 0});
        return {
            OnSurface(*m_pViewport, (QPointF(pt.x, pt.y) + QPointF(x, y)) / m_pViewport->devicePixelRatioF()),
            dPressure, dTilt, 0};
    }
    /// The opaque pixels of the layer's column `x`.
    int WidthAt(int x) const {
        auto& raster =
            *dynamic_cast<CRasterLayerBuffer&>(*m_spFrame->GetCanvas()->GetActiveLayer()).GetRaster();
        int n = 0;
        for (int y = 0; y < 200; ++y) n += PixelAt(raster, {x, y}) >> 24 > 128;
        return n;
    }
    size_t GetStrokes() const { return m_spFrame->GetCanvas()->GetHistory().GetUndoList().size(); }

    CTestSettings m_folder;
    CSessionScope m_scope;
    boost::shared_ptr<CCanvasFrame> m_spFrame;
    QWidget* m_pViewport = nullptr;
};
