#include "tests/windows/FakeWintab.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <deque>

namespace {

using namespace wintab;

char ONLY; // its address is the handle of the only context

struct TDriver {
    TFakeTablet tablet;
    TFakeState state;
    std::deque<TPacket> deqPackets;
    bool bGone = false;
};

TDriver g_driver;

bool Has(HContext hContext) {
    return !g_driver.bGone && g_driver.state.nContexts > 0 && hContext == g_driver.state.hContext;
}

template <class T>
UINT Answer(void* pOutput, const T& answer) {
    if (pOutput) std::memcpy(pOutput, &answer, sizeof answer);
    return sizeof answer;
}

TLogContext MakeSystemContext() {
    const TFakeTablet& tablet = g_driver.tablet;
    TLogContext context;
    context.uOptions = CXO_SYSTEM;
    context.nInExtX = tablet.nWidth;
    context.nInExtY = tablet.nHeight;
    context.nOutOrgX = context.nSysOrgX = tablet.nScreenX;
    context.nOutOrgY = context.nSysOrgY = tablet.nScreenY;
    context.nOutExtX = context.nSysExtX = tablet.nScreenWidth;
    context.nOutExtY = context.nSysExtY = tablet.nScreenHeight;
    return context;
}

// As the interface defines it: extents of unlike signs turn the axis round.
int32_t Scale(int32_t n, int32_t nInExt, int32_t nOutOrg, int32_t nOutExt) {
    const int64_t nFrom = nOutExt < 0 ? nInExt - n : n;
    return static_cast<int32_t>(nOutOrg + nFrom * std::abs(nOutExt) / nInExt);
}

void Notify(UINT uMessage, HContext hContext, bool bContextFirst, LPARAM lOther) {
    const TFakeState& state = g_driver.state;
    if (!(state.context.uOptions & CXO_MESSAGES)) return;
    const auto uContext = reinterpret_cast<UINT_PTR>(hContext);
    if (bContextFirst)
        PostMessageW(state.hWnd, uMessage, uContext, lOther);
    else
        PostMessageW(state.hWnd, uMessage, static_cast<WPARAM>(lOther), static_cast<LPARAM>(uContext));
}

} // namespace

// The ordinals are given to these names.
extern "C" {
UINT WINAPI FakeInfo(UINT uCategory, UINT uIndex, void* pOutput) {
    const TFakeTablet& tablet = g_driver.tablet;
    if (g_driver.bGone || !tablet.bAnswers) return 0;
    if (uCategory == WTI_DEFSYSCTX && uIndex == 0) return Answer(pOutput, MakeSystemContext());
    if (uCategory != WTI_DEVICES) return 0;
    if (uIndex == DVC_NPRESSURE) return Answer(pOutput, tablet.pressure);
    if (uIndex == DVC_ORIENTATION && tablet.bTilts)
        return Answer(pOutput, TOrientationAxes{{0, 3600}, {-tablet.nAltitudeMax, tablet.nAltitudeMax}, {}});
    if (uIndex != DVC_NAME) return 0;
    const size_t nBytes = (std::wcslen(tablet.pszName) + 1) * sizeof(wchar_t);
    if (pOutput) std::memcpy(pOutput, tablet.pszName, nBytes);
    return static_cast<UINT>(nBytes);
}

HContext WINAPI FakeOpen(HWND hWnd, TLogContext* pContext, BOOL bEnable) {
    if (g_driver.bGone || !g_driver.tablet.bOpens) return nullptr;
    TFakeState& state = g_driver.state;
    ++state.nContexts;
    state.context = *pContext;
    state.hContext = &ONLY;
    state.hWnd = hWnd;
    state.bEnabled = bEnable;
    state.nQueue = 0;
    g_driver.deqPackets.clear();
    return state.hContext;
}

BOOL WINAPI FakeClose(HContext hContext) {
    if (!Has(hContext)) return FALSE;
    --g_driver.state.nContexts;
    return TRUE;
}

int WINAPI FakePacketsGet(HContext hContext, int nMost, void* pPackets) {
    if (!Has(hContext)) return 0;
    auto& deqPackets = g_driver.deqPackets;
    const int n = std::min(nMost, static_cast<int>(deqPackets.size()));
    std::copy_n(deqPackets.begin(), n, static_cast<TPacket*>(pPackets));
    deqPackets.erase(deqPackets.begin(), deqPackets.begin() + n);
    return n;
}

BOOL WINAPI FakeEnable(HContext hContext, BOOL bEnable) {
    if (!Has(hContext)) return FALSE;
    g_driver.state.bEnabled = bEnable;
    return TRUE;
}

BOOL WINAPI FakeOverlap(HContext hContext, BOOL bToTop) {
    if (!Has(hContext)) return FALSE;
    if (bToTop) ++g_driver.state.nOverlaps;
    return TRUE;
}

BOOL WINAPI FakeQueueSizeSet(HContext hContext, int nPackets) {
    if (!Has(hContext)) return FALSE;
    const bool bGranted = nPackets <= g_driver.tablet.nMostPackets;
    g_driver.state.nQueue = bGranted ? nPackets : 0;
    return bGranted;
}

void FakeReset(const TFakeTablet* pTablet) {
    g_driver = {};
    g_driver.tablet = *pTablet;
}

void FakePlay(const TPacket* pPacket) {
    const TFakeState& state = g_driver.state;
    const TLogContext& context = state.context;
    if (g_driver.bGone || state.nContexts == 0 || !state.bEnabled || state.nQueue == 0) return;
    TPacket packet = *pPacket;
    packet.x = Scale(packet.x, context.nInExtX, context.nOutOrgX, context.nOutExtX);
    packet.y = Scale(packet.y, context.nInExtY, context.nOutOrgY, context.nOutExtY);
    auto& deqPackets = g_driver.deqPackets;
    deqPackets.push_back(packet);
    if (deqPackets.size() > static_cast<size_t>(state.nQueue)) deqPackets.pop_front();
    Notify(context.uMsgBase, state.hContext, false, 1);
}

void FakeProximity(bool bEnter, bool bOther) {
    const LPARAM lHardware = 1 << 16; // the pen itself has come or gone
    Notify(WT_PROXIMITY, bOther ? &g_driver : g_driver.state.hContext, true, lHardware | (bEnter ? 1 : 0));
}

void FakeUnplug() { g_driver.bGone = true; }
void FakeGetState(TFakeState* pState) { *pState = g_driver.state; }
}
