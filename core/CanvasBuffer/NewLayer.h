// The place and the name of a new layer.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"

#include <string>

/// The name of a new raster layer, before it is made unique.
inline constexpr wchar_t NEW_RASTER_LAYER[] = L"新規ラスタレイヤー";
/// The same of a vector layer.
inline constexpr wchar_t NEW_VECTOR_LAYER[] = L"新規ベクタレイヤー";

struct TNewPlace {
    TLayerPtr spParent;
    int idxLayer = 0;
};

/// Above the active layer; on top in an active set, and of all where no layer is active.
TNewPlace FindNewPlace(const CCanvasBuffer& canvas);

/// The name, with a number where a layer of the parent has it already.
std::wstring UniqueLayerName(const CLayerBuffer& parent, const std::wstring& strBase);
