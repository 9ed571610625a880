#include "app/session/Interrupt.h"

#include <atomic>

#include <windows.h>

namespace {

std::atomic<bool> g_bInterrupted = false;

BOOL WINAPI OnEvent(DWORD uEvent) {
    g_bInterrupted = true;
    // When the terminal is closed or the user logs off, the system ends the process as soon as this returns.
    if (uEvent != CTRL_C_EVENT && uEvent != CTRL_BREAK_EVENT) Sleep(INFINITE);
    return TRUE;
}

} // namespace

void CatchInterrupts() { SetConsoleCtrlHandler(OnEvent, TRUE); }

bool IsInterrupted() { return g_bInterrupted; }
