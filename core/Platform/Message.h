// Messages between the windows and the application: one record, one queue, one order.
#pragma once

#include <cstdint>
#include <string>

class IWindow;

/// Message kinds. The numbers are the published ones of the window system that the names come from; session
/// scripts and records use them.
enum class EMessage : uint32_t {
    Null = 0x0000,
    Destroy = 0x0002,       ///< the window is about to be destroyed
    Size = 0x0005,          ///< wParam, lParam: client width and height in device pixels
    Paint = 0x000F,         ///< posted only for the record; painting itself is IWindowClient::OnPaint
    Close = 0x0010,         ///< the user requests closing; by default the window is destroyed
    Quit = 0x0012,          ///< ends the message loop
    EndSession = 0x0016,    ///< the process is being terminated: save unsaved work without asking
    KeyDown = 0x0100,       ///< wParam: virtual key; lParam: 1 for an auto-repeat
    KeyUp = 0x0101,         ///< wParam: virtual key
    SysKeyDown = 0x0104,    ///< as KeyDown, with Alt held
    SysKeyUp = 0x0105,      ///< as KeyUp, with Alt held
    Command = 0x0111,       ///< wParam: command id
    Timer = 0x0113,         ///< wParam: timer id
    Scroll = 0x0114,        ///< wParam: 0 horizontal, 1 vertical; lParam: new offset in window pixels
    InitMenuPopup = 0x0117, ///< a menu is about to open: update its items' states
    SysTimer = 0x0118,      ///< the window system's caret timer; never triggers idle work
    MouseMove = 0x0200,     ///< pointer messages: wParam: MOUSE_ bits, lParam: PackPoint of a client pixel
    LButtonDown = 0x0201,
    LButtonUp = 0x0202,
    RButtonDown = 0x0204,
    RButtonUp = 0x0205,
    MButtonDown = 0x0207,
    MButtonUp = 0x0208,
    NcMouseMove = 0x00A0,
    MouseActivate = 0x0021,  ///< the next mouse press activated the window
    MouseWheel = 0x020A,     ///< wParam: signed wheel delta
    CaptureChanged = 0x0215, ///< the window has lost the capture
    MdiActivate = 0x0222,    ///< wParam: 1 the receiver became the active frame, 0 deactivated
    DropFiles = 0x0233,      ///< strText: a path; one message for each file
    MouseLeave = 0x02A3,     ///< the pointer has left the client area
    PanelChange = 0x7FE0,    ///< panel: wParam: control id; lParam: its new value; strText: of a Text
    PanelActivate = 0x7FE1,  ///< a List row was double-clicked: wParam: control id; lParam: row
    PanelRename = 0x7FE2,    ///< the user renamed a row: wParam: control id; lParam: row; strText: name
    PanelMove = 0x7FE3,      ///< the user dragged a row: wParam: control id; lParam: PackPoint(from, to)
    PanelEye = 0x7FE4,       ///< a Tree row's eye: wParam: control id; lParam: PackPoint(row, EEyeAct)
    PanelFold = 0x7FE5,      ///< a Tree row was folded: wParam: control id; lParam: PackPoint(row, 1 closed)
    PanelDrop = 0x7FE6,    ///< a Tree row was dragged: wParam: control id; lParam: PackPoint(from, PackDrop)
    PanelMenu = 0x7FE7,    ///< a row's context menu was requested: wParam: control id; lParam: row, -1 none
    Pinch = 0x7FF1,        ///< wParam: lines of the zoom list, positive magnifies; lParam: PackPoint of the
                           ///< client pixel between the fingers
    PenPacket = 0x7FF0,    ///< packets are waiting at the pen
    PenProximity = 0x7FF5, ///< wParam: 1 the pen came near, 0 it left; lParam: 2 for the eraser end
    PenActivate = 0x7FF6,  ///< a pen contact activated the window
    CopyData = 0x004A,     ///< wParam: data id; strText: text sent by another process
    App = 0x8000,          ///< first private message; App + n is written AppMessage(n)
};

/// Bits of a pointer message's wParam.
constexpr int64_t MOUSE_LEFT = 0x01;
constexpr int64_t MOUSE_RIGHT = 0x02;
constexpr int64_t MOUSE_SHIFT = 0x04;
constexpr int64_t MOUSE_CONTROL = 0x08;

/// Pointer and keyboard messages of a panel's view carry the view's id in the upper half of wParam.
constexpr int64_t PackView(int64_t wParam, int nId) { return wParam | static_cast<int64_t>(nId) << 32; }
constexpr int PackedView(int64_t wParam) { return static_cast<int>(wParam >> 32); }

/// A client position in a message's lParam.
constexpr int64_t PackPoint(int32_t x, int32_t y) {
    return static_cast<int64_t>(static_cast<uint64_t>(static_cast<uint32_t>(y)) << 32 |
                                static_cast<uint32_t>(x));
}
constexpr int32_t PackedX(int64_t lParam) { return static_cast<int32_t>(lParam & 0xFFFFFFFF); }
constexpr int32_t PackedY(int64_t lParam) { return static_cast<int32_t>(lParam >> 32); }

/// The row that a Tree row was dropped on, and the part of it (EDropAt).
constexpr int32_t PackDrop(int32_t nRow, int nAt) { return nRow * 4 + nAt; }
constexpr int32_t DroppedRow(int32_t nDrop) { return nDrop >> 2; }
constexpr int DroppedAt(int32_t nDrop) { return nDrop & 3; }

/// The private message number n (1 to 0x3FFF).
constexpr EMessage AppMessage(uint32_t n) { return static_cast<EMessage>(0x8000u + n); }

/// One message. `pWindow` is its receiver, null for the thread's own messages.
struct TMessage {
    IWindow* pWindow = nullptr;
    EMessage id = EMessage::Null;
    int64_t wParam = 0;
    int64_t lParam = 0;
    std::wstring strText = {};
};

/// The thread's message queue; one thread only. `Forget` stops delivery to a destroyed window.
class IMessageQueue {
public:
    virtual ~IMessageQueue() = default;
    /// True when a message (or the end) is waiting; collects the window system's pending events, never
    /// blocks.
    virtual bool Peek() = 0;
    /// Waits for the next message and removes it. Returns 1 with a message, 0 at the end of the session, -1
    /// when the window system failed and the caller may retry.
    virtual int Get(TMessage& msg) = 0;
    /// Delivers a message to its window: the client first, the window's default handling if it declines.
    virtual void Dispatch(const TMessage& msg) = 0;
    /// Appends a message to the queue. Messages without a window are dropped at dispatch.
    virtual void Post(const TMessage& msg) = 0;
    /// Makes Get return 0 after all messages posted before.
    virtual void PostQuit() = 0;
    /// Drops every waiting message of a window that is being destroyed.
    virtual void Forget(const IWindow* pWindow) = 0;
};

/// The source of messages when the queue is empty: the window system's events or a session script.
class IEventPump {
public:
    virtual ~IEventPump() = default;
    /// Posts pending events; with `bWait` blocks until there is one. False when no event can come any more
    /// (a lost display).
    virtual bool Pump(bool bWait) = 0;
};
