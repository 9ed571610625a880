// A tablet driver for tests: its tablet and what the tests play on it. The functions are exported by name.
#pragma once

#include "system/pen/win32/Wintab.h"

/// The tablet that the driver describes, and how the driver fails.
struct TFakeTablet {
    bool bAnswers = true;    ///< false: every question is answered by nothing
    bool bOpens = true;      ///< false: no context is opened
    bool bTilts = true;      ///< false: no orientation
    int nMostPackets = 1000; ///< the largest queue that is granted
    const wchar_t* pszName = L"Fake tablet";
    wintab::TAxis pressure{0, 2047};
    int32_t nAltitudeMax = 900;
    int32_t nWidth = 44160; ///< of the tablet, in its own units
    int32_t nHeight = 27600;
    int32_t nScreenX = 0; ///< the screen that it covers, in pixels
    int32_t nScreenY = 0;
    int32_t nScreenWidth = 1920;
    int32_t nScreenHeight = 1200;
};

/// The requests that the driver has received.
struct TFakeState {
    int nContexts = 0; ///< open at the moment
    int nOverlaps = 0; ///< how often a context was put on top
    int nQueue = 0;    ///< the size that was granted last; 0 without a queue
    bool bEnabled = false;
    wintab::TLogContext context; ///< as it was opened last
    wintab::HContext hContext = nullptr;
    HWND hWnd = nullptr;
};

extern "C" {
/// Another tablet; forgets every context.
void FakeReset(const TFakeTablet* pTablet);
/// A packet in the tablet's own units, y upwards from its lower edge; `uButtons` as in a packet. Tells the
/// window. An overflow drops the oldest packet; a context that is switched off gets nothing.
void FakePlay(const wintab::TPacket* pPacket);
/// Tells the window that the pen comes or goes. With `bOther` in the name of another context.
void FakeProximity(bool bEnter, bool bOther);
/// The tablet is pulled out: every further call fails.
void FakeUnplug();
void FakeGetState(TFakeState* pState);
}
