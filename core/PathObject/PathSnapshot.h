// The undo state of a path.
#pragma once

#include "core/PathObject/PathControlPoint.h"
#include "core/PathObject/PathTransControlPoint.h"
#include "core/PathObject/PathWidthControlPoint.h"

#include <list>
#include <vector>

/// The committed values of a path and the objects that they belong to, so that references to a point stay
/// valid after an undo.
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
