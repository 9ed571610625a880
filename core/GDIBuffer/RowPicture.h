// A bitmap as the picture of a row in a tree.
#pragma once

#include "core/Platform/Tree.h"

class CGDIBuffer;

boost::shared_ptr<const TPicture> MakePicture(const CGDIBuffer& buffer);
