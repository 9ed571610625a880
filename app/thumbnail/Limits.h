// Limits of what the process takes of the machine.
#pragma once

/// Ends the process after a minute of computing, and lets allocations fail (bad_alloc) that need 512 MiB
/// beyond what it has now. A system without these limits goes without.
void LimitProcess();
