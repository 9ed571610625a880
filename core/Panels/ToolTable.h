// The table of tools: number, class, name, icon, cursor, option pane. Add new tools here.
#pragma once

#include "core/Tools/ToolInfo.h"

#include <boost/shared_ptr.hpp>

#include <memory>
#include <span>

class CToolOptBase;
class CTools;
struct TToolOutside;

struct TToolRow {
    TToolInfo info;
    boost::shared_ptr<CTools> (*pfnMake)(const TToolOutside& outside);
    std::unique_ptr<CToolOptBase> (
        *pfnMakePane)(); ///< tools with the same function share a pane, which may be null
};

/// All tools in the tool panel's order.
std::span<const TToolRow> GetToolTable();

/// Creates a tool by its number; null for an unknown number.
boost::shared_ptr<CTools> MakeTool(int nId, const TToolOutside& outside);
