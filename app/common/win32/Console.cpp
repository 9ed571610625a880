#include "app/common/Console.h"

#include "core/Base/Text.h"

#include <windows.h>

#include <io.h>
#include <shellapi.h>

namespace {

std::vector<std::string> ReadArguments() {
    int nArguments = 0;
    wchar_t** const ppszArguments = CommandLineToArgvW(GetCommandLineW(), &nArguments);
    std::vector<std::string> vArguments;
    for (int n = 1; n < nArguments; ++n) vArguments.push_back(ToUtf8(ppszArguments[n]));
    LocalFree(ppszArguments);
    return vArguments;
}

bool IsOpen(std::FILE* pFile) { return _fileno(pFile) >= 0; }

// A program of windows has streams only where they are redirected. Started from a terminal, it writes there.
void OpenStreams() {
    if (IsOpen(stdout) || IsOpen(stderr) || !AttachConsole(ATTACH_PARENT_PROCESS)) return;
    for (std::FILE* pFile : {stdout, stderr}) {
        [[maybe_unused]] const std::FILE* const pOpened = std::freopen("CONOUT$", "w", pFile);
    }
}

} // namespace

CConsole::CConsole(int, char**) : m_vArguments(ReadArguments()) {
    OpenStreams();
    // The code page belongs to the terminal, which other programs use later.
    m_uOldCodePage = GetConsoleOutputCP();
    if (m_uOldCodePage != 0) SetConsoleOutputCP(CP_UTF8);
}

CConsole::~CConsole() {
    std::fflush(nullptr);
    if (m_uOldCodePage != 0) SetConsoleOutputCP(m_uOldCodePage);
}

void CConsole::Say(std::FILE* pFile, const std::string& strText) const {
    if (IsOpen(pFile))
        std::fputs(strText.c_str(), pFile);
    else
        MessageBoxW(nullptr, FromUtf8(strText).c_str(), L"Vellumcraft",
                    pFile == stderr ? MB_ICONERROR : MB_ICONINFORMATION);
}

bool CConsole::IsTerminal(std::FILE* pFile) {
    // Other devices, such as NUL, have no mode.
    const HANDLE hFile = IsOpen(pFile) ? reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(pFile))) : nullptr;
    DWORD uMode = 0;
    return hFile && GetConsoleMode(hFile, &uMode) &&
           SetConsoleMode(hFile, uMode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}
