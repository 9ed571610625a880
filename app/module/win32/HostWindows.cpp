#include "app/module/HostWindows.h"

#include <windows.h>

namespace {

BOOL CALLBACK NoteWindow(HWND hWindow, LPARAM nList) {
    DWORD uProcess = 0;
    GetWindowThreadProcessId(hWindow, &uProcess);
    if (uProcess == GetCurrentProcessId() && IsWindowVisible(hWindow) && IsWindowEnabled(hWindow))
        reinterpret_cast<std::vector<void*>*>(nList)->push_back(hWindow);
    return TRUE;
}

} // namespace

CHostWindowsOff::CHostWindowsOff() : m_pActive(GetActiveWindow()) {
    EnumWindows(NoteWindow, reinterpret_cast<LPARAM>(&m_vWindows));
    for (void* pWindow : m_vWindows) EnableWindow(static_cast<HWND>(pWindow), FALSE);
}

CHostWindowsOff::~CHostWindowsOff() {
    for (void* pWindow : m_vWindows)
        if (IsWindow(static_cast<HWND>(pWindow))) EnableWindow(static_cast<HWND>(pWindow), TRUE);
    if (IsWindow(static_cast<HWND>(m_pActive))) SetActiveWindow(static_cast<HWND>(m_pActive));
}
