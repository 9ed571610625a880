#include "system/pen/win32/WintabContext.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>
#include <vector>

namespace {

using namespace wintab;

constexpr wchar_t NAME[] = L"Vellumcraft";
constexpr int LEAST_QUEUE = 8;
constexpr UINT LONGEST_NAME = 4096;  // bytes; a longer answer is an error
constexpr int64_t MOST_UNITS = 512;  // per pixel: positions of any screen stay far below 32 bits
constexpr uint32_t CURSOR_KINDS = 3; // puck, tip and eraser of each pen are numbered in this order
constexpr uint32_t CURSOR_ERASER = 2;

// Tablet units to a pixel along one axis; at least 1, whatever a driver says. The extents alone count where
// the tablet covers a screen that is as far to the right as it is wide.
int64_t UnitsPerPixel(int64_t nInOrg, int64_t nInExt, int64_t nOutOrg, int64_t nOutExt) {
    int64_t nIn = std::abs(nInExt) - nInOrg, nOut = std::abs(nOutExt) - nOutOrg;
    if (nIn <= 0 || nOut <= 0) nIn = std::abs(nInExt), nOut = std::abs(nOutExt);
    return nIn > 0 && nOut > 0 ? std::clamp<int64_t>(nIn / nOut, 1, MOST_UNITS) : 1;
}

int32_t UnitsPerPixel(const TLogContext& context) {
    return static_cast<int32_t>(
        std::min(UnitsPerPixel(context.nInOrgX, context.nInExtX, context.nOutOrgX, context.nOutExtX),
                 UnitsPerPixel(context.nInOrgY, context.nInExtY, context.nOutOrgY, context.nOutExtY)));
}

TPenPacket Convert(const TPacket& packet) {
    const bool bEraser =
        packet.uStatus & TPS_INVERT || packet.uCursor % CURSOR_KINDS == CURSOR_ERASER || packet.nAltitude < 0;
    return {packet.uStatus,   bEraser ? 2u : 1u, packet.uButtons,  packet.x,     packet.y,
            packet.uPressure, packet.nAzimuth,   packet.nAltitude, packet.nTwist};
}

} // namespace

CWintabContext::CWintabContext(boost::shared_ptr<const CWintabLibrary> spLibrary)
    : m_spLibrary(std::move(spLibrary)), m_api(m_spLibrary->GetFunctions()) {}

template <class T>
bool CWintabContext::Ask(UINT uCategory, UINT uIndex, T& answer) const {
    answer = {};
    return m_api.pInfo(uCategory, uIndex, &answer) != 0;
}

bool CWintabContext::Open(HWND hWnd, bool bMouseCoord) {
    Close();
    TLogContext context;
    if (!Ask(WTI_DEVICES, DVC_NPRESSURE, m_axisPressure) || m_axisPressure.nMax <= m_axisPressure.nMin)
        return false;
    Ask(WTI_DEVICES, DVC_ORIENTATION, m_axes);
    if (!Ask(WTI_DEFSYSCTX, 0, context)) return false;
    std::ranges::fill(context.szName, L'\0');
    std::copy(std::begin(NAME), std::end(NAME), context.szName);
    m_nCoordScale = bMouseCoord ? 1 : UnitsPerPixel(context);
    context.uOptions = bMouseCoord ? context.uOptions | CXO_SYSTEM : context.uOptions & ~CXO_SYSTEM;
    context.uOptions |= CXO_MESSAGES;
    context.uMsgBase = WT_DEFBASE;
    context.uPktData = context.uMoveMask = PACKET_DATA;
    context.uPktMode = PK_BUTTONS;
    context.nOutOrgX *= m_nCoordScale;
    context.nOutOrgY *= m_nCoordScale;
    context.nOutExtX *= m_nCoordScale;
    context.nOutExtY = -std::abs(context.nOutExtY) * m_nCoordScale; // downwards, as the screen's
    m_hContext = m_api.pOpen(hWnd, &context, FALSE);
    if (IsOpen() && !ReserveQueue()) Close();
    if (!IsOpen()) return false;
    Enable(true);
    return true;
}

// A refused size leaves the context without a queue.
bool CWintabContext::ReserveQueue() {
    for (int n = IPen::QUEUE_SIZE; n >= LEAST_QUEUE; n /= 2)
        if (m_api.pQueueSizeSet(m_hContext, n)) return true;
    return false;
}

void CWintabContext::Close() {
    m_bEnabled = false;
    if (IsOpen()) m_api.pClose(std::exchange(m_hContext, nullptr));
}

void CWintabContext::Enable(bool bEnable) {
    if (!IsOpen() || m_bEnabled == bEnable) return;
    m_bEnabled = bEnable;
    m_api.pEnable(m_hContext, bEnable);
    Raise();
}

void CWintabContext::Raise() {
    if (IsOpen() && m_bEnabled) m_api.pOverlap(m_hContext, TRUE);
}

size_t CWintabContext::Read(TPenPacket* pPackets, size_t nMax) {
    if (!IsOpen()) return 0;
    std::array<TPacket, IPen::QUEUE_SIZE> aPackets;
    const int nMost = static_cast<int>(std::min(nMax, aPackets.size()));
    const int nRead = std::clamp(m_api.pPacketsGet(m_hContext, nMost, aPackets.data()), 0, nMost);
    std::transform(aPackets.begin(), aPackets.begin() + nRead, pPackets, Convert);
    return static_cast<size_t>(nRead);
}

std::wstring CWintabContext::AskName() const {
    const UINT uBytes = m_api.pInfo(WTI_DEVICES, DVC_NAME, nullptr);
    if (uBytes == 0 || uBytes > LONGEST_NAME) return {};
    std::vector<wchar_t> vName(uBytes / sizeof(wchar_t) + 2);
    m_api.pInfo(WTI_DEVICES, DVC_NAME, vName.data());
    return vName.data();
}

TPenDevice CWintabContext::GetDevice() const {
    return {AskName(), L"WinTab", m_axisPressure.nMax > m_axisPressure.nMin, m_axes.altitude.nMax > 0,
            m_axes.twist.nMax > m_axes.twist.nMin};
}
