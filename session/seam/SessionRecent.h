// The desktop's recent documents in a session that a script plays: they are only noted.
#pragma once

#include "core/Platform/RecentFiles.h"

#include <boost/noncopyable.hpp>

#include <vector>

class CSessionRecent : public IRecentFiles, boost::noncopyable {
public:
    void Add(const std::wstring& strPath) override { m_vAdded.push_back(strPath); }

    std::vector<std::wstring> m_vAdded;
};
