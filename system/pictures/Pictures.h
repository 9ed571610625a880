// Copies of pictures: in memory, and as text, in base64 after "data:image/png;base64," (a PNG) or
// "data:image/x-dib;base64," (a clipboard's block).
#pragma once

#include <boost/shared_ptr.hpp>

#include <string>
#include <string_view>

class IBitmap;

/// Returns a new bitmap with the same pixels; null when there is no memory or the bitmap cannot be locked.
boost::shared_ptr<IBitmap> CopyPicture(IBitmap& bitmap);
/// Encodes the picture with its alpha; empty when there is no memory or the bitmap cannot be locked.
std::string WritePictureText(IBitmap& bitmap);
/// True when the text starts with the picture prefix.
bool IsPictureText(std::string_view strText);
/// The same for the bytes of a block.
std::string WriteBlockText(const std::string& strBlock);
bool IsBlockText(std::string_view strText);
/// The same for strokes in the application's own form.
std::string WriteStrokesText(const std::string& strStrokes);
bool IsStrokesText(std::string_view strText);
/// The bytes in any of these texts; characters that are not base64 are skipped.
std::string ReadPictureText(std::string_view strText);
