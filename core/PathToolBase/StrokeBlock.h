// The controls of a stroke's values: width, ends and wave.
#pragma once

#include "core/PathToolBase/PathParam.h"
#include "core/Platform/Controls.h"

#include <boost/function.hpp>

#include <optional>
#include <vector>

/// Numbers of a block's controls behind its first one.
enum EStrokeOption : int {
    OPT_CAPTION = 3,
    OPT_WIDTH,
    OPT_UNIT,
    OPT_BEGIN, ///< three, by EPathTerm
    OPT_TERM = OPT_BEGIN + TERM_FLAT,
    OPT_WAVE = OPT_TERM + TERM_FLAT,
    OPT_WAVE_STEP,
    OPT_WAVE_WIDTH,
    OPT_COUNT,
};

/// The values that several strokes have in common; nullopt for one in which they differ.
struct TCommonParam {
    std::optional<uint32_t> width, begin, term, waveStep, waveWidth;
    std::optional<bool> wave;

    TCommonParam() = default;
    explicit TCommonParam(const TPathParam& param);
    /// Drops what another stroke has otherwise.
    void Join(const TPathParam& param);
};

/// A stroke's values as settings.
TPathParam ParamOf(const COpenPathStream& stream);

/// A block's controls. With `bOneRow` both ends stand in one row without labels.
std::vector<TPanelControl> MakeStrokeBlock(int nFirstId, const wchar_t* pszCaption, bool bOneRow);

/// Shows values in a block, whose controls `fnFind` returns by their ids; null disables it.
void ShowStrokeBlock(const boost::function<TPanelControl&(int)>& fnFind, int nFirstId,
                     const TCommonParam* pParam);

/// Sets the one value that a block's control shows; what is no value changes nothing.
void SetParam(TPathParam& param, int nOption, const TPanelControl& control);

/// Gives a stroke that value alone. An end that keeps its kind keeps its shape.
void ApplyOption(COpenPathStream& stream, int nOption, const TPanelControl& control);
