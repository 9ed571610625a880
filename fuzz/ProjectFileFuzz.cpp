// Fuzzes the project file reader: accepted files can be composed and saved, and a saved file loads and
// saves identically.
#include "core/Base/Failure.h"
#include "core/CanvasBuffer/CanvasBuffer.h"

#include <boost/make_shared.hpp>

#include <cstdlib>

namespace {

boost::shared_ptr<CCanvasBuffer> Load(TBytes vBytes) {
    CDeserializer file(boost::make_shared<TBytes>(std::move(vBytes)));
    CDeserializer top;
    file.ReadTop(top);
    auto spCanvas = boost::make_shared<CCanvasBuffer>();
    spCanvas->Deserialize(top, L"page.vlm");
    return spCanvas;
}

TBytes Save(const CCanvasBuffer& canvas) {
    CSerializer file;
    file.WriteTop(canvas.Serialize());
    return file.GetPayload();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
    TBytes vSaved;
    try {
        const auto spCanvas = Load(TBytes(pData, pData + nSize));
        spCanvas->FlushCanvasUpdates();
        ComposeBlock(*spCanvas, 0, 0);
        vSaved = Save(*spCanvas);
    } catch (const deserialize_error&) {
        return 0;
    }
    // Outside the guard: the reader must accept every file of the writer.
    if (Save(*Load(vSaved)) != vSaved) std::abort();
    return 0;
}
