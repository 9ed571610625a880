// What all modal windows share: whom they stand over, and how they run.
#pragma once

#include <QDialog>
#include <QPointer>

class IWindow;

/// The widget that a modal window belongs to: the dialog that is already open over the owner, or the owner's
/// window; null without an owner.
QWidget* ModalParent(IWindow* pOwner);
/// Makes a dialog ready to be run over its parent: modality, font, icon, no say in a host's end.
void PrepareModal(QDialog& dialog);

/// Owns a modal window on the heap: what it stands over may take it along, and it must not stay when its
/// call ends by an exception.
template <class Dialog>
class CModalOwner {
public:
    explicit CModalOwner(Dialog* pDialog) : m_pDialog(pDialog) {}
    ~CModalOwner() { delete m_pDialog; }
    CModalOwner(const CModalOwner&) = delete;
    CModalOwner& operator=(const CModalOwner&) = delete;

    /// False when the window is gone.
    explicit operator bool() const { return !m_pDialog.isNull(); }
    Dialog* get() const { return m_pDialog.data(); }
    Dialog* operator->() const { return get(); }
    Dialog& operator*() const { return *get(); }

private:
    const QPointer<Dialog> m_pDialog;
};

/// Something is being painted: Qt cannot run a modal window then.
class CPaintScope {
public:
    CPaintScope() { ++s_nDepth; }
    ~CPaintScope() { --s_nDepth; }
    CPaintScope(const CPaintScope&) = delete;
    CPaintScope& operator=(const CPaintScope&) = delete;
    static bool IsOpen() { return s_nDepth > 0; }

private:
    static inline int s_nDepth = 0;
};

/// The texts of buttons.
namespace ModalText {
inline constexpr wchar_t OK[] = L"OK";
inline constexpr wchar_t CANCEL[] = L"キャンセル";
inline constexpr wchar_t YES[] = L"はい(&Y)";
inline constexpr wchar_t NO[] = L"いいえ(&N)";
} // namespace ModalText
