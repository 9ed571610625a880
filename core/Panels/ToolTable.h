// The table of tools: number, class, name, icon, cursor, pane of the tool options. A new tool is a line here.
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
    std::unique_ptr<CToolOptBase> (*pfnMakePane)(); ///< tools with the same function share a pane
};

/// All tools in the order of the tool panel.
std::span<const TToolRow> GetToolTable();

/// The tool of a number, null for a number that no tool has.
boost::shared_ptr<CTools> MakeTool(int nId, const TToolOutside& outside);
