// The settings of new paths.
#pragma once

#include "core/PathObject/PathObjects.h"

#include <array>

class CIniConfig;

/// The largest base half-width that the pane sets, in path units.
constexpr uint32_t PATH_PARAM_WIDTH_MAX = 8000;

/// A row of the pane's lists: its text in pixels and the value in path units.
struct TWaveRow {
    const wchar_t* pszText;
    uint32_t uValue;
};

/// The wave's steps and strengths that can be chosen.
inline constexpr std::array<TWaveRow, 7> WAVE_STEP_ROWS{{{L" 2.00", 16},
                                                         {L" 3.00", 24},
                                                         {L" 4.00", 32},
                                                         {L" 6.00", 48},
                                                         {L" 8.00", 64},
                                                         {L"12.00", 96},
                                                         {L"16.00", 128}}};
inline constexpr std::array<TWaveRow, 9> WAVE_WIDTH_ROWS{{{L".125", 1},
                                                          {L"0.25", 2},
                                                          {L".375", 3},
                                                          {L"0.50", 4},
                                                          {L"0.75", 6},
                                                          {L"1.00", 8},
                                                          {L"1.50", 12},
                                                          {L"2.00", 16},
                                                          {L"2.50", 20}}};

/// Values of the settings section "PathTool"; widths and the wave in path units.
struct TPathParam {
    uint32_t uDefaultWidth = 8; ///< half-width
    uint32_t uDefaultBegin = TERM_SHARP;
    uint32_t uDefaultTerm = TERM_SHARP;
    bool bOpenPath = true; ///< new paths are strokes; otherwise filled shapes
    bool bWaveEnable = false;
    uint32_t uWaveStep = 32;
    uint32_t uWaveWidth = 4;

    /// Reads the section; values out of range are replaced by their defaults.
    static TPathParam Read(CIniConfig& config);
    void Write(CIniConfig& config) const;
    /// Gives a stroke the width, ends and wave.
    void ApplyTo(COpenPathStream& stream) const;
    /// A new path of the chosen kind without anchors.
    boost::shared_ptr<CPathObject> CreatePath() const;

    friend bool operator==(const TPathParam&, const TPathParam&) = default;
};
