// The rows of the brush panel's presets: which one each tool has chosen, and their samples.
#pragma once

#include "core/Panels/BrushPresets.h"
#include "core/Platform/Tree.h"
#include "core/RasterBrush/RasterBrushBase.h"

class IClock;
class IImageCodecs;

/// Each tool has its own rows. Every operation on a row ignores one that does not exist.
class CPresetRows : boost::noncopyable {
public:
    /// Both must outlive the rows.
    CPresetRows(IClock& clock, IImageCodecs& codecs) : m_clock(clock), m_codecs(codecs) {}

    void Read(CIniConfig& config) { m_presets.Read(config); }
    void Write(CIniConfig& config) { m_presets.Write(config); }

    /// The rows of a tool. A row shows the size; the chosen one has a mark while the tool is set otherwise.
    std::vector<TTreeRow> MakeRows(const CRasterBrushBase& tool);
    /// The row that was chosen last, or one that sets the tool as it is; -1 for none.
    int GetChosen(const CRasterBrushBase& tool);
    /// Draws one sample that is missing; false when there is none.
    bool DrawNextSample(const CRasterBrushBase& tool);

    /// Sets the tool by a preset, which keeps the colours.
    void Choose(CRasterBrushBase& tool, int nRow);
    /// Adds the tool's settings behind the chosen row under an unused name, and chooses them.
    void Add(const CRasterBrushBase& tool);
    /// Replaces the chosen preset's values by the tool's.
    void Update(const CRasterBrushBase& tool);
    void RemoveChosen(const CRasterBrushBase& tool);
    /// An empty name is ignored.
    void Rename(const CRasterBrushBase& tool, int nRow, const std::wstring& strName);
    /// Moves a row above or below another; beyond the last one it becomes the last.
    void Move(const CRasterBrushBase& tool, int nFrom, int nTo, EDropAt at);

    /// The bytes of a file with the tool's presets.
    std::string FormatFile(const std::wstring& strTool);
    /// Appends the presets of a file. Raises deserialize_error, and changes nothing then.
    void AppendFile(std::string_view strText) { m_presets.Append(ParsePresets(strText)); }

private:
    struct TSample {
        std::wstring strTool;
        TBrushParam param;
        boost::shared_ptr<const TPicture> spPicture;
    };

    boost::shared_ptr<const TPicture> FindSample(const std::wstring& strTool, const TBrushParam& param) const;
    /// A preset of the tool, null when the row does not exist.
    TBrushPreset* Find(const CRasterBrushBase& tool, int nRow);

    IClock& m_clock;
    IImageCodecs& m_codecs;
    CBrushPresets m_presets;
    std::map<std::wstring, int> m_mapChosen; ///< row by tool
    std::vector<TSample> m_vSamples;
};
