// The hand's movement that a path was made from.
#pragma once

#include "core/Base/Geometry.h"
#include "core/RasterStroke/BrushParam.h"
#include "core/RasterStroke/StrokeInput.h"
#include "core/Serializer/Serializer.h"

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

/// The samples of a pen stroke with the settings of its conversion, so that smoothing and tolerance can be
/// changed later.
struct TInkSamples {
    static constexpr uint32_t CHUNK_TAG = MakeTag("PINK");

    TStrokeInput input{};      ///< positions are path units; altitudes are not stored
    TBrushParam param{};       ///< stored is what smooths the line and makes its half-widths and opacities
    uint32_t uTolerance = 35;  ///< of the conversion, in hundredths of a canvas pixel
    uint32_t uFittedWidth = 8; ///< the base half-width that the conversion gave the path
    uint32_t uShape = 0;       ///< the shape that the samples belong to (COpenPathStream::SetSamples)

    /// A chunk to be attached to the path's.
    CSerializer Serialize() const;
    /// Null for a chunk that is damaged: the path is whole without it. Numbers out of range are clamped.
    static boost::shared_ptr<const TInkSamples> Deserialize(CDeserializer& reader);
    /// The samples with their positions mapped.
    TInkSamples Mapped(const boost::function<CPoint(CPoint)>& fnMap) const;
};
