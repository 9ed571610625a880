// Path objects by their chunk tags.
#pragma once

#include "core/PathObject/PathObject.h"

/// A new path of the class that a chunk tag names, to be deserialized; raises deserialize_error for a tag
/// that no class has.
boost::shared_ptr<CPathObject> CreatePathObjectByTag(uint32_t uTag);
