// Small text files by which users share what they have set: brushes, keys.
#pragma once

#include <functional>
#include <string>
#include <string_view>

class IWindow;
struct TPlatform;

/// A kind of these files.
struct TSharedKind {
    const wchar_t* pszWhat; ///< what they hold, for the texts that the user reads
    const wchar_t* pszName; ///< proposed for a new file, without the extension
    const wchar_t* pszExtension;
};

/// Asks for a file and writes it. A failure is reported.
void WriteSharedFile(const TPlatform& platform, IWindow* pOwner, const TSharedKind& kind,
                     const std::string& strText);
/// Asks for a file and passes its text on. `fnTake` raises deserialize_error for a damaged text, without
/// having changed anything; this is reported, and so is a file that cannot be read.
void ReadSharedFile(const TPlatform& platform, IWindow* pOwner, const TSharedKind& kind,
                    const std::function<void(std::string_view)>& fnTake);
