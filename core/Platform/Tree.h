// The rows of a tree or list in a panel: layers, undo steps.
#pragma once

#include "core/Base/Geometry.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>
#include <vector>

/// A small opaque picture: row y starts at 4 * y * sz.cx, each pixel is B, G, R and 255.
struct TPicture {
    CSize sz;
    std::vector<uint8_t> vPixels;
};

/// Whether a row has rows below it that can be folded away, and whether they are.
enum class EFold { None, Open, Closed };
/// The eye in front of a row.
enum class EEye { None, Shown, Hidden };

/// One row of a tree, in the order shown. The rows of a closed one are not among them.
struct TTreeRow {
    std::wstring strText;
    std::wstring strNote = {}; ///< in paler letters: below the text, in a row without an eye at its right
    int nDepth = 0;
    EFold fold = EFold::None;
    EEye eye = EEye::None;
    bool bClipped = false; ///< has a mark that it is clipped to the row above with less depth
    bool bDim = false;     ///< in paler colours: not in effect
    std::string strIcon = {};
    boost::shared_ptr<const TPicture> spPicture = {}; ///< takes the icon's place
    bool bInk =
        false; ///< the picture is black ink on white: it is shown in the text's colour, without the white

    bool operator==(const TTreeRow&) const = default;
};

/// Which part of a row something is dropped on.
enum class EDropAt { Above, Onto, Below };

/// The request of a click on an eye.
enum class EEyeAct { Hide, Show, Alone };
