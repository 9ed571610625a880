// Common functions of modal windows: their parent, and how they run.
#pragma once

#include <QDialog>
#include <QPointer>

class IWindow;

/// The parent of a modal window: the dialog that is already open over the owner, or the owner's window;
/// null without an owner.
QWidget* ModalParent(IWindow* pOwner);
/// Prepares a dialog for running over its parent: modality, font, icon, and no effect on a host's lifetime.
void PrepareModal(QDialog& dialog);

/// Owns a modal window on the heap: its parent may delete it, and it must not stay when its call ends by an
/// exception.
template <class Dialog>
class CModalOwner {
public:
    explicit CModalOwner(Dialog* pDialog) : m_pDialog(pDialog) {}
    ~CModalOwner() { delete m_pDialog; }
    CModalOwner(const CModalOwner&) = delete;
    CModalOwner& operator=(const CModalOwner&) = delete;

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
