// The undo image of a path.
#pragma once

#include "core/PathObject/PathControlPoint.h"
#include "core/PathObject/PathTransControlPoint.h"
#include "core/PathObject/PathWidthControlPoint.h"

#include <list>
#include <vector>

/// The committed values of a path and which objects they belong to, so that what refers to a point still
/// finds it after an undo.
struct TPathSnapshot {
    virtual ~TPathSnapshot() = default;
    CSerializer chunk;
};

struct TClosePathSnapshot : TPathSnapshot {
    std::list<boost::shared_ptr<CPathControlPoint>> lstControlPoint;
};

struct TOpenPathSnapshot : TPathSnapshot {
    std::list<boost::shared_ptr<COpenPathControlPoint>> lstControlPoint;
    std::vector<boost::shared_ptr<CPathWidthControlPoint>> vWidth;
    std::vector<boost::shared_ptr<CPathTransControlPoint>> vTrans;
};
