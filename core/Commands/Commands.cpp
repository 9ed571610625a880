#include "core/Commands/Commands.h"

#include "core/Base/Failure.h"
#include "core/Commands/CommandIds.h"

#include <algorithm>
#include <iterator>

namespace {

struct TNamed {
    int nId;
    const char* pszName;
};

constexpr TNamed NAMES[] = {
    {ID_FILE_NEW, "file-new"},
    {ID_FILE_OPEN, "file-open"},
    {ID_FILE_CLOSE, "file-close"},
    {ID_FILE_SAVE, "file-save"},
    {ID_FILE_SAVE_AS, "file-save-as"},
    {ID_FILE_EXPORT, "file-export"},
    {ID_FILE_MRU_FIRST, "file-recent-1"},
    {ID_FILE_MRU_FIRST + 1, "file-recent-2"},
    {ID_FILE_MRU_FIRST + 2, "file-recent-3"},
    {ID_FILE_MRU_FIRST + 3, "file-recent-4"},
    {ID_EDIT_UNDO, "edit-undo"},
    {ID_EDIT_REDO, "edit-redo"},
    {ID_EDIT_CUT, "edit-cut"},
    {ID_EDIT_COPY, "edit-copy"},
    {ID_NEW_A4_350, "new-a4-350"},
    {ID_NEW_A4_600, "new-a4-600"},
    {ID_NEW_FULL_HD, "new-full-hd"},
    {ID_NEW_LAST, "new-last"},
    {ID_EDIT_PASTE, "edit-paste"},
    {ID_EDIT_CLEAR, "edit-clear"},
    {ID_SELECT_ALL, "select-all"},
    {ID_SELECT_NONE, "select-none"},
    {ID_LAYER_NEW_RASTER, "layer-new-raster"},
    {ID_LAYER_NEW_VECTOR, "layer-new-vector"},
    {ID_LAYER_NEW_SET, "layer-new-set"},
    {ID_LAYER_DELETE, "layer-delete"},
    {ID_LAYER_CLIPPING, "layer-clipping"},
    {ID_LAYER_MERGE_DOWN, "layer-merge-down"},
    {ID_LAYER_RASTERIZE, "layer-rasterize"},
    {ID_LAYER_SOLO, "layer-solo"},
    {ID_MODE_GREY, "mode-grey"},
    {ID_MODE_RGB, "mode-rgb"},
    {ID_MODE_LIGHT, "mode-light"},
    {ID_IMAGE_RESOLUTION, "image-resolution"},
    {ID_IMAGE_SIZE, "image-size"},
    {ID_IMAGE_LEVEL, "image-level"},
    {ID_IMAGE_HSV, "image-hsv"},
    {ID_ZOOM_IN, "zoom-in"},
    {ID_ZOOM_OUT, "zoom-out"},
    {ID_VIEW_FIT, "view-fit"},
    {ID_VIEW_FLIP_V, "view-flip-v"},
    {ID_VIEW_FLIP_H, "view-flip-h"},
    {ID_VIEW_ROTATE_RIGHT, "view-rotate-right"},
    {ID_VIEW_ROTATE_LEFT, "view-rotate-left"},
    {ID_VIEW_INITIAL, "view-initial"},
    {ID_VIEW_OUTLINE, "view-outline"},
    {ID_VIEW_ALL_ANCHORS, "view-all-anchors"},
    {ID_PREDICTION_FIRST, "prediction-none"},
    {ID_PREDICTION_FIRST + 1, "prediction-weak"},
    {ID_PREDICTION_FIRST + 2, "prediction-medium"},
    {ID_PREDICTION_LAST, "prediction-strong"},
    {ID_VIEW_FAST_SCROLL, "view-fast-scroll"},
    {ID_VIEW_NEW, "view-new"},
    {ID_PANEL_LAYER, "panel-layer"},
    {ID_PANEL_HISTORY, "panel-history"},
    {ID_PANEL_TOOL_OPTION, "panel-tool-option"},
    {ID_PANEL_BRUSH, "panel-brush"},
    {ID_PANEL_TOOL, "panel-tool"},
    {ID_PANEL_PRESS, "panel-press"},
    {ID_PANEL_COLOR, "panel-color"},
    {ID_PANELS_HIDE, "panels-hide"},
    {ID_THEME_FIRST, "theme-system"},
    {ID_THEME_FIRST + 1, "theme-light"},
    {ID_THEME_LAST, "theme-dark"},
    {ID_BRUSH_SMALLER, "brush-smaller"},
    {ID_BRUSH_LARGER, "brush-larger"},
    {ID_HOLD_PICK, "hold-pick"},
    {ID_HOLD_HAND, "hold-hand"},
    {ID_SWITCH_TOOL_FIRST + 2, "tool-brush"},
    {ID_SWITCH_TOOL_FIRST + 3, "tool-eraser"},
    {ID_SWITCH_TOOL_FIRST + 4, "tool-select"},
    {ID_SWITCH_TOOL_FIRST + 5, "tool-move"},
    {ID_SWITCH_TOOL_FIRST + 6, "tool-path"},
    {ID_SWITCH_TOOL_FIRST + 7, "tool-path-width"},
    {ID_SWITCH_TOOL_FIRST + 8, "tool-pencil"},
    {ID_SWITCH_TOOL_FIRST + 9, "tool-transform"},
    {ID_SWITCH_TOOL_FIRST + 10, "tool-pen"},
    {ID_SWITCH_TOOL_FIRST + 11, "tool-vector-eraser"},
    {ID_SWITCH_TOOL_FIRST + 12, "tool-stroke-select"},
    {ID_WINDOW_ARRANGE, "window-arrange"},
    {ID_WINDOW_CASCADE, "window-cascade"},
    {ID_WINDOW_TILE_HORZ, "window-tile-horz"},
    {ID_WINDOW_TILE_VERT, "window-tile-vert"},
    {ID_APP_CONFIG, "app-config"},
    {ID_APP_MANUAL, "app-manual"},
    {ID_APP_ABOUT, "app-about"},
    {ID_APP_EXIT, "app-exit"},
};

} // namespace

int FindCommandId(std::string_view strName) {
    const auto it = std::ranges::find(NAMES, strName, &TNamed::pszName);
    return it == std::end(NAMES) ? 0 : it->nId;
}

const char* FindCommandName(int nId) {
    const auto it = std::ranges::find(NAMES, nId, &TNamed::nId);
    return it == std::end(NAMES) ? nullptr : it->pszName;
}

void CCommandTable::Bind(int nId, const TAct& fnDo, const TTest& fnEnabled, const TTest& fnChecked) {
    SELF_CHECK(invalid_argument, FindCommandName(nId));
    const bool bNew = m_mapBound.try_emplace(nId, TBound{fnDo, fnEnabled, fnChecked}).second;
    SELF_CHECK(invalid_argument, bNew);
}

const CCommandTable::TBound& CCommandTable::Find(int nId) const {
    const auto it = m_mapBound.find(nId);
    return it == m_mapBound.end() ? m_others : it->second;
}

TCommandState CCommandTable::GetState(int nId) const {
    const TBound& bound = Find(nId);
    const bool bEnabled = bound.fnDo && (!bound.fnEnabled || bound.fnEnabled(nId));
    return {bEnabled, bEnabled && bound.fnChecked && bound.fnChecked(nId)};
}

void CCommandTable::Do(int nId) const {
    const TBound& bound = Find(nId);
    if (bound.fnDo) bound.fnDo(nId);
}
