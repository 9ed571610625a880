// A tablet without a device: a script puts packets into its queue.
#pragma once

#include "core/Platform/Pen.h"

#include <deque>

/// Pressure 0 to 1023, altitude 0 to 900 (tenths of a degree), eight units to a pixel, unless the script
/// sets another device.
class CSessionPen : public IPen {
public:
    bool IsPresent() override { return true; }
    TPenDevice GetDevice() override { return {L"script", L"session", true, true, true}; }
    TPenAxis GetPressureAxis() override { return {0, m_device.nPressure}; }
    TPenAxis GetAltitudeAxis() override { return {0, m_device.nAltitude}; }
    void SetMouseCoord(bool) override {}
    int32_t GetUnitsPerPixel() override { return m_device.nUnits; }
    size_t GetPackets(TPenPacket* pPackets, size_t nMax) override {
        size_t n = 0;
        for (; n < nMax && !m_deqPackets.empty(); ++n, m_deqPackets.pop_front())
            pPackets[n] = m_deqPackets.front();
        return n;
    }
    void Enable(bool bEnable) override { m_bEnabled = bEnable; }

    /// A device: the maxima of its axes, and its units per pixel.
    struct TDevice {
        int32_t nPressure = 1023;
        int32_t nAltitude = 900;
        int32_t nUnits = 8;
    };
    /// Sets another device. Enable does not affect its packets: only those that arrived were recorded.
    void SetDevice(const TDevice& device) {
        m_device = device;
        m_bAlways = true;
    }

    /// Queues a packet; it is dropped while packets are switched off.
    void Push(const TPenPacket& packet) {
        if (!m_bEnabled && !m_bAlways) return;
        m_deqPackets.push_back(packet);
        if (m_deqPackets.size() > QUEUE_SIZE) m_deqPackets.pop_front();
    }

private:
    std::deque<TPenPacket> m_deqPackets;
    TDevice m_device;
    bool m_bEnabled = true;
    bool m_bAlways = false;
};
