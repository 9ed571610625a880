// Whole sets of a path's width points or cuts, changed as one action.
#pragma once

#include "core/PathCtlPtHandle/VectorHandle.h"
#include "core/PathObject/PathObjects.h"

/// In order of creation; `TPoint` is CPathWidthControlPoint or CPathTransControlPoint.
template <class TPoint>
using TPathMarks = std::vector<boost::shared_ptr<TPoint>>;

template <class TPoint>
const TPathMarks<TPoint>& GetMarks(const COpenPathStream& stream, size_t state);
/// Replaces the live set; the caller refreshes the path.
template <class TPoint>
void SetLiveMarks(COpenPathStream& stream, TPathMarks<TPoint> vMarks);

/// Ends a drag: the live set becomes the committed one, one action with this label. A live set that is equal
/// to the committed one, or refused, is dropped without an action.
template <class TPoint>
void CommitMarks(const boost::shared_ptr<COpenPathObject>& spPath, const wchar_t* pszLabel,
                 const TRegisterHistory& fnRegister);

/// Removes a width point, or a cut with the other one of its pair: one action. False for a point of another
/// kind.
bool RemoveMark(const boost::shared_ptr<COpenPathObject>& spPath, const CPathControlPointBase& mark,
                const TRegisterHistory& fnRegister);

extern template void CommitMarks<CPathWidthControlPoint>(const boost::shared_ptr<COpenPathObject>&,
                                                         const wchar_t*, const TRegisterHistory&);
extern template void CommitMarks<CPathTransControlPoint>(const boost::shared_ptr<COpenPathObject>&,
                                                         const wchar_t*, const TRegisterHistory&);

template <>
inline const TPathMarks<CPathWidthControlPoint>&
GetMarks<CPathWidthControlPoint>(const COpenPathStream& stream, size_t state) {
    return stream.GetWidthPoints(state);
}
template <>
inline const TPathMarks<CPathTransControlPoint>&
GetMarks<CPathTransControlPoint>(const COpenPathStream& stream, size_t state) {
    return stream.GetTransPoints(state);
}
template <>
inline void SetLiveMarks<CPathWidthControlPoint>(COpenPathStream& stream,
                                                 TPathMarks<CPathWidthControlPoint> vMarks) {
    stream.SetLiveWidthPoints(std::move(vMarks));
}
template <>
inline void SetLiveMarks<CPathTransControlPoint>(COpenPathStream& stream,
                                                 TPathMarks<CPathTransControlPoint> vMarks) {
    stream.SetLiveTransPoints(std::move(vMarks));
}
