// Undoable changes: each an object with a label, kept in two lists.
#pragma once

#include <boost/function.hpp>
#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <cstdint>
#include <deque>
#include <string>

/// One done action. Undo and Redo are called in turn, never twice in a row.
class CHistory : boost::noncopyable {
public:
    explicit CHistory(std::wstring strName) : m_strName(std::move(strName)) {}
    virtual ~CHistory() = default;
    virtual void Undo() = 0;
    virtual void Redo() = 0;
    /// The label that the user reads.
    const std::wstring& GetName() const { return m_strName; }
    /// Memory that the action held and the document did not when it was last measured: over all actions of a
    /// list this counts everything once. What takes less than a kilobyte or so is not counted.
    size_t GetBytes() const { return m_nBytes; }
    /// Called while the action is the one next to the document's state: registered, undone or done again.
    void Measure() { m_nBytes = CountBytes(); }

protected:
    /// What GetBytes answers from now on. Never throws.
    virtual size_t CountBytes() const { return 0; }

    std::wstring m_strName;

private:
    size_t m_nBytes = 0;
};

/// A document's undo and redo lists: at most g_Switches.m_nMaxHistory undo steps, and no more of the older
/// ones than g_Switches.m_nHistoryMegabytes hold with the newest.
class CHistoryStream : boost::noncopyable {
public:
    virtual ~CHistoryStream() = default;

    /// Adds a done action, ends all redoing, drops what exceeds the limits; the first line of the list then
    /// names the oldest state that can still be reached. Null is ignored. When it throws, nothing has
    /// changed: whoever registers first and then changes without a failure is never half done.
    void Register(const boost::shared_ptr<CHistory>& spHistory);
    /// Takes back the newest action. While a cancel handler is set it is called instead and nothing is
    /// popped; one that answers false is dropped.
    void Undo();
    void Redo();
    /// Drops both lists.
    void Clear();
    /// An unfinished operation's way to be cancelled; an empty function ends it.
    void SetCancelHandler(const boost::function<bool()>& fnCancel) { m_fnCancel = fnCancel; }
    bool CanUndo() const { return !m_deqUndo.empty() || m_fnCancel; }
    bool CanRedo() const { return !m_deqRedo.empty(); }
    /// True when the document differs from its file.
    bool IsModified() const { return m_bModified; }
    /// A change, or (false) a save of the document as it is.
    void SetModified(bool bModified);
    /// The newest action while a further change may be folded into it, which then calls SetModified: nothing
    /// is undone, and the action did not make the saved document, which must stay within reach. Null else.
    boost::shared_ptr<CHistory> GetFoldable() const;
    /// Counts the changes: equal numbers mean an equal document.
    uint32_t GetChangeCount() const { return m_uChanges; }
    /// True while an operation that can be cancelled is unfinished.
    bool IsUnfinished() const { return !m_fnCancel.empty(); }

    /// Done actions, newest first.
    const std::deque<boost::shared_ptr<CHistory>>& GetUndoList() const { return m_deqUndo; }
    /// Undone actions, the most recently undone first.
    const std::deque<boost::shared_ptr<CHistory>>& GetRedoList() const { return m_deqRedo; }
    /// Label of the list's first line.
    const std::wstring& GetInitialName() const { return m_strInitial; }

private:
    /// How many of the present undo steps stay below a new one.
    size_t CountKept(const CHistory& historyNew) const;

    std::deque<boost::shared_ptr<CHistory>> m_deqUndo;
    std::deque<boost::shared_ptr<CHistory>> m_deqRedo;
    std::wstring m_strInitial = L"<< 初期状態 >>";
    bool m_bModified = false;
    boost::weak_ptr<CHistory> m_wpSaved; ///< the newest action when the document was saved
    uint32_t m_uChanges = 0;
    boost::function<bool()> m_fnCancel;
};
