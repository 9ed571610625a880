// Named pressure settings (memos) and their storage in the settings.
#pragma once

#include "core/RasterStroke/BrushParam.h"

#include <boost/noncopyable.hpp>

#include <string>
#include <vector>

class CIniConfig;

/// One memo: a name and the eight values of a TBrushParam that the pressure panel changes.
struct TPressMemo {
    std::wstring strName;
    TBrushParam param; ///< only those eight values are used

    friend bool operator==(const TPressMemo&, const TPressMemo&) = default;
};

/// Copies only the pressure values.
void CopyPressure(TBrushParam& to, const TBrushParam& from);

/// The memos in display order. Every operation on a memo raises a violation when the index is invalid.
class CPressMemoView : boost::noncopyable {
public:
    void Read(CIniConfig& config);
    /// Writes what has changed since Read.
    void Write(CIniConfig& config);

    const std::vector<TPressMemo>& GetMemos() const { return vParamsMemo; }
    /// The memo at an index.
    const TPressMemo& Get(int idxSel) const;
    /// Appends a memo of these values under an unused name; returns its index.
    int Add(const TBrushParam& param);
    void Remove(int idxSel);
    /// An empty name is ignored.
    void Rename(int idxSel, const std::wstring& strName);
    void Move(int idxSel, int idxTo);

private:
    size_t Check(int idxSel) const;

    std::vector<TPressMemo> vParamsMemo;
    std::vector<TPressMemo> m_vRead;
};
