// A window's context of the tablet: how it is opened, and its packets.
#pragma once

#include "core/Platform/Pen.h"
#include "system/pen/win32/WintabLibrary.h"

#include <string>

/// Closes itself. One thread, that of the window.
class CWintabContext : boost::noncopyable {
public:
    explicit CWintabContext(boost::shared_ptr<const CWintabLibrary> spLibrary);
    ~CWintabContext() { Close(); }

    /// Opens and enables the context for a window, in place of a former one. With `bMouseCoord` the driver
    /// moves the system cursor and positions are pixels, otherwise they have the tablet's finer units and
    /// the cursor stays. False without a tablet that has a pressure, or when the driver refuses.
    bool Open(HWND hWnd, bool bMouseCoord);
    void Close();
    /// Called when the driver has closed the context itself.
    void Drop() { m_hContext = nullptr; }
    bool IsOpen() const { return m_hContext != nullptr; }
    /// True for the handle of this context, as the driver's messages name it.
    bool Is(uintptr_t uContext) const {
        return IsOpen() && reinterpret_cast<uintptr_t>(m_hContext) == uContext;
    }

    /// Switches the packets on, on top of other contexts, or off. Does nothing when they already are.
    void Enable(bool bEnable);
    /// Puts an enabled context on top of other programs' contexts.
    void Raise();
    /// Removes up to `nMax` packets, the oldest first. Positions are pixels of the system's screen times
    /// GetUnitsPerPixel, downwards; pressure and angles are the device's.
    size_t Read(TPenPacket* pPackets, size_t nMax);

    TPenAxis GetPressureAxis() const { return {m_axisPressure.nMin, m_axisPressure.nMax}; }
    /// Up to 0 when the pen reports no tilt.
    TPenAxis GetAltitudeAxis() const { return {m_axes.altitude.nMin, m_axes.altitude.nMax}; }
    int32_t GetUnitsPerPixel() const { return m_nCoordScale; }
    /// The first tablet's description.
    TPenDevice GetDevice() const;

private:
    template <class T>
    bool Ask(UINT uCategory, UINT uIndex, T& answer) const;
    std::wstring AskName() const;
    bool ReserveQueue();

    boost::shared_ptr<const CWintabLibrary> m_spLibrary;
    const wintab::TFunctions& m_api;
    wintab::HContext m_hContext = nullptr;
    wintab::TAxis m_axisPressure;
    wintab::TOrientationAxes m_axes;
    int32_t m_nCoordScale = 1;
    bool m_bEnabled = false;
};
