// The memory that a path takes.
#pragma once

#include "core/PathObject/PathObject.h"

/// Bytes of a path with its outlines, estimated.
inline size_t GetPathBytes(const CPathObject& path) {
    constexpr size_t PATH_BYTES = 1024; // beside what the points take
    constexpr size_t POINT_BYTES = 512; // with its share of the outline
    return PATH_BYTES + path.GetStream().ControlPointCount() * POINT_BYTES;
}
