// The two kinds of paths.
#pragma once

#include "core/PathObject/ClosedPathStream.h"
#include "core/PathObject/OpenPathStream.h"
#include "core/PathObject/PathObject.h"

/// A filled shape.
class CClosedPathObject : public CPathObjectImpl<CClosedPathStream> {};

/// A stroked line.
class COpenPathObject : public CPathObjectImpl<COpenPathStream> {};
