#include "core/PathObject/PathObjectFactory.h"

#include "core/Base/Failure.h"

boost::shared_ptr<CPathObject> CreatePathObjectByTag(uint32_t) {
    // No kind of path exists yet, so a file that holds one is not readable here.
    throw deserialize_error();
}
