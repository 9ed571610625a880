// The base of every canvas tool: its event handlers, and the filter that dispatches events to them.
#pragma once

#include "core/LayerBuffer/LayerBuffer.h"
#include "core/Platform/Message.h"
#include "core/Tools/ActiveView.h"
#include "core/Tools/Overlay.h"
#include "core/Tools/ToolInfo.h"
#include "core/Tools/ToolOutside.h"

#include <boost/enable_shared_from_this.hpp>
#include <boost/noncopyable.hpp>

#include <optional>
#include <set>
#include <string>
#include <vector>

/// Flags of a pointer event.
enum EPointerFlag : uint32_t {
    POINTER_CONTROL = 0x01,
    POINTER_SHIFT = 0x02,
    POINTER_ALT = 0x04,
    POINTER_TABLET = 0x10, ///< the event came from the tablet
    POINTER_LOW = 0x20,    ///< the pen touches below the pressure threshold
};

/// States common to all tools: 0 is idle; each tool family defines its other states.
enum EToolState : int {
    STATE_IDLE = 0,
    STATE_MOUSE = 1,  ///< an operation by mouse
    STATE_TABLET = 2, ///< an operation by pen
};

/// Why a tool's uncommitted results end.
enum class EOpenEnd {
    Discard, ///< the user gives them up
    Commit,  ///< the document is changed by others or closed, or another one becomes active
    History, ///< the document goes to another state of its history
    Tool,    ///< another tool becomes active
};

/// A tool. Positions are canvas positions in eighths of a pixel, pressure 0 to 1024, altitude 0 to 90
/// degrees, 90 upright; handlers return true when a redraw is due. While the state is not idle the tool
/// keeps the canvas and the layer of its operation, whatever the user activates meanwhile.
class CTools : public boost::enable_shared_from_this<CTools>, boost::noncopyable {
public:
    explicit CTools(const TToolOutside& outside);
    virtual ~CTools() = default;

    virtual bool OnMouseMove(int32_t, int32_t, uint32_t, uint32_t) { return false; }
    virtual bool OnMouseMove(int32_t x, int32_t y, uint32_t pressure, uint32_t altitude, uint32_t flags);
    virtual bool OnLButtonDown(int32_t, int32_t, uint32_t) { return false; }
    virtual bool OnLButtonUp(int32_t, int32_t, uint32_t) { return false; }
    /// The pen's tip touched or lifted; follows the button's own event, which has no pressure.
    virtual bool OnPenTip(int32_t, int32_t, uint32_t, uint32_t, uint32_t) { return false; }
    virtual bool OnRButtonDown(int32_t, int32_t, uint32_t) { return false; }
    virtual bool OnRButtonUp(int32_t, int32_t, uint32_t) { return false; }
    /// The pen left or entered the sensing range.
    virtual bool OnProximityLeave() { return false; }
    virtual bool OnProximityEnter() { return false; }
    /// The pen was turned to its eraser end, or back. True when the tool acts on it; otherwise the eraser
    /// becomes the active tool.
    virtual bool OnPenEnd(bool) { return false; }
    /// Another place of the canvas lies under the pointer, or the canvas has changed there. True when a
    /// redraw is due.
    virtual bool OnPointerOver(CPoint) { return false; }
    /// The pointer left the view.
    virtual bool OnMouseLeave() { return false; }
    /// True while the tool has uncommitted results without a running operation: floating pixels, a preview.
    virtual bool IsOpen() const { return false; }
    /// Commits those results as one undo step, or discards them. With `Commit` nothing may be lost, with
    /// `Discard` nothing may stay; for the other reasons the tool decides.
    virtual void EndOpen(EOpenEnd) {}
    /// A question, to be answered by yes, no or cancel, before a document with open results is closed; null
    /// when they are to be committed without asking.
    virtual const wchar_t* GetCloseQuestion() const { return nullptr; }
    /// Takes an open preview out of the document's picture (false) while that is written to a file, or shows
    /// it again. False when the tool cannot: the results are committed before writing.
    virtual bool ShowPreview(bool) { return false; }
    /// Cancels the running operation.
    virtual bool Cancel() { return false; }
    /// Escape, while there is no operation to cancel and nothing open. True when the tool makes use of it.
    virtual bool OnEscape() { return false; }
    /// Key events, with virtual keys.
    virtual bool OnKeyDown(int) { return false; }
    virtual bool OnKeyUp(int) { return false; }
    /// A held key repeats.
    virtual bool OnKeyRepeat(int) { return false; }
    /// Executes a menu command that the tool handles, and tests whether it is enabled.
    virtual bool OnCommand(int) { return false; }
    virtual bool CanCommand(int) const { return false; }
    /// Handles the main frame's private message for the active tool; true when it is handled.
    virtual bool OnPrivateMessage(int64_t, int64_t) { return false; }
    virtual bool Copy() { return false; }
    virtual bool Cut() { return false; }
    /// Pastes the clipboard's picture, with any tool on any layer.
    virtual bool Paste();
    virtual bool CanCopy() const { return false; }
    virtual bool CanCut() const { return false; }
    virtual bool CanPaste() const;
    /// Draws over the canvas.
    virtual void DrawOverlay(COverlay& overlay, const TOverlayMapper& mapper) const = 0;
    /// The bounds of the overlay in client pixels.
    virtual CRect GetOverlayRect(const TOverlayMapper& mapper) const;
    /// The client rectangles in which the overlay has changed since the last call, for a tool that knows
    /// them; nullopt stands for the overlay's whole bounds before and now.
    virtual std::optional<std::vector<CRect>> TakeOverlayChanges(const TOverlayMapper&) { return {}; }
    /// The description of the tool's class.
    virtual const TToolInfo& GetInfo() const = 0;
    int GetToolId() const { return GetInfo().nId; }
    /// True when the tool can work on the active layer.
    virtual bool IsEnabled() const = 0;
    /// The reason why the tool cannot work, shown on a press; null where it can.
    virtual const wchar_t* GetRefusal() const { return nullptr; }
    /// A short hint for the status line while these modifiers (POINTER_ bits) are held: how to cancel the
    /// present operation, or what the tool does; empty where the tool cannot work.
    virtual const wchar_t* GetHint(uint32_t uModifiers) const;
    /// The tool's name, also the label of its undo steps.
    const wchar_t* GetName() const { return GetInfo().pszName; }
    virtual ECursor GetCursor(CPoint) const { return GetInfo().cursor; }
    /// Writes settings that have changed since they were read or written, immediately.
    virtual void KeepSettings() {}
    /// Idle releases canvas and layer; any other state keeps those of the active view. Raises
    /// internal_error when there are none.
    virtual void SetState(int state);

