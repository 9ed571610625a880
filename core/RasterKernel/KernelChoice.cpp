#include "core/RasterKernel/KernelChoice.h"

namespace {

bool bUseVectors = true;

} // namespace

bool UsesVectorKernels() { return bUseVectors; }
void UseVectorKernels(bool bVector) { bUseVectors = bVector; }
