// GIF encoder; Qt can only read GIF.
#pragma once

#include <QImage>

#include <optional>
#include <string>

/// The bytes of a GIF file with one picture of a Format_Indexed8 image; nullopt when a side is over 65535 or
/// there is no memory.
std::optional<std::string> EncodeGif(const QImage& imageIndexed);
