#include "core/GDIBuffer/RowPicture.h"

#include "core/GDIBuffer/GDIBuffer.h"

#include <boost/make_shared.hpp>

boost::shared_ptr<const TPicture> MakePicture(const CGDIBuffer& buffer) {
    const auto spPicture = boost::make_shared<TPicture>();
    spPicture->sz = buffer.GetSize();
    const size_t nBytes = static_cast<size_t>(buffer.GetStride()) * static_cast<size_t>(buffer.GetSize().cy);
    spPicture->vPixels.assign(buffer.GetPixelPtr({0, 0}), buffer.GetPixelPtr({0, 0}) + nBytes);
    return spPicture;
}
