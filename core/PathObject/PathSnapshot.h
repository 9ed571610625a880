// The undo state of a path.
#pragma once

#include "core/PathObject/InkSamples.h"
#include "core/PathObject/PathAlphaControlPoint.h"
#include "core/PathObject/PathControlPoint.h"
#include "core/PathObject/PathTransControlPoint.h"
#include "core/PathObject/PathWidthControlPoint.h"

#include <list>

/// The committed values of a path and the objects that they belong to, so that references to a point stay
/// valid after an undo.
struct TPathSnapshot {
    virtual ~TPathSnapshot() = default;
    CSerializer chunk;                              ///< without samples
    boost::shared_ptr<const TInkSamples> spSamples; ///< null without any
};

struct TClosePathSnapshot : TPathSnapshot {
    std::list<boost::shared_ptr<CPathControlPoint>> lstControlPoint;
};

struct TOpenPathSnapshot : TPathSnapshot {
    std::list<boost::shared_ptr<COpenPathControlPoint>> lstControlPoint;
    TPathMarks<CPathWidthControlPoint> vWidth;
    TPathMarks<CPathTransControlPoint> vTrans;
    TPathMarks<CPathAlphaControlPoint> vAlpha;
};
