#include "session/seam/SessionClipboard.h"

#include "system/pictures/Pictures.h"

void CSessionClipboard::SetText(const std::wstring&) {
    m_spPicture.reset();
    ++m_uChanges;
}

bool CSessionClipboard::SetPicture(IBitmap& bitmap) {
    const auto spCopy = CopyPicture(bitmap);
    if (!spCopy) return false;
    m_spPicture = spCopy;
    ++m_uChanges;
    return true;
}

boost::shared_ptr<IBitmap> CSessionClipboard::GetPicture() {
    return m_spPicture ? CopyPicture(*m_spPicture) : nullptr;
}
