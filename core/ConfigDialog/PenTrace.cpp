#include "core/ConfigDialog/PenTrace.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

namespace {

constexpr uint32_t PAUSE_MS = 100;
constexpr uint32_t LONGEST_WAIT_MS = 1000; ///< a pause between strokes is not waited for in full
constexpr uint32_t SHORTEST_MS = 50;       ///< that a rate can be told from
constexpr uint32_t CURSOR_ERASER = 2;

// One line of whole numbers.
void AddLine(std::string& str, const char* pszFormat, ...) {
    char szLine[256];
    va_list args;
    va_start(args, pszFormat);
    std::vsnprintf(szLine, sizeof szLine, pszFormat, args);
    va_end(args);
    str.append(szLine).append("\n");
}

} // namespace

void CPenTrace::Add(const TPenReport& report) {
    m_deqReports.push_back(report);
    if (m_deqReports.size() > MOST) m_deqReports.pop_front();
}

int CPenTrace::GetRate() const {
    if (m_deqReports.empty()) return 0;
    auto it = m_deqReports.rbegin();
    const uint32_t uEnd = it->uTime;
    uint32_t uFirst = uEnd;
    int nIntervals = 0;
    for (++it; it != m_deqReports.rend() && uFirst - it->uTime < PAUSE_MS; ++it) {
        uFirst = it->uTime;
        ++nIntervals;
    }
    const uint32_t uSpan = uEnd - uFirst;
    return uSpan < SHORTEST_MS ? 0 : static_cast<int>((nIntervals * 1000u + uSpan / 2) / uSpan);
}

std::string CPenTrace::FormatScript(IPen& pen, CSize szView) const {
    const TPenAxis axis = pen.GetPressureAxis();
    std::string str;
    AddLine(str, R"({"tablet":{"units":%d,"pressure":%d,"altitude":%d}})", pen.GetUnitsPerPixel(),
            axis.nMax - axis.nMin, pen.GetAltitudeAxis().nMax);
    AddLine(str, R"({"answer":{"dialog":"CNewDialog","width":%d,"height":%d,"color":true}})", szView.cx,
            szView.cy);
    AddLine(str, R"({"command":"file-new"})");
    AddLine(str, R"({"tool":2})");
    // A window of the canvas's size that begins at its corner: positions stay what they were.
    AddLine(str, R"({"view":{"width":%d,"height":%d}})", szView.cx, szView.cy);
    AddLine(str, R"({"command":"view-fit"})");
    const TPenReport* pLast = nullptr;
    for (const TPenReport& report : m_deqReports) {
        const uint32_t uWait = pLast ? std::min(report.uTime - pLast->uTime, LONGEST_WAIT_MS) : 0;
        if (uWait > 0) AddLine(str, R"({"wait":%u})", uWait);
        const TPenPacket& packet = report.packet;
        // A report beside the view draws nothing.
        AddLine(
            str,
            R"({"packet":{"x":%d,"y":%d,"pressure":%u,"altitude":%d,"azimuth":%d,"twist":%d,"eraser":%s,"idle":true}})",
            packet.x, packet.y, packet.uPressure - static_cast<uint32_t>(axis.nMin), packet.nAltitude,
            packet.nAzimuth, packet.nTwist, packet.uCursor == CURSOR_ERASER ? "true" : "false");
        pLast = &report;
    }
    AddLine(str, R"({"proximity":"leave"})");
    return str;
}
