// Which form of the kernels runs.
#pragma once

/// True while the vector forms run, as at the start; false for the plain definitions. Both give the same
/// bytes.
bool UsesVectorKernels();

/// Sets it; not while kernels run on other threads.
void UseVectorKernels(bool bVector);
