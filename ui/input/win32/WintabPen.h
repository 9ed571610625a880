// The pen by the tablet's driver: its messages, which Qt does not know, become packets.
#pragma once

#include "system/pen/win32/WintabContext.h"
#include "ui/input/NativePen.h"
#include "ui/input/win32/PenSource.h"

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QPointer>
#include <QPointingDevice>

/// One context serves the main window with all its canvases: they are no windows of the system, drivers
/// grant few contexts, and those of one program would cover each other. It is open from the first canvas
/// until the window goes.
class CWintabPen : public QObject, public QAbstractNativeEventFilter, public INativePen {
public:
    CWintabPen(boost::shared_ptr<const CWintabLibrary> spLibrary, TNativePenEvents events);

    void SetWindow(QWidget* pWindow) override;
    void SetMouseCoord(bool bMouseCoord) override;
    void Enable(bool bEnable) override { m_context.Enable(bEnable); }
    std::optional<TPenDevice> GetDevice() override;
    bool TakesOver() override;
    bool IsInCharge() const override { return m_source.IsDriver(); }

    bool nativeEventFilter(const QByteArray& type, void* pMessage, qintptr* pResult) override;

protected:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    void Open();
    void OnActivation(bool bActive);
    void ReadPackets();
    CPoint GetShift() const;
    void SendToDialog(std::span<const TPenPacket> packets);
    bool SendTo(QWidget& widget, const QPointF& ptGlobal, const TPenPacket& packet);

    CWintabContext m_context;
    TNativePenEvents m_events;
    CPenSource m_source;
    QPointer<QWidget> m_pWindow;
    HWND m_hWnd = nullptr; ///< of the context
    std::optional<bool> m_bMouseCoord;
    bool m_bQtReports = false; ///< Qt has reported a pen in this session
    QPointingDevice m_tip;
    QPointingDevice m_eraser;
};
