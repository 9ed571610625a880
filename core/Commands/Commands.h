// The table of commands: what each is called, whether it is enabled and checked, what it does. Menus, tool
// bar, shortcuts, session scripts and the recorder read it.
#pragma once

#include <boost/function.hpp>
#include <boost/noncopyable.hpp>

#include <map>
#include <string_view>

/// How a command shows in menus and on the tool bar.
struct TCommandState {
    bool bEnabled = false;
    bool bChecked = false;
};

/// The id of the command with a name, 0 for a name that no command has.
int FindCommandId(std::string_view strName);
/// The name of the command with an id, null for an id that no command has.
const char* FindCommandName(int nId);

/// What the commands of a session do. Every function is given the id that it is asked for, so that one can
/// serve several commands.
class CCommandTable : boost::noncopyable {
public:
    using TTest = boost::function<bool(int nId)>;
    using TAct = boost::function<void(int nId)>;

    /// Says what a command does, when it is enabled (without a function always) and when it is checked
    /// (without one never). A self-check fails for an id without a name and for one bound twice.
    void Bind(int nId, const TAct& fnDo, const TTest& fnEnabled = {}, const TTest& fnChecked = {});
    /// Says the same of commands that are not bound.
    void BindOthers(const TAct& fnDo, const TTest& fnEnabled) { m_others = {fnDo, fnEnabled, {}}; }

    /// The state of a command as things stand.
    TCommandState GetState(int nId) const;
    /// Does a command, enabled or not.
    void Do(int nId) const;

private:
    struct TBound {
        TAct fnDo;
        TTest fnEnabled;
        TTest fnChecked;
    };

    const TBound& Find(int nId) const;

    std::map<int, TBound> m_mapBound;
    TBound m_others;
};
