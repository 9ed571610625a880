// Parsing and editing of a profile file: sections in square brackets, lines of key, equals sign and value,
// comments after a semicolon. Setting a value changes nothing else in a hand-edited file.
//
// Names are compared without regard to the case of A to Z, and blanks (space, tab) around names and values
// are not part of them. The first section of a name and the first key of a name in it count, on reading and
// on writing. A backslash in a name is an ordinary character. All text is UTF-8.
#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The value of a key, without surrounding blanks and one pair of matching quotes; nullopt when the section
/// or the key is missing.
std::optional<std::string> FindIniValue(std::string_view strFile, std::string_view strSection,
                                        std::string_view strKey);

/// Sets a key's value so that FindIniValue returns it, except that line breaks in it become blanks. A new
/// key is added at the end of its section, a new section at the end of the file. True when the file
/// changed; false also for names that no profile file can hold (empty, a line break, `]` in a section, `=`
/// in a key, a key that would read as a comment or a section).
bool SetIniValue(std::string& strFile, std::string_view strSection, std::string_view strKey,
                 std::string_view strValue);

/// Removes a key's line from the file; true when there was one.
bool RemoveIniKey(std::string& strFile, std::string_view strSection, std::string_view strKey);
