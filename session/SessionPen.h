// A tablet without a device: a script puts packets into its queue.
#pragma once

#include "core/Platform/Pen.h"

#include <deque>

/// Pressure 0 to 1023, altitude 0 to 900 (tenths of a degree), eight units to a pixel, unless the script
/// takes the place of another device.
class CSessionPen : public IPen {
public:
    bool IsPresent() override { return true; }
    TPenAxis GetPressureAxis() override { return {0, m_device.nPressure}; }
    TPenAxis GetAltitudeAxis() override { return {0, m_device.nAltitude}; }
    int32_t GetUnitsPerPixel() override { return m_device.nUnits; }
    size_t GetPackets(TPenPacket* pPackets, size_t nMax) override {
        size_t n = 0;
        for (; n < nMax && !m_deqPackets.empty(); ++n, m_deqPackets.pop_front())
            pPackets[n] = m_deqPackets.front();
        return n;
    }
    void Enable(bool bEnable) override { m_bEnabled = bEnable; }

    /// A device: its axes end there, and so many units make a pixel.
    struct TDevice {
        int32_t nPressure = 1023;
        int32_t nAltitude = 900;
        int32_t nUnits = 8;
    };
    /// Another device, whose packets arrive whatever Enable says: only those that did were recorded.
    void SetDevice(const TDevice& device) {
        m_device = device;
        m_bAlways = true;
    }

    /// What the device reports; lost while packets are switched off.
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
