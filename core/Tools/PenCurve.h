// The strength of the user's hand: how the pen's pressure is stretched before a tool sees it.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

class CIniConfig;
struct TPenAxis;

/// The pressures of a device that count: those above a threshold of 2 percent.
class CPressRange {
public:
    explicit CPressRange(const TPenAxis& axis);

    /// Pressure above the threshold, 0 to the range.
    uint32_t Above(uint32_t uPressure) const;
    /// True for a pen that touches below the threshold.
    bool IsLow(uint32_t uPressure) const;
    /// At least 1.
    uint32_t GetRange() const { return m_uRange; }

private:
    uint32_t m_uMin;
    uint32_t m_uThreshold;
    uint32_t m_uRange;
};

/// A smooth rising curve through three pressures, in 65536ths of the device's range above its threshold.
struct TPenCurve {
    static constexpr uint32_t FULL = 65536;

    uint32_t uLow = 0;           ///< the lightest one, which becomes the least
    uint32_t uMiddle = FULL / 2; ///< becomes one half
    uint32_t uHigh = FULL;       ///< becomes the greatest

    bool operator==(const TPenCurve&) const = default;

    /// The stretched pressure, 0 to `uRange` as `uPressure` itself. The default curve changes nothing; any
    /// other gives a pressure above 0 at least a 1024th, so that no contact is lost.
    uint32_t Apply(uint32_t uPressure, uint32_t uRange) const;

    /// Reads section "Tablet"; the default for values that do not rise.
    static TPenCurve Read(CIniConfig& config);
    void Write(CIniConfig& config) const;
};

/// How often each pressure was reported.
class CPressHistogram {
public:
    static constexpr size_t BINS = 256;

    /// A pressure above the threshold, 1 to `uRange`.
    void Add(uint32_t uPressure, uint32_t uRange);
    uint32_t GetCount() const { return m_uCount; }
    const std::array<uint32_t, BINS>& GetBins() const { return m_aBins; }
    /// The curve that gives these pressures the whole range; nullopt where they are too few, or too much the
    /// same, to tell.
    std::optional<TPenCurve> Fit() const;

private:
    /// The pressure in 65536ths that `uPercent` percent of the reports do not exceed.
    uint32_t GetPercentile(uint32_t uPercent) const;

    std::array<uint32_t, BINS> m_aBins{};
    uint32_t m_uCount = 0;
};
