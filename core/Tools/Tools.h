// The base of every canvas tool: what the view tells it, and the filter before it.
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

/// Flags of a pointer event.
enum EPointerFlag : uint32_t {
    POINTER_CONTROL = 0x01,
    POINTER_SHIFT = 0x02,
    POINTER_ALT = 0x04,
    POINTER_TABLET = 0x10, ///< the event came from the tablet
    POINTER_LOW = 0x20,    ///< the pen touches below the pressure threshold
};

/// States that tools share: 0 is idle; what others mean is up to the tool family.
enum EToolState : int {
    STATE_IDLE = 0,
    STATE_MOUSE = 1,  ///< an operation of the mouse
    STATE_TABLET = 2, ///< an operation of the pen
};

/// A tool. Positions are canvas positions in eighths of a pixel, pressure 0 to 1024, altitude 0 to 90
/// degrees, 90 upright; results are true when a redraw is due. While the state is not idle the tool holds the
/// canvas and the layer that it began on, whatever the user activates meanwhile.
class CTools : public boost::enable_shared_from_this<CTools>, boost::noncopyable {
public:
    explicit CTools(const TToolOutside& outside);
    virtual ~CTools() = default;

    virtual bool OnMouseMove(int32_t, int32_t, uint32_t, uint32_t) { return false; }
    virtual bool OnMouseMove(int32_t x, int32_t y, uint32_t pressure, uint32_t altitude, uint32_t flags);
    virtual bool OnLButtonDown(int32_t, int32_t, uint32_t) { return false; }
    virtual bool OnLButtonUp(int32_t, int32_t, uint32_t) { return false; }
    /// The pen's tip touched or lifted; comes behind the button's own event, which has no pressure.
    virtual bool OnPenTip(int32_t, int32_t, uint32_t, uint32_t, uint32_t) { return false; }
    virtual bool OnRButtonDown(int32_t, int32_t, uint32_t) { return false; }
    virtual bool OnRButtonUp(int32_t, int32_t, uint32_t) { return false; }
    /// The pen left the sensing range, or entered it.
    virtual bool OnProximityLeave() { return false; }
    virtual bool OnProximityEnter() { return false; }
    /// The view lost the pointer.
    virtual bool OnMouseLeave() { return false; }
    /// True while something that the tool began waits for its end though no operation runs: floating pixels,
    /// a preview.
    virtual bool IsOpen() const { return false; }
    /// Ends that: it becomes part of the document, as one undo step, or goes without a trace.
    virtual void EndOpen(bool) {}
    /// Ends an operation without its result.
    virtual bool Cancel() { return false; }
    /// Virtual keys.
    virtual bool OnKeyDown(int) { return false; }
    virtual bool OnKeyUp(int) { return false; }
    /// A menu command that the tool answers for, and whether it is enabled.
    virtual bool OnCommand(int) { return false; }
    virtual bool CanCommand(int) const { return false; }
    /// The main frame's private message that is meant for the active tool; true when it is handled.
    virtual bool OnPrivateMessage(int64_t, int64_t) { return false; }
    virtual bool Copy() { return false; }
    virtual bool Cut() { return false; }
    virtual bool Paste() { return false; }
    virtual bool CanCopy() const { return false; }
    virtual bool CanCut() const { return false; }
    virtual bool CanPaste() const { return false; }
    /// Draws over the canvas.
    virtual void DrawOverlay(COverlay& overlay, const TOverlayMapper& mapper) const = 0;
    /// The client rectangle that DrawOverlay touches.
    virtual CRect GetOverlayRect(const TOverlayMapper& mapper) const;
    /// The class's own record.
    virtual const TToolInfo& GetInfo() const = 0;
    int GetToolId() const { return GetInfo().nId; }
    /// True when the tool can work on the active layer.
    virtual bool IsEnabled() const = 0;
    /// The text for a press where the tool cannot work; null where it can.
    virtual const wchar_t* GetRefusal() const { return nullptr; }
    /// The tool's name, also the text of its undo steps.
    const wchar_t* GetName() const { return GetInfo().pszName; }
    virtual ECursor GetCursor(CPoint) const { return GetInfo().cursor; }
    /// Writes those settings that have changed since the tool read or wrote them, at once; nothing when none
    /// has.
    virtual void KeepSettings() {}
    /// Idle lets canvas and layer go; anything else takes those of the active view. Raises internal_error
    /// when there are none.
    virtual void SetState(int state);

    /// The view's one entry for pointer events: `message` is a move, or a button down or up. Refuses a device
    /// while the other draws, and the mouse for a second after the pen: its echo must not draw. Key changes
    /// since the last event are told first.
    bool Dispatch(EMessage message, int32_t x, int32_t y, uint32_t pressure, uint32_t altitude,
                  uint32_t flags);
    /// The pen left the sensing range or entered it: its contact is over.
    bool TellProximity(bool bEnter);
    /// Cancel, and what is left of the pen's contact is dropped.
    bool CancelOperation();
    /// Milliseconds until an operation of a lifted pen ends by itself, since nothing more comes from it;
    /// nothing while that cannot be.
    std::optional<uint32_t> UntilSilence() const;
    /// Ends that operation, as a leave does, when its time has come.
    bool EndAfterSilence();
    CPenContact& GetContact() const { return m_outside.contact; }
    /// True for a device whose events Dispatch refuses now though the tool could work.
    bool Refuses(bool bTablet) const;
    int GetState() const { return m_state; }
    /// Brings the tool's keys in line with one that the view was told of; true when the tool did something.
    bool ChangeKey(int nKey, bool bDown);

protected:
    const TToolOutside& GetOutside() const { return m_outside; }
    /// The layer of the running operation, else the active view's; null when there is none.
    TLayerPtr GetLayer() const;
    /// The canvas of the running operation, else the active view's; null when there is none.
    boost::shared_ptr<CCanvasBuffer> GetCanvas() const;

    int m_state = STATE_IDLE;
    boost::shared_ptr<CCanvasBuffer> m_spCanvas;
    TLayerPtr m_spLayer;
    std::set<int> m_setKeys; ///< virtual keys that the tool believes to be down

private:
    bool SynthesizeKeys();

    const TToolOutside& m_outside;
    uint32_t m_uLastPenTick = 0;
    bool m_bPenSeen = false; ///< m_uLastPenTick means something
};

/// Makes what the active tool has open part of its document. Called before the document is saved, undone,
/// closed or changed by others, and before another tool or document becomes the active one.
void SettleActiveTool();

/// The tool that draws, held by the main frame; expired while there is none.
extern boost::weak_ptr<CTools> g_wpActiveTool;