    /// The view's one entry for pointer events: `message` is a move, or a button down or up. Ignores a
    /// device while the other one draws, and mouse events for a second after pen events, since the system
    /// generates them for a pen. Key changes since the last event are dispatched first.
    bool Dispatch(EMessage message, int32_t x, int32_t y, uint32_t pressure, uint32_t altitude,
                  uint32_t flags);
    /// The pen left or entered the sensing range, which ends its contact.
    bool TellProximity(bool bEnter);
    /// Cancels the operation and drops the rest of the pen's contact.
    bool CancelOperation();
    /// Milliseconds until an operation of a lifted pen times out for lack of events; nullopt when it
    /// cannot.
    std::optional<uint32_t> UntilSilence() const;
    /// Ends that operation, as leaving the range does, after its timeout.
    bool EndAfterSilence();
    CPenContact& GetContact() const { return m_outside.contact; }
    /// True while Dispatch ignores the device's events although the tool could work.
    bool Refuses(bool bTablet) const;
    int GetState() const { return m_state; }
    /// Updates the tool's state of one key; true when the tool handled the change.
    bool ChangeKey(int nKey, bool bDown);

protected:
    const TToolOutside& GetOutside() const { return m_outside; }
    /// The layer of the running operation, or else the active view's; null when there is none.
    TLayerPtr GetLayer() const;
    /// The canvas of the running operation, or else the active view's; null when there is none.
    boost::shared_ptr<CCanvasBuffer> GetCanvas() const;
    /// The step of an arrow key in canvas pixels, in the direction that the view shows: 1, with Shift 10; (0,
    /// 0) for other keys and without a view.
    CPoint GetArrowStep(int nKey) const;
    /// The active view, null when there is none.
    static boost::shared_ptr<IActiveView> GetView() { return g_wpActiveView.lock(); }

    int m_state = STATE_IDLE;
    boost::shared_ptr<CCanvasBuffer> m_spCanvas;
    TLayerPtr m_spLayer;
    std::set<int> m_setKeys; ///< virtual keys recorded as down

private:
    bool SynthesizeKeys();

    const TToolOutside& m_outside;
    uint32_t m_uLastPenTick = 0;
    bool m_bPenSeen = false; ///< m_uLastPenTick is valid
};

/// Ends the active tool's open results. Called before the document is undone, closed or changed by others,
/// and before another tool or document is activated.
void SettleActiveTool(EOpenEnd why = EOpenEnd::Commit);

/// While this object exists the documents can be written to files: the active tool's open results are out of
/// the picture, or committed.
class CPreviewOut : boost::noncopyable {
public:
    CPreviewOut();
    ~CPreviewOut();

private:
    boost::shared_ptr<CTools> m_spTool; ///< whose preview comes back; null for none
};

/// The active tool, owned by the main frame; expired while there is none.
extern boost::weak_ptr<CTools> g_wpActiveTool;
