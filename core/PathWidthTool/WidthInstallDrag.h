// The drags of the operations on stretches.
#pragma once

#include "core/PathWidthTool/PathRangeDrag.h"

/// Half-widths by side, in path units.
using TSideWidths = std::array<uint32_t, 2>;

/// Operations on width points.
class CWidthRangeDrag : public CRangeInstallDragBase<CPathWidthControlPoint> {
public:
    explicit CWidthRangeDrag(const TRangePress& press, const wchar_t* pszLabel = L"太さ制御点の追加")
        : CRangeInstallDragBase(press, pszLabel) {}

protected:
    /// Makes the new point at `t` and sets its widths.
    void InstallAt(uint32_t t, const TSideWidths& auWidth);
    /// A point with the widths that the stroke had there before.
    void InstallOld(uint32_t t) { InstallAt(t, GetStream().GetWidthsAt(t, STATE_COMMITTED)); }
    /// The width of new points: the stroke's own by the coefficient.
    TSideWidths GetNewWidths() const;
    /// The parameter at `uPart` of `uParts` of the arc length from `tMin` to `tMax`.
    uint32_t PartAt(uint32_t tMin, uint32_t tMax, uint32_t uPart, uint32_t uParts) const;
};

/// Operations without a range: the press makes a single point, which follows the pointer.
class CWidthInstallDrag : public CWidthRangeDrag {
public:
    using CWidthRangeDrag::CWidthRangeDrag;

protected:
    void OnBegin() override { OnRange(GetStart(), GetStart(), GetStart()); }
    bool NeedsRange() const override { return false; }
};

/// One point at the pointer.
class CWidth1InstallDrag : public CWidthInstallDrag {
public:
    using CWidthInstallDrag::CWidthInstallDrag;

protected:
    void Install(uint32_t tNow, uint32_t, uint32_t) override { InstallAt(tNow, GetNewWidths()); }
};

/// A plateau: a point at each end.
class CWidth2InstallDrag : public CWidthRangeDrag {
public:
    using CWidthRangeDrag::CWidthRangeDrag;

protected:
    void Install(uint32_t tNow, uint32_t tMin, uint32_t tMax) override;
};

/// A bulge: a point in the middle; the ends keep their widths.
class CWidth3InstallDrag : public CWidthRangeDrag {
public:
    using CWidthRangeDrag::CWidthRangeDrag;

protected:
    void Install(uint32_t tNow, uint32_t tMin, uint32_t tMax) override;
};

/// A bulge with a flat top: points at a third and two thirds; the ends keep their widths.
class CWidth4InstallDrag : public CWidthRangeDrag {
public:
    using CWidthRangeDrag::CWidthRangeDrag;

protected:
    void Install(uint32_t tNow, uint32_t tMin, uint32_t tMax) override;
};

/// Changes the points of the range, or where there are none the width in its middle; the ends keep their
/// widths.
class CWidthChangeDrag : public CWidthRangeDrag {
public:
    using CWidthRangeDrag::CWidthRangeDrag;

protected:
    void Install(uint32_t tNow, uint32_t tMin, uint32_t tMax) override;
    virtual uint64_t Change(uint64_t uWidth) const = 0;

private:
    TSideWidths Changed(const TSideWidths& auWidth) const;
};

class CWidthMultDrag : public CWidthChangeDrag {
public:
    using CWidthChangeDrag::CWidthChangeDrag;

protected:
    uint64_t Change(uint64_t uWidth) const override;
};

/// The coefficient is in tenths of a canvas pixel.
class CWidthAddDrag : public CWidthChangeDrag {
public:
    using CWidthChangeDrag::CWidthChangeDrag;

protected:
    uint64_t Change(uint64_t uWidth) const override;
};

/// Removes the points of the range.
class CWidthEraseDrag : public CWidthRangeDrag {
public:
    explicit CWidthEraseDrag(const TRangePress& press) : CWidthRangeDrag(press, L"太さ制御点の削除") {}
};

/// Makes the range transparent; stretches that it meets become one with it.
class CTransInstallDrag : public CRangeInstallDragBase<CPathTransControlPoint> {
public:
    explicit CTransInstallDrag(const TRangePress& press)
        : CRangeInstallDragBase(press, L"透明化制御点の追加") {}

protected:
    void Install(uint32_t tNow, uint32_t tMin, uint32_t tMax) override;
};

/// Sets the opacity of the range to the coefficient, up to 1.0: a mark at each end. Unless marks follow
/// sooner, the stroke has its old opacity again as far beside the range as it is wide.
class CAlphaInstallDrag : public CRangeInstallDragBase<CPathAlphaControlPoint> {
public:
    explicit CAlphaInstallDrag(const TRangePress& press)
        : CRangeInstallDragBase(press, L"不透明度記号の追加") {}

protected:
    void Install(uint32_t tNow, uint32_t tMin, uint32_t tMax) override;

private:
    void SetAlpha(uint32_t t, uint32_t uAlpha);
    void KeepBeside(uint32_t t, uint32_t tBeside, uint32_t uAlpha);
};
