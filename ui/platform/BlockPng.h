// A copied block as a PNG file, the form with alpha that most programs read.
#pragma once

#include "core/Platform/System.h"

#include <QByteArray>

/// Encodes quickly, with the block's alpha; empty for a block that cannot be read. Raises std::bad_alloc.
QByteArray MakeBlockPng(const TDibBytes& spBlock);
