// Common functions of modal windows: their parent, and how they run.
#pragma once

#include <QDialog>
#include <QPointer>

#include <utility>

class IWindow;

/// The parent of a modal window: the dialog that is already open over the owner, or the owner's window;
/// null without an owner.
QWidget* ModalParent(IWindow* pOwner);
/// Prepares a dialog for running over its parent: modality, font, icon, and no effect on a host's lifetime.
void PrepareModal(QDialog& dialog);

/// The life of a modal window, the same for every kind: made on the heap over its parent, prepared, run, and
/// deleted with this, also when its call ends by an exception. While it runs its parent may delete it.
template <class Dialog>
class CModalOwner {
public:
    /// Makes `Dialog(pParent, arguments...)`.
    template <class... Arguments>
    explicit CModalOwner(QWidget* pParent, Arguments&&... arguments)
        : m_pDialog(new Dialog(pParent, std::forward<Arguments>(arguments)...)) {
        PrepareModal(*m_pDialog);
    }
    ~CModalOwner() { delete m_pDialog; }
    CModalOwner(const CModalOwner&) = delete;
    CModalOwner& operator=(const CModalOwner&) = delete;

    /// Runs the window. Returns its result, 0 when it was deleted meanwhile.
    int Run() const {
        const int nResult = m_pDialog->exec();
        return m_pDialog ? nResult : 0;
    }
    /// False when the window was deleted.
    explicit operator bool() const { return !m_pDialog.isNull(); }
    Dialog* get() const { return m_pDialog.data(); }
    Dialog* operator->() const { return get(); }
    Dialog& operator*() const { return *get(); }

private:
    const QPointer<Dialog> m_pDialog;
};

/// The texts of buttons.
namespace ModalText {
inline constexpr wchar_t OK[] = L"OK";
inline constexpr wchar_t CANCEL[] = L"キャンセル";
inline constexpr wchar_t YES[] = L"はい(&Y)";
inline constexpr wchar_t NO[] = L"いいえ(&N)";
} // namespace ModalText
