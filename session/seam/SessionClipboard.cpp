#include "session/seam/SessionClipboard.h"

#include "core/ImageFile/DibBlock.h"
#include "system/pictures/Pictures.h"

#include <utility>

void CSessionClipboard::SetText(const std::wstring&) { SetBlock(nullptr); }

void CSessionClipboard::SetBlock(const TDibBytes& spBlock) {
    m_spPicture.reset();
    m_forms = {};
    m_spBlock = spBlock;
    ++m_uChanges;
}

void CSessionClipboard::SetStrokes(const TStrokeForms& forms) {
    TStrokeForms copied = forms;
    SetBlock(forms.spPicture);
    m_forms = std::move(copied);
}

bool CSessionClipboard::SetPicture(IBitmap& bitmap) {
    const auto spCopy = CopyPicture(bitmap);
    if (!spCopy) return false;
    SetBlock(nullptr);
    m_spPicture = spCopy;
    return true;
}

TLoadedPicture CSessionClipboard::GetPicture() {
    if (m_spBlock) return ReadDibBlock(m_spBlock);
    return m_spPicture ? CopyPicture(*m_spPicture) : TLoadedPicture(EFileFailure::Missing);
}

TDibBytes CSessionClipboard::GetBlock() { return m_spPicture ? MakeDibBlock(*m_spPicture) : m_spBlock; }
