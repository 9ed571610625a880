// Named presets of the freehand tools: their text form, in settings and in files that users share.
#pragma once

#include "core/RasterBrush/FreehandParam.h"

#include <boost/noncopyable.hpp>

#include <map>
#include <string>
#include <string_view>
#include <vector>

class CIniConfig;

/// A name and all settings of a freehand tool but its colours, which are those of the defaults.
struct TBrushPreset {
    std::wstring strName;
    TBrushParam param;
    TFreehandParam freehand;

    friend bool operator==(const TBrushPreset&, const TBrushPreset&) = default;
    /// True when both set a tool alike.
    bool SetsAs(const TBrushPreset& other) const {
        return param == other.param && freehand == other.freehand;
    }
};

using TBrushPresets = std::vector<TBrushPreset>;
/// The presets of each tool, by the tool's name in the settings.
using TPresetsOfTools = std::map<std::wstring, TBrushPresets>;

/// Formats presets as a table: tool, values other than the defaults ("BrushRadius=8 BlurLevel=100"), name.
std::string FormatPresets(const TPresetsOfTools& presets);
/// Parses that table. Unknown tools are kept, unknown keys ignored, values limited to their ranges. Raises
/// deserialize_error for a text without presets or in another form.
TPresetsOfTools ParsePresets(std::string_view strText);

/// The presets of all freehand tools, in the order shown, and their place in the settings (section
/// "BrushPreset"). A tool without presets there has the built-in ones.
class CBrushPresets : boost::noncopyable {
public:
    void Read(CIniConfig& config);
    /// Writes the tools whose presets have changed since Read.
    void Write(CIniConfig& config);

    /// The presets of a tool.
    TBrushPresets& Get(const std::wstring& strTool) { return m_presets[strTool]; }
    /// Appends the presets of a file to those of their tools; those that a tool has already are skipped.
    void Append(const TPresetsOfTools& presets);

private:
    TPresetsOfTools m_presets;
    TPresetsOfTools m_read;
};
