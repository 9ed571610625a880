// The application's interface to windows, implemented by the window system; core uses no widgets. All
// positions are device pixels. All calls come from the session's thread and none throws.
#pragma once

#include "core/Base/Geometry.h"
#include "core/Platform/Cursor.h"
#include "core/Platform/Menu.h"
#include "core/Platform/Message.h"

#include <cstdint>
#include <string>
#include <vector>

/// Receives painted rows of 32-bit pixels: B, G, R and 255.
class IPaintTarget {
public:
    virtual ~IPaintTarget() = default;
    /// Shows `rc` (client pixels) of a bitmap whose origin is the client area's. `nStride` in bytes.
    virtual void Blit(const uint8_t* pPixels, int nStride, CSize szBitmap, const CRect& rc) = 0;
};

/// The application's side of a window.
class IWindowClient {
public:
    virtual ~IWindowClient() = default;
    /// Handles a message; false requests the window's default handling. Never throws.
    virtual bool OnMessage(const TMessage& msg) = 0;
    /// Paints at least `rc` of the client area. Never throws.
    virtual void OnPaint(IPaintTarget& target, const CRect& rc) = 0;
    /// The last call, after the window's destruction. The client may release itself.
    virtual void OnFinalMessage() = 0;
};

/// Operations of every window. Windows are destroyed by Destroy (or with their parent), never by delete.
class IWindow {
public:
    virtual ~IWindow() = default;
    virtual IWindowClient& GetClient() = 0;
    /// Default handling of a message that the client declined: Close destroys the window, a key is passed
    /// to the focused widget, all else is dropped.
    virtual void DefaultMessage(const TMessage& msg) = 0;
    /// Sends Destroy, then OnFinalMessage; the object is freed on return to the message loop.
    virtual void Destroy() = 0;
    virtual void SetTitle(const std::wstring& strTitle) = 0;
    virtual void Show() = 0;
    /// The window's rectangle, frame included: main frame in screen, canvas frames in MDI client coordinates.
    virtual CRect GetRect() const = 0;
    virtual void SetRect(const CRect& rc) = 0;
    /// Requests a later OnPaint of `rc` (client pixels); an empty rectangle means the whole client area.
    virtual void Invalidate(const CRect& rc = {}) = 0;
};

/// Light or dark windows; System follows the desktop.
enum class ETheme { System, Light, Dark };

/// Arrangement of the MDI children.
enum class EArrange { Icons, Cascade, TileHorizontal, TileVertical };

/// A canvas's window: an MDI child with scroll bars.
class ICanvasWindow : public IWindow {
public:
    virtual CSize GetClientSize() const = 0;
    /// Marks the title of a document that has unsaved changes.
    virtual void SetModified(bool bModified) = 0;
    /// Sets the scroll bars of both axes: offsets run from 0 to extent minus client size; an arrow scrolls
    /// by a line, a click beside the handle by a page.
    virtual void SetScroll(CSize szExtent, CSize szLine, CSize szPage, CPoint ptOffset) = 0;
    /// Posts Timer with `nId` every `nMilliseconds` until KillTimer or the window's destruction.
    virtual void SetTimer(int nId, int nMilliseconds) = 0;
    virtual void KillTimer(int nId) = 0;
    /// A maximised window fills the area; its rectangle stays the place to restore.
    virtual bool IsMaximized() const = 0;
    virtual void SetMaximized(bool bMaximized) = 0;
    /// Resizes the window to this client size, as far as the area allows; moves it if it would leave the
    /// area. A maximised window keeps its size.
    virtual void FitTo(CSize szClient) = 0;
    /// Makes this the active child; both frames are notified by MdiActivate.
    virtual void Activate() = 0;
    /// Gives the window the keyboard focus.
    virtual void SetFocus() = 0;
    /// A window with the capture receives all pointer events; CaptureChanged reports its loss.
    virtual void SetCapture(bool bCapture) = 0;
    virtual bool HasCapture() const = 0;
    /// The pointer's shape over the client area.
    virtual void SetCursor(ECursor cursor) = 0;
    /// The client area's top-left pixel on the screen, in device pixels.
    virtual CPoint GetClientOrigin() const = 0;
    /// Device pixels to the inch of the window's screen as the user has set them: 96 is 100 percent.
    virtual int32_t GetDpi() const = 0;
    /// True when the given device pixel of the screen shows this window's client area.
    virtual bool IsAt(CPoint ptScreen) const = 0;
};

/// The main frame: menu, tool bar, zoom box, status line, MDI client.
class IMainWindow : public IWindow {
public:
    virtual ICommandLook& GetMenuLook() = 0;
    virtual ICommandLook& GetToolBarLook() = 0;
    /// Replaces the entries of recent files (ids from `nFirstId`), shown at the menu's entry with that
    /// first id.
    virtual void SetRecentFiles(int nFirstId, const std::vector<std::wstring>& vTexts) = 0;
    /// Replaces the texts of commands in all menus of this window and its children, and in tool tips, by
    /// those of a menu.
    virtual void SetCommandTexts(const std::vector<TMenuItem>& vMenu) = 0;
    /// Text of a status pane: 0 the line's text, 1 the scale, 2 the pointer's position.
    virtual void SetStatusText(int nPane, const std::wstring& strText) = 0;
    /// Sets the lines of the zoom box in order, without selection. A user's choice posts Command 101 with
    /// lParam the line.
    virtual void SetZoomItems(const std::vector<std::wstring>& vItems) = 0;
    /// Selects a line of the zoom box, -1 for none; posts nothing.
    virtual void SelectZoomItem(int nItem) = 0;
    /// The selected line of the zoom box, -1 for none.
    virtual int GetZoomItem() const = 0;
    virtual void ArrangeChildren(EArrange arrange) = 0;
    /// The work areas of all screens, the first one the primary.
    virtual std::vector<CRect> GetScreens() const = 0;
    virtual void SetMinimumSize(CSize sz) = 0;
    /// A maximised window fills its screen; its rectangle stays the place to restore.
    virtual bool IsMaximized() const = 0;
    virtual void SetMaximized(bool bMaximized) = 0;
    /// The size of the area of the MDI children, in the units of their rectangles; empty when nothing limits
    /// them.
    virtual CSize GetArea() const = 0;
    /// Chooses light or dark windows. The look of a host that shares the window system's application stays.
    virtual void SetTheme(ETheme theme) = 0;
};

/// Setup of a new main frame.
struct TMainWindowSetup {
    std::wstring strTitle;
    std::vector<TMenuItem> vMenu;
    std::vector<int> vToolBar; ///< command ids in order, 0 for a separator
};

/// Setup of a new canvas frame; its menu replaces the main frame's while it is the active child.
struct TCanvasWindowSetup {
    std::wstring strTitle;
    std::vector<TMenuItem> vMenu;
};

class IPanelWindow;
struct TPanelSetup;

/// Creates windows. The window system owns a window, which lives until Destroy.
class IWindowFactory {
public:
    virtual ~IWindowFactory() = default;
    /// Null when the window system refuses.
    virtual IMainWindow* CreateMainWindow(IWindowClient& client, const TMainWindowSetup& setup) = 0;
    virtual ICanvasWindow* CreateCanvasWindow(IMainWindow& parent, IWindowClient& client,
                                              const TCanvasWindowSetup& setup) = 0;
    /// Initially hidden.
    virtual IPanelWindow* CreatePanelWindow(IMainWindow& parent, IWindowClient& client,
                                            const TPanelSetup& setup) = 0;
};
