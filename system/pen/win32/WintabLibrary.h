// The tablet driver's library, loaded when it is asked for.
#pragma once

#include "system/pen/win32/Wintab.h"

#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>

#include <string>

/// Stays loaded as long as the object lives. Any thread may load it; it is used on one.
class CWintabLibrary : boost::noncopyable {
public:
    /// Loads the driver's library from the system's folder, or the file `strPath`. Null where there is none
    /// or one of its functions is missing.
    static boost::shared_ptr<const CWintabLibrary> Load(const std::wstring& strPath = {});
    ~CWintabLibrary();

    /// All of them exist.
    const wintab::TFunctions& GetFunctions() const { return m_functions; }

private:
    explicit CWintabLibrary(HMODULE hModule) : m_hModule(hModule) {}
    bool Bind();

    HMODULE m_hModule;
    wintab::TFunctions m_functions;
};
