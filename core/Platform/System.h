// Small questions to the outside: time, keys, clipboard.
#pragma once

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>

class IClock {
public:
    virtual ~IClock() = default;
    /// Milliseconds since some moment; wraps.
    virtual uint32_t GetTickCount() = 0;
};

/// Virtual keys that the shell asks for by name.
enum EVirtualKey : int {
    VK_Tab = 0x09,
    VK_Shift = 0x10,
    VK_Control = 0x11,
    VK_Alt = 0x12,
    VK_Escape = 0x1B,
    VK_Space = 0x20,
    VK_Home = 0x24,
    VK_Left = 0x25,
    VK_Up = 0x26,
    VK_Right = 0x27,
    VK_Down = 0x28,
    VK_Delete = 0x2E,
};

class IKeyState {
public:
    virtual ~IKeyState() = default;
    /// True while the virtual key (0 to 255) is down.
    virtual bool IsKeyDown(int nVirtualKey) = 0;
};

class IBitmap;

class IClipboard {
public:
    virtual ~IClipboard() = default;
    virtual void SetText(const std::wstring& strText) = 0;
    /// Puts a picture there in place of all else. False when there is no memory or no clipboard.
    virtual bool SetPicture(IBitmap& bitmap) = 0;
    /// True while a picture is there, of this program or of another.
    virtual bool HasPicture() = 0;
    /// A copy of the picture; null when there is none or no memory.
    virtual boost::shared_ptr<IBitmap> GetPicture() = 0;
    /// Another number whenever something else has been put there.
    virtual uint32_t GetChangeCount() = 0;
};
