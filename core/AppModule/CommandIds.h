// Command ids: what menus, tool bar, accelerators and session scripts name a command by.
#pragma once

enum ECommand : int {
    ID_FILE_NEW = 57600,
    ID_FILE_OPEN = 57601,
    ID_FILE_CLOSE = 57602,
    ID_FILE_SAVE = 57603,
    ID_FILE_SAVE_AS = 57604,
    ID_FILE_MRU_FIRST = 57616,
    ID_FILE_MRU_LAST = 57631,
    ID_EDIT_UNDO = 57643,
    ID_EDIT_REDO = 57644,
    ID_WINDOW_ARRANGE = 57649,
    ID_WINDOW_CASCADE = 57650,
    ID_WINDOW_TILE_HORZ = 57651,
    ID_WINDOW_TILE_VERT = 57652,
    ID_APP_ABOUT = 57664,
    ID_APP_EXIT = 57665,
    ID_VIEW_NEW = 12800,
    ID_VIEW_OUTLINE = 12806,
    ID_VIEW_ALL_ANCHORS = 12807,
    ID_VIEW_FAST_SCROLL = 12808,
    ID_VIEW_FLIP_V = 12810,
    ID_VIEW_FLIP_H = 12811,
    ID_VIEW_ROTATE_RIGHT = 12812,
    ID_VIEW_ROTATE_LEFT = 12813,
    ID_VIEW_INITIAL = 12814,
    ID_PREDICTION_FIRST = 12816, ///< none, weak, medium, strong
    ID_PREDICTION_LAST = 12819,
    ID_ZOOM_IN = 12820,
    ID_ZOOM_OUT = 12821,
    IDC_ZOOM_COMBO = 101, ///< a line of the zoom box was chosen: lParam is the line
};
