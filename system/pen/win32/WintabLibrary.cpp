#include "system/pen/win32/WintabLibrary.h"

namespace {

template <class F>
bool BindTo(F& pFunction, HMODULE hModule, WORD wOrdinal) {
    const FARPROC pFound = GetProcAddress(hModule, MAKEINTRESOURCEA(wOrdinal));
    pFunction = reinterpret_cast<F>(reinterpret_cast<void*>(pFound));
    return pFunction != nullptr;
}

} // namespace

boost::shared_ptr<const CWintabLibrary> CWintabLibrary::Load(const std::wstring& strPath) {
    // The program's own folder and the current one are not searched: any file there could pose as the driver.
    const HMODULE hModule = strPath.empty()
                                ? LoadLibraryExW(L"WINTAB32.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32)
                                : LoadLibraryExW(strPath.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (!hModule) return nullptr;
    const boost::shared_ptr<CWintabLibrary> spLibrary(new CWintabLibrary(hModule));
    return spLibrary->Bind() ? spLibrary : nullptr;
}

CWintabLibrary::~CWintabLibrary() { FreeLibrary(m_hModule); }

bool CWintabLibrary::Bind() {
    wintab::TFunctions& f = m_functions;
    return BindTo(f.pInfo, m_hModule, 1020) && BindTo(f.pOpen, m_hModule, 1021) &&
           BindTo(f.pClose, m_hModule, 22) && BindTo(f.pPacketsGet, m_hModule, 23) &&
           BindTo(f.pEnable, m_hModule, 40) && BindTo(f.pOverlap, m_hModule, 41) &&
           BindTo(f.pQueueSizeSet, m_hModule, 85);
}
