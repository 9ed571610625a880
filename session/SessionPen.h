// A tablet without a device: a script puts packets into its queue.
#pragma once

#include "core/Platform/Pen.h"

#include <deque>

/// Pressure 0 to 1023, altitude 0 to 900 (tenths of a degree), eight units to a pixel.
class CSessionPen : public IPen {
public:
    bool IsPresent() override { return true; }
    TPenAxis GetPressureAxis() override { return {0, 1023}; }
    TPenAxis GetAltitudeAxis() override { return {0, 900}; }
    int32_t GetUnitsPerPixel() override { return UNITS_PER_PIXEL; }
    size_t GetPackets(TPenPacket* pPackets, size_t nMax) override {
        size_t n = 0;
        for (; n < nMax && !m_deqPackets.empty(); ++n, m_deqPackets.pop_front())
            pPackets[n] = m_deqPackets.front();
        return n;
    }
    void Enable(bool bEnable) override { m_bEnabled = bEnable; }

    /// What the device reports; lost while packets are switched off.
    void Push(const TPenPacket& packet) {
        if (!m_bEnabled) return;
        m_deqPackets.push_back(packet);
        if (m_deqPackets.size() > QUEUE_SIZE) m_deqPackets.pop_front();
    }

    static constexpr int32_t UNITS_PER_PIXEL = 8;

private:
    std::deque<TPenPacket> m_deqPackets;
    bool m_bEnabled = true;
};
