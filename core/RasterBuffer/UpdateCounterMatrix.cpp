#include "core/RasterBuffer/UpdateCounterMatrix.h"

#include "core/Base/Failure.h"
#include "core/RasterBuffer/BoolMatrix.h"

void UpdateCounterMatrix::Update(const CBoolMatrix& mat) {
    SELF_CHECK(defect_logic, mat.GetSize() == m_size);
    for (size_t i = 0; i < m_vCounters.size(); ++i) m_vCounters[i] += mat.m_pData[i] ? 1 : 0;
}
