// The clipboard of a played session.
#pragma once

#include "core/Platform/Bitmap.h"
#include "core/Platform/System.h"

/// A private clipboard of the session. Nobody in it reads text.
class CSessionClipboard : public IClipboard {
public:
    void SetText(const std::wstring& strText) override;
    bool SetPicture(IBitmap& bitmap) override;
    bool HasPicture() override { return m_spPicture != nullptr; }
    boost::shared_ptr<IBitmap> GetPicture() override;
    uint32_t GetChangeCount() override { return m_uChanges; }

private:
    boost::shared_ptr<IBitmap> m_spPicture;
    uint32_t m_uChanges = 0;
};
