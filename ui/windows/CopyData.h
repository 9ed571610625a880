// Texts that other programs send to a window.
#pragma once

#include <QtGlobal>

#include <functional>

class QString;

/// Handles the window system's message by which another program sends data; false for any other message.
/// `fnTake` gets a text and returns whether it takes it. The sender gets `nResult`: 1 for a text that was
/// taken, 0 for all other data. Raises nothing.
bool ReceiveCopyData(const void* pMessage, qintptr& nResult,
                     const std::function<bool(const QString&)>& fnTake);
