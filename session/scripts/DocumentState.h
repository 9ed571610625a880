// The active document as JSON: what "dump" writes and "expect" compares.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <string>

class CCanvasBuffer;
class CCanvasFrame;
class IImageCodecs;
struct TPlatform;

/// The frame that the user works in; raises step_failure when there is none.
CCanvasFrame& GetActiveFrame();

/// State of the active document; docs/session-scripts.md lists the keys. Without a document it holds only
/// the number of frames. `bPixels` adds the digest of the composite, which is updated first.
nlohmann::json DescribeDocument(IImageCodecs& codecs, bool bPixels);

/// The shape of that JSON: an object for an object, an array of one element for an array, and "text",
/// "number", "flag", or "layers" for the list of layers.
const nlohmann::json& GetDocumentShape();
/// The shape of one layer.
const nlohmann::json& GetLayerShape();

/// One pixel of the composite: R, G, B, straight alpha. Raises step_failure outside the canvas.
nlohmann::json DescribePixel(CCanvasBuffer& canvas, IImageCodecs& codecs, int32_t x, int32_t y);
