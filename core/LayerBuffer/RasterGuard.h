// Tiles of a plane are put back when an operation on them fails.
#pragma once

#include "core/RasterBuffer/RasterBuffer.h"

/// Keeps a shallow copy of a plane. Without Keep the destructor puts the tiles back that differ.
class CRasterGuard : boost::noncopyable {
public:
    explicit CRasterGuard(const boost::shared_ptr<CRasterBuffer>& spRaster)
        : m_spRaster(spRaster), m_spBefore(spRaster->ShallowCopy()) {}
    ~CRasterGuard() {
        if (m_bArmed)
            m_spRaster->ForEachBlock([&](CPoint pt) {
                const auto spOld = m_spBefore->GetBlock(pt, false);
                if (spOld != m_spRaster->GetBlock(pt, false)) m_spRaster->SetBlock(pt, spOld);
            });
    }
    /// The plane as it was.
    CRasterBuffer& GetBefore() const { return *m_spBefore; }
    /// The change is done.
    void Keep() { m_bArmed = false; }

private:
    boost::shared_ptr<CRasterBuffer> m_spRaster;
    boost::shared_ptr<CRasterBuffer> m_spBefore;
    bool m_bArmed = true;
};
