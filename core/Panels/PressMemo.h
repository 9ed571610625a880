// Named pressure settings, and where the settings keep them.
#pragma once

#include "core/RasterStroke/BrushParam.h"

#include <boost/noncopyable.hpp>

#include <string>
#include <vector>

class CIniConfig;

/// One memo: a name and the eight values of a TBrushParam that the pressure panel changes.
struct TPressMemo {
    std::wstring strName;
    TBrushParam param; ///< of which only those eight count

    friend bool operator==(const TPressMemo&, const TPressMemo&) = default;
};

/// Takes the pressure values over, and nothing else.
void CopyPressure(TBrushParam& to, const TBrushParam& from);

/// The memos in the order in which they are shown. Every operation on a memo raises a violation when there is
/// no memo at the place.
class CPressMemoView : boost::noncopyable {
public:
    void Read(CIniConfig& config);
    /// Writes what has changed since Read.
    void Write(CIniConfig& config);

    const std::vector<TPressMemo>& GetMemos() const { return vParamsMemo; }
    /// The memo at a place.
    const TPressMemo& Get(int idxSel) const;
    /// Adds a memo of these values at the end, under a name that is free; returns its place.
    int Add(const TBrushParam& param);
    void Remove(int idxSel);
    /// An empty name is not taken.
    void Rename(int idxSel, const std::wstring& strName);
    void Move(int idxSel, int idxTo);

private:
    size_t Check(int idxSel) const;

    std::vector<TPressMemo> vParamsMemo;
    std::vector<TPressMemo> m_vRead;
};
