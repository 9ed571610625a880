// The keys of the commands.
#pragma once

#include "core/Platform/Menu.h"
#include "core/Platform/Message.h"

#include <compare>
#include <string>
#include <string_view>
#include <vector>

class CIniConfig;
class IKeyState;

/// A key with the modifiers that must be held with it.
struct TKey {
    int nKey = 0; ///< virtual key, 0 for none
    bool bControl = false;
    bool bShift = false;
    bool bAlt = false;

    auto operator<=>(const TKey&) const = default;
};

/// The key of a message with the modifiers that are held now; no key for other messages and for modifiers.
TKey KeyOf(const TMessage& msg, IKeyState& keys);
/// The key of a Key control's value, and back.
TKey KeyOfValue(int nValue);
int ValueOfKey(const TKey& key);
/// A key as menus show it: "Ctrl+Z". A digit pad's plus and minus are shown as those.
std::wstring NameOfKey(const TKey& key);
/// Their names with commas between them, each name once.
std::wstring NamesOfKeys(const std::vector<TKey>& vKeys);

/// One shortcut.
struct TShortcut {
    TKey key;
    bool bNoRepeat = false; ///< a held key does not repeat the command
    int nCommand = 0;

    bool operator==(const TShortcut&) const = default;
};

/// A set of shortcuts, in the order in which menus list them. A key has one command at most.
class CShortcuts {
public:
    /// The built-in set. Raises internal_error when its table is damaged.
    static const CShortcuts& GetDefault();
    /// Reads a set: lines of modifiers (C Control, S Shift, A Alt, N no repeat, - none), virtual key in
    /// hexadecimal and command's name, separated by tabs; "#" begins a comment. Commands of other versions
    /// are skipped. Raises deserialize_error for a line of another form and for a text without a line.
    static CShortcuts Parse(std::string_view strText);
    /// The text that Parse reads.
    std::string Format() const;

    /// The set that the user has chosen; the built-in one when there is none or it is damaged.
    static CShortcuts Read(CIniConfig& config);
    /// Stores the set, where the built-in one needs no place.
    void Write(CIniConfig& config) const;

    /// The command of a key message with the modifiers held now, 0 for none.
    int FindCommand(const TMessage& msg, IKeyState& keys) const;
    /// The command of a key, 0 for none.
    int FindCommand(const TKey& key) const;
    /// The keys of a command.
    std::vector<TKey> GetKeys(int nCommand) const;
    /// Names the keys of a command, "Ctrl+Z, F3", between two texts; empty for a command without keys.
    std::wstring NameKeys(int nCommand, const wchar_t* pszBefore, const wchar_t* pszBehind = L"") const;
    /// Gives a command a further key, which another command loses.
    void Add(const TKey& key, int nCommand);
    /// The same as the user does it: a held key repeats the command only if the built-in ones do.
    void Assign(const TKey& key, int nCommand);
    /// Takes a key away from its command.
    void Remove(const TKey& key);
    /// Takes a command's keys away.
    void Clear(int nCommand);
    /// Gives a command its built-in keys, and no others.
    void Reset(int nCommand);
    /// Puts the commands' keys behind the texts of a menu. A text keeps the keys that stand in it while the
    /// command has the built-in ones.
    void Label(std::vector<TMenuItem>& vMenu) const;

    bool operator==(const CShortcuts&) const = default;

private:
    std::vector<TShortcut> m_vShortcuts;
};
