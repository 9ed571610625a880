// Undoable actions, each with a label, kept in an undo and a redo list.
#pragma once

#include <boost/function.hpp>
#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <cstdint>
#include <deque>
#include <string>

/// An undoable action. Undo and Redo are called alternately.
class CHistory : boost::noncopyable {
public:
    explicit CHistory(std::wstring strName) : m_strName(std::move(strName)) {}
    virtual ~CHistory() = default;
    virtual void Undo() = 0;
    virtual void Redo() = 0;
    /// The label shown to the user.
    const std::wstring& GetName() const { return m_strName; }
    /// Memory, as last measured, that the action holds and the document does not, such that the sum over a
    /// list counts everything once. Amounts below about a kilobyte are not counted.
    size_t GetBytes() const { return m_nBytes; }
    /// Called while the action is next to the document's state: after registering, undo and redo.
    void Measure() { m_nBytes = CountBytes(); }

protected:
    /// The value that Measure stores for GetBytes. Never throws.
    virtual size_t CountBytes() const { return 0; }

    std::wstring m_strName;

private:
    size_t m_nBytes = 0;
};

/// Two actions that were done one after the other as one, with the second one's label.
boost::shared_ptr<CHistory> JoinHistories(const boost::shared_ptr<CHistory>& spFirst,
                                          const boost::shared_ptr<CHistory>& spSecond);

struct TGlobalSwitches;

/// A document's undo and redo lists: at most `m_nMaxHistory` undo steps; older ones are dropped when all
/// together exceed `m_nHistoryMegabytes`.
class CHistoryStream : boost::noncopyable {
public:
    virtual ~CHistoryStream() = default;

    /// Sets the limits, which are read at each Register; the record must outlive the stream. Until then their
    /// defaults hold.
    void SetLimits(const TGlobalSwitches& switches) { m_pSwitches = &switches; }
    /// Adds a done action, clears the redo list and drops what exceeds the limits; the first line of the
    /// list then names the oldest state that can be reached. Null is ignored. On an exception nothing has
    /// changed, so register first and then make changes that cannot fail.
    void Register(const boost::shared_ptr<CHistory>& spHistory);
    /// Sets an action that is done already and becomes the first part of the next registered one: a single
    /// undo reverts both. Another one must not be set. Never throws.
    void Prepend(const boost::shared_ptr<CHistory>& spHistory) { m_spPrepended = spHistory; }
    /// Returns that action and forgets it; null when it has been registered, or when there is none.
    boost::shared_ptr<CHistory> TakePrepended();
    /// Undoes the newest action. While a cancel handler is set, calls it instead and pops nothing; a
    /// handler that returns false is removed.
    void Undo();
    void Redo();
    /// Undoes or redoes until this action is the newest that is done; null undoes everything. An action that
    /// is in neither list has no effect, nor has the call while an operation is unfinished.
    void GoTo(const boost::shared_ptr<CHistory>& spNewest);
    /// Clears both lists.
    void Clear();
    /// Sets the function that cancels an unfinished operation; an empty function removes it.
    void SetCancelHandler(const boost::function<bool()>& fnCancel) { m_fnCancel = fnCancel; }
    bool CanUndo() const { return !m_deqUndo.empty() || m_fnCancel; }
    bool CanRedo() const { return !m_deqRedo.empty(); }
    /// True when the document differs from its file.
    bool IsModified() const { return m_bModified; }
    /// Marks the document as changed, or (false) as saved.
    void SetModified(bool bModified);
    /// True when the document was saved with this action (null for none) as the newest one.
    bool IsSavedState(const boost::shared_ptr<CHistory>& spNewest) const;
    /// The newest action if a further change may be merged into it (followed by SetModified); null
    /// otherwise: after an undo, or when the action made the saved state, which must stay reachable.
    boost::shared_ptr<CHistory> GetFoldable() const;
    /// Counts the changes: equal numbers mean equal documents.
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
    /// The number of present undo steps that remain below a new one.
    size_t CountKept(const CHistory& historyNew) const;

    const TGlobalSwitches* m_pSwitches = nullptr;
    boost::shared_ptr<CHistory> m_spPrepended;
    std::deque<boost::shared_ptr<CHistory>> m_deqUndo;
    std::deque<boost::shared_ptr<CHistory>> m_deqRedo;
    std::wstring m_strInitial = L"<< 初期状態 >>";
    bool m_bModified = false;
    boost::weak_ptr<CHistory> m_wpSaved; ///< the newest action when the document was saved
    bool m_bSavedInitial = false;        ///< it was saved in the oldest state that can be reached
    uint32_t m_uChanges = 0;
    boost::function<bool()> m_fnCancel;
};
