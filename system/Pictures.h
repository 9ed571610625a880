// Copies of pictures: in memory, and as text for files of lines, a PNG in base64 behind
// "data:image/png;base64,".
#pragma once

#include <boost/shared_ptr.hpp>

#include <string>
#include <string_view>

class IBitmap;

/// A bitmap of its own with the same pixels; null when there is no memory or the bitmap cannot be locked.
boost::shared_ptr<IBitmap> CopyPicture(IBitmap& bitmap);
/// The picture with its alpha; empty when there is no memory or the bitmap cannot be locked.
std::string WritePictureText(IBitmap& bitmap);
/// True when the text begins like a picture.
bool IsPictureText(std::string_view strText);
/// The bytes of the PNG that the text holds; characters that are not base64 are left out.
std::string ReadPictureText(std::string_view strText);
