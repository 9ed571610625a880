// Whole sets of a path's width points, cuts or opacity marks, changed as one action.
#pragma once

#include "core/PathCtlPtHandle/VectorHandle.h"
#include "core/PathObject/PathObjects.h"

/// Ends a drag: the live set of the class becomes the committed one, one action with this label. A live set
/// that is equal to the committed one, or refused, is dropped without an action.
template <class TPoint>
void CommitMarks(const boost::shared_ptr<COpenPathObject>& spPath, const wchar_t* pszLabel,
                 const TRegisterHistory& fnRegister);

/// Removes a width point, an opacity mark, or a cut with the other one of its pair: one action. False for a
/// point of another kind.
bool RemoveMark(const boost::shared_ptr<COpenPathObject>& spPath, const CPathControlPointBase& mark,
                const TRegisterHistory& fnRegister);

extern template void CommitMarks<CPathWidthControlPoint>(const boost::shared_ptr<COpenPathObject>&,
                                                         const wchar_t*, const TRegisterHistory&);
extern template void CommitMarks<CPathTransControlPoint>(const boost::shared_ptr<COpenPathObject>&,
                                                         const wchar_t*, const TRegisterHistory&);
extern template void CommitMarks<CPathAlphaControlPoint>(const boost::shared_ptr<COpenPathObject>&,
                                                         const wchar_t*, const TRegisterHistory&);
