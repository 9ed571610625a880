// Documents to and from the bytes of a project file.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"

#include <boost/make_shared.hpp>

inline TBytes SaveToBytes(const CCanvasBuffer& canvas) {
    CSerializer file;
    file.WriteChunk(canvas.Serialize());
    return file.GetPayload();
}

inline boost::shared_ptr<CCanvasBuffer> LoadFromBytes(const TBytes& vBytes) {
    CDeserializer file(boost::make_shared<TBytes>(vBytes));
    CDeserializer top;
    file.ReadChunk(top);
    auto spCanvas = boost::make_shared<CCanvasBuffer>();
    spCanvas->Deserialize(top, L"page.vlm");
    return spCanvas;
}
