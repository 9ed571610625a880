#include "core/Panels/ToolTable.h"

#include "core/PathErase/ToolOptPathEraser.h"
#include "core/PathPen/ToolOptPathPen.h"
#include "core/PathSelect/StrokeSelect.h"
#include "core/PathSelect/ToolOptStrokeSelect.h"
#include "core/PathToolBase/ToolOptPathTool.h"
#include "core/PathWidthTool/ToolOptPathWidthTool.h"
#include "core/RasterBrush/FreehandTools.h"
#include "core/RasterBrush/ToolOptRasterBrush.h"
#include "core/RasterMove/RasterMove.h"
#include "core/RasterMove/ToolOptRasterSelect.h"
#include "core/RasterTransform/ToolOptRasterTransform.h"

#include <boost/make_shared.hpp>

#include <algorithm>

namespace {

template <class TPane>
std::unique_ptr<CToolOptBase> MakePane() {
    return std::make_unique<TPane>();
}

// A tool without options.
template <>
std::unique_ptr<CToolOptBase> MakePane<void>() {
    return nullptr;
}

template <class TTool, class TPane>
constexpr TToolRow ROW{TTool::INFO,
                       [](const TToolOutside& outside) -> boost::shared_ptr<CTools> {
                           return boost::make_shared<TTool>(outside);
                       },
                       MakePane<TPane>};

constexpr TToolRow TOOLS[] = {
    ROW<CRasterBrush, CToolOptRasterBrush>,
    ROW<CRasterEraser, CToolOptRasterBrush>,
    ROW<CRasterPencil, CToolOptRasterPencil>,
    ROW<CRasterSelect, CToolOptRasterSelect>,
    ROW<CRasterMove, void>,
    ROW<CRasterTransform, CToolOptRasterTransform>,
    ROW<CPathPen, CToolOptPathPen>,
    ROW<CPathTool, CToolOptPathTool>,
    ROW<CPathWidthTool, CToolOptPathWidthTool>,
    ROW<CPathEraser, CToolOptPathEraser>,
    ROW<CStrokeSelect, CToolOptStrokeSelect>,
};

} // namespace

std::span<const TToolRow> GetToolTable() { return TOOLS; }

boost::shared_ptr<CTools> MakeTool(int nId, const TToolOutside& outside) {
    const auto it = std::ranges::find_if(TOOLS, [=](const TToolRow& row) { return row.info.nId == nId; });
    return it == std::end(TOOLS) ? boost::shared_ptr<CTools>() : it->pfnMake(outside);
}
