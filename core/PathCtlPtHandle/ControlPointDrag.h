// Drags of one value of a control point: an anchor, a handle, a mark, an end.
#pragma once

#include "core/PathCtlPtHandle/VectorHandle.h"

/// Starts the drag of the part of a path that `hit` names; `flags` are those of the press. Null for the line
/// and the ink, which are no parts of a point. Alt at the press on an anchor pulls out both its handles; on a
/// width mark it changes the width of the side alone to which the mark is pulled first.
boost::shared_ptr<CVectorHandle> CreateHandle(const boost::shared_ptr<CPathObject>& spPath,
                                              const TPathHit& hit, unsigned flags,
                                              const TRegisterHistory& fnRegister);

/// True for two handles that are opposite: within 2 degrees or 2 path units. A missing one is opposite to
/// any.
bool AreOpposite(CPoint back, CPoint fore);
