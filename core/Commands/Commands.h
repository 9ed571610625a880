// The table of commands: name, handler, enabled and checked state. Menus, tool bar, shortcuts, session
// scripts and the recorder read it.
#pragma once

#include <boost/function.hpp>
#include <boost/noncopyable.hpp>

#include <map>
#include <string_view>

/// A command's state in menus and on the tool bar.
struct TCommandState {
    bool bEnabled = false;
    bool bChecked = false;
};

/// The id of a command by its name, 0 for an unknown name.
int FindCommandId(std::string_view strName);
/// The name of a command by its id, null for an unknown id.
const char* FindCommandName(int nId);

/// The command handlers of a session. Every function receives the command's id, so that one function can
/// serve several commands.
class CCommandTable : boost::noncopyable {
public:
    using TTest = boost::function<bool(int nId)>;
    using TAct = boost::function<void(int nId)>;

    /// Binds a command to its handler and its tests for enabled (default: always) and checked (default:
    /// never). A self-check fails for an id without a name and for one bound twice.
    void Bind(int nId, const TAct& fnDo, const TTest& fnEnabled = {}, const TTest& fnChecked = {});
    /// Sets the handler and the test of all commands that are not bound.
    void BindOthers(const TAct& fnDo, const TTest& fnEnabled) { m_others = {fnDo, fnEnabled, {}}; }

    /// The present state of a command.
    TCommandState GetState(int nId) const;
    /// Executes a command, enabled or not.
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
