// The tests' own tablet driver, loaded.
#pragma once

#include "tests/windows/FakeWintab.h"

#include "TestPaths.h"

#include <boost/noncopyable.hpp>

#include <string>

class CFakeDriver : boost::noncopyable {
public:
    CFakeDriver() { Reset({}); }
    ~CFakeDriver() { FreeLibrary(m_hModule); }

    std::wstring GetPath() const {
        std::wstring strPath;
        for (const char c : std::string(VELLUM_FAKE_WINTAB))
            strPath += c == '/' ? L'\\' : static_cast<wchar_t>(c);
        return strPath;
    }
    void Reset(const TFakeTablet& tablet) { Call<decltype(FakeReset)>("FakeReset", &tablet); }
    void Play(const wintab::TPacket& packet) { Call<decltype(FakePlay)>("FakePlay", &packet); }
    void TellProximity(bool bEnter, bool bOther = false) {
        Call<decltype(FakeProximity)>("FakeProximity", bEnter, bOther);
    }
    void Unplug() { Call<decltype(FakeUnplug)>("FakeUnplug"); }
    TFakeState GetState() {
        TFakeState state;
        Call<decltype(FakeGetState)>("FakeGetState", &state);
        return state;
    }

private:
    template <class F, class... Args>
    void Call(const char* pszName, Args... args) {
        reinterpret_cast<F*>(reinterpret_cast<void*>(GetProcAddress(m_hModule, pszName)))(args...);
    }

    const HMODULE m_hModule = LoadLibraryW(GetPath().c_str());
};
