// Small platform services: time, keys, clipboard.
#pragma once

#include "core/Platform/Bitmap.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>

class IClock {
public:
    virtual ~IClock() = default;
    /// Milliseconds since an arbitrary moment; wraps.
    virtual uint32_t GetTickCount() = 0;
};

/// The virtual keys that the application uses by name.
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

/// A picture as a block of memory, a bitmap header with the pixels behind it (core/ImageFile/DibBlock.h).
using TDibBytes = boost::shared_ptr<const std::string>;

/// Strokes in the application's own form (core/PathSelect/StrokeForms.h).
using TStrokeBytes = boost::shared_ptr<const std::string>;

/// Copied strokes in all forms: what this application reads, and others.
struct TStrokeForms {
    TStrokeBytes spStrokes;
    std::string strSvg;  ///< the text of an SVG file
    TDibBytes spPicture; ///< null where the strokes show nothing
};

class IClipboard {
public:
    virtual ~IClipboard() = default;
    virtual void SetText(const std::wstring& strText) = 0;
    /// Replaces the clipboard's content by a block of this application, in whatever forms other programs
    /// read. Raises std::runtime_error when the clipboard cannot be opened; then its content stays.
    virtual void SetBlock(const TDibBytes& spBlock) = 0;
    /// Replaces the content by a picture, as another program does. False without memory or clipboard.
    virtual bool SetPicture(IBitmap& bitmap) = 0;
    /// True while the clipboard holds a picture, of this or another program, readable or not.
    virtual bool HasPicture() = 0;
    /// The clipboard's picture in the best of its forms. Fails without one, and as IImageCodecs::Load does.
    virtual TLoadedPicture GetPicture() = 0;
    /// The clipboard's picture as a block; null without one. A block of another program is passed on unread.
    virtual TDibBytes GetBlock() = 0;
    /// Replaces the content by strokes, which are a picture too where they have one. Raises as SetBlock does.
    virtual void SetStrokes(const TStrokeForms& forms) = 0;
    /// True while the clipboard holds strokes, of this or another instance of the application.
    virtual bool HasStrokes() = 0;
    /// The strokes in the own form, unread; null without any.
    virtual TStrokeBytes GetStrokes() = 0;
    /// Changes whenever the clipboard's content is replaced.
    virtual uint32_t GetChangeCount() = 0;
};
