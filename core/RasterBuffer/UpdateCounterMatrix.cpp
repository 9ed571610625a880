#include "core/RasterBuffer/UpdateCounterMatrix.h"

#include "core/Base/Failure.h"
#include "core/RasterBuffer/BoolMatrix.h"

void UpdateCounterMatrix::Update(CBoolMatrix& mat) {
    SELF_CHECK(defect_logic, mat.GetSize() == m_size);
    mat.TakeNew([&](int32_t x, int32_t y) {
        ++m_vCounters[Index(x, y)];
        ++m_uChanges;
    });
}
