// Interrupts from the terminal, which stop a batch in order.
#pragma once

/// From now on an interrupt does not end this process.
void CatchInterrupts();

/// True when one has come since.
bool IsInterrupted();
