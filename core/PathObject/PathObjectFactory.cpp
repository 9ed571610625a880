#include "core/PathObject/PathObjectFactory.h"

#include "core/Base/Failure.h"
#include "core/PathObject/PathObjects.h"

#include <boost/make_shared.hpp>

boost::shared_ptr<CPathObject> CreatePathObjectByTag(uint32_t uTag) {
    if (uTag == COpenPathStream::CHUNK_TAG) return boost::make_shared<COpenPathObject>();
    if (uTag == CClosedPathStream::CHUNK_TAG) return boost::make_shared<CClosedPathObject>();
    throw deserialize_error();
}
