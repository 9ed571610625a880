// The main frame's private messages, and the functions that post and send them.
#pragma once

#include "core/Platform/Message.h"

#include <string>

constexpr EMessage WM_REFRESH_ALL =
    AppMessage(1); ///< everything that shows the active canvas or tool must refresh
constexpr EMessage WM_REFRESH_LAYERS = AppMessage(2);  ///< the active canvas's tree has changed
constexpr EMessage WM_REFRESH_HISTORY = AppMessage(3); ///< the active canvas's undo lists have changed
constexpr EMessage WM_REFRESH_TOOL = AppMessage(4);    ///< the tool or a setting that a panel shows has
                                                       ///< changed
constexpr EMessage WM_REFRESH_SCALE =
    AppMessage(5); ///< the status pane and the zoom box must refresh from the active frame
constexpr EMessage WM_SWITCH_TOOL = AppMessage(6);  ///< wParam: the new tool's number
constexpr EMessage WM_TOOL_MESSAGE = AppMessage(8); ///< passed to the active tool; ignored without a tool
constexpr EMessage WM_PEN_END = AppMessage(16);     ///< wParam: 1 while the pen's eraser end is near, else 0
constexpr EMessage WM_TELL = AppMessage(17);        ///< strText: reason of a refused press, for the status
                                                    ///< line
constexpr EMessage WM_ADD_RECENT = AppMessage(9);   ///< strText: a path for the recent list

/// Posts a message to the main frame's window; does nothing without one.
void PostToMainFrame(EMessage id, int64_t wParam = 0, const std::wstring& strText = {});
/// Sends one, which is handled on return; does nothing without a window.
void SendToMainFrame(EMessage id, int64_t wParam = 0);
