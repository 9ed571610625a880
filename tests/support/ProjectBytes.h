// Chunks and documents to and from the bytes of a file.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"

#include <boost/make_shared.hpp>

/// A file that holds one chunk.
inline TBytes FileOf(const CSerializer& chunk) {
    CSerializer file;
    file.WriteChunk(chunk);
    return file.GetPayload();
}

inline CDeserializer OpenChunk(const TBytes& vFile) {
    CDeserializer file(boost::make_shared<TBytes>(vFile));
    CDeserializer top;
    file.ReadChunk(top);
    return top;
}

inline TBytes SaveToBytes(const CCanvasBuffer& canvas) { return FileOf(canvas.Serialize()); }

inline boost::shared_ptr<CCanvasBuffer> LoadFromBytes(const TBytes& vBytes) {
    CDeserializer top = OpenChunk(vBytes);
    auto spCanvas = boost::make_shared<CCanvasBuffer>();
    spCanvas->Deserialize(top, L"page.vlm");
    return spCanvas;
}
