// What all modal windows share: whom they stand over, and how they run.
#pragma once

#include <QDialog>

class IWindow;

/// The widget that a modal window belongs to: the dialog that is already open over the owner, or the owner's
/// window; null without an owner.
QWidget* ModalParent(IWindow* pOwner);
/// Makes a dialog ready to be run over its parent: modality, font, icon, no say in a host's end.
void PrepareModal(QDialog& dialog);
/// The texts of buttons.
namespace ModalText {
inline constexpr wchar_t OK[] = L"OK";
inline constexpr wchar_t CANCEL[] = L"キャンセル";
inline constexpr wchar_t YES[] = L"はい(&Y)";
inline constexpr wchar_t NO[] = L"いいえ(&N)";
} // namespace ModalText
