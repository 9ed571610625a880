// The list of width operations and its settings.
#pragma once

#include "core/PathWidthTool/PathWidthItem.h"

#include <boost/noncopyable.hpp>

#include <vector>

class CIniConfig;

class CPathWidthList : boost::noncopyable {
public:
    /// Reads section "PathWidthList"; without entries there the list has one of each operation.
    void Read(CIniConfig& config);
    /// Writes what has changed since Read.
    void Write(CIniConfig& config);

    const std::vector<TPathWidthItem>& GetItems() const { return m_vItems; }
    /// Adds an entry behind those of its operation, unless there is one like it.
    void Add(const TPathWidthItem& item);
    /// Removes the entry; ignores one that is missing.
    void Remove(const TPathWidthItem& item);

private:
    std::vector<TPathWidthItem> m_vItems;
    std::vector<TPathWidthItem> m_vRead;
};
