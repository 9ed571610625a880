// Icons rendered from the SVG resources at the screen's resolution.
#pragma once

#include <QIcon>

#include <string_view>

/// A line icon in the palette's button text colour; paler when disabled. Null when there is no such
/// resource.
QIcon LoadLineIcon(std::string_view strResource);
/// A picture icon with its own colours. Null when there is no such resource.
QIcon LoadPictureIcon(std::string_view strResource);
