// The clipboard of a played session.
#pragma once

#include "core/Platform/System.h"

/// A private clipboard of the session. Nobody in it reads text.
class CSessionClipboard : public IClipboard {
public:
    void SetText(const std::wstring& strText) override;
    void SetBlock(const TDibBytes& spBlock) override;
    bool SetPicture(IBitmap& bitmap) override;
    bool HasPicture() override { return m_spBlock || m_spPicture; }
    TLoadedPicture GetPicture() override;
    TDibBytes GetBlock() override;
    uint32_t GetChangeCount() override { return m_uChanges; }

private:
    // At most one of them: whatever was put there.
    TDibBytes m_spBlock;
    boost::shared_ptr<IBitmap> m_spPicture;
    uint32_t m_uChanges = 0;
};
