// The status line: what the active tool does now, and the pointer's position.
#pragma once

#include <boost/noncopyable.hpp>

#include <cstdint>
#include <string>

class CCanvasFrame;
class IClock;
class IKeyState;
class IMainWindow;

/// Writes only what has changed, the position at most every 50 milliseconds: it must not delay the pen.
class CStatusLine : boost::noncopyable {
public:
    CStatusLine(IClock& clock, IKeyState& keys) : m_clock(clock), m_keys(keys) {}

    /// Brings the line up to date with the active frame, null for none. `strTold` replaces the tool's hint
    /// unless it is empty.
    void Update(IMainWindow& window, CCanvasFrame* pFrame, const std::wstring& strTold);

private:
    const wchar_t* FindHint(CCanvasFrame* pFrame) const;

    IClock& m_clock;
    IKeyState& m_keys;
    std::wstring m_strText;
    std::wstring m_strPosition;
    uint32_t m_uPositionTick = 0; ///< when the position was last written
};
