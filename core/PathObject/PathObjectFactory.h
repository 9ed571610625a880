// Creates path objects by their chunk tags.
#pragma once

#include "core/PathObject/PathObject.h"

/// Creates an empty path of a chunk tag's class, to be deserialized; raises deserialize_error for an
/// unknown tag.
boost::shared_ptr<CPathObject> CreatePathObjectByTag(uint32_t uTag);
