// The histogram of the level correction, and the slider of its three values below it.
#pragma once

#include "core/Platform/Controls.h"
#include "core/RasterKernel/LevelKernel.h"

#include <boost/any.hpp>
#include <boost/noncopyable.hpp>

#include <memory>

class CGDIBuffer;

/// Pixels of 96 to the inch that stay empty at both sides of the histogram and the slider, so that level and
/// pin stand above each other.
constexpr int LEVEL_MARGIN = 15;
/// The least width of both, at which a pixel is a level.
constexpr int LEVEL_WIDTH = 255 + 2 * LEVEL_MARGIN;

/// Draws counters as an area, black on white.
class CLevelHistogram : public IPanelView, boost::noncopyable {
public:
    /// Counters that are limited already.
    void SetCounts(const TLevelCounts& aCounts);
    void OnPaint(IPaintTarget& target, const TPanelPaint& paint) override;

private:
    void Draw(CGDIBuffer& gdiHgram, int32_t nMargin) const;

    TLevelCounts m_aCounts{};
    std::unique_ptr<CGDIBuffer> m_gdiHgram; ///< null while it is out of date
};

/// Pins that set the low level, the gamma and the high level.
class CLevelSlider : public IPanelView, boost::noncopyable {
public:
    /// The values that the pins show and change.
    explicit CLevelSlider(TLevels& levels) : m_levels(levels) {}

    void OnPaint(IPaintTarget& target, const TPanelPaint& paint) override;
    /// A press on a pin begins a drag. True when a value has changed.
    bool OnPointer(EMessage id, CPoint pt);
    /// Left and right move the selected pin by a level, Space selects the next one. True when a redraw is
    /// due.
    bool OnKey(int nKey);

private:
    int32_t GetMargin() const;
    /// The horizontal position of a pin: 1 low, 2 gamma, 3 high.
    double GetPlace(int nPin) const;
    int FindPin(int32_t x) const;
    boost::any GetValue(int nPin) const;
    /// Moves a pin by levels from a value.
    void Move(int nPin, const boost::any& vOrg, int nLevels);

    TLevels& m_levels;
    CSize m_size{LEVEL_WIDTH, 1}; ///< at the last paint
    double m_dScale = 1;
    int m_nDrag = 0; ///< the pin that is dragged, 1 to 3; 0 for none
    int m_nSelected = 1;
    int32_t m_xPress = 0;
    boost::any vDragOrg; ///< the dragged pin's value at the press
};
