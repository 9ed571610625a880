// The status line: what the active tool does now, and the pointer's position.
#pragma once

#include "core/Commands/HeldKeys.h"
#include "core/Commands/Shortcuts.h"

#include <boost/noncopyable.hpp>

#include <cstdint>
#include <string>

class CCanvasFrame;
class IClock;
class IMainWindow;

/// Writes only what has changed, the position at most every 50 milliseconds: it must not delay the pen.
class CStatusLine : boost::noncopyable {
public:
    /// The hint names the keys of the set that are held beside Alt and Space.
    CStatusLine(IClock& clock, CHeldKeys& keys, const CShortcuts& shortcuts)
        : m_clock(clock), m_keys(keys), m_shortcuts(shortcuts) {}

    /// Brings the line up to date with the active frame, null for none. `strTold` replaces the tool's hint
    /// unless it is empty.
    void Update(IMainWindow& window, CCanvasFrame* pFrame, const std::wstring& strTold);

private:
    const wchar_t* FindHint(CCanvasFrame* pFrame) const;
    const std::wstring& NameHeldKeys(const wchar_t* pszHint);

    IClock& m_clock;
    CHeldKeys& m_keys;
    const CShortcuts& m_shortcuts;
    const wchar_t* m_pszHint = nullptr; ///< the hint without the keys
    CShortcuts m_shortcutsNamed;        ///< the set whose keys it names
    std::wstring m_strHint;
    std::wstring m_strText;
    std::wstring m_strPosition;
    uint32_t m_uPositionTick = 0; ///< when the position was last written
};
