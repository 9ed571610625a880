#include "bench/RecordedStroke.h"

#include <mypaint-brush.h>
#include <mypaint-fixed-tiled-surface.h>

#include <cmath>

namespace Recorded {

TEvent EventAt(int n) {
    const double t = n / 100.0;
    return {300 + n * 1.6 + 250 * std::cos(t * 2.1),
            2000 + 900 * std::sin(t * 0.37) + 300 * std::sin(t * 2.3), 0.55 + 0.45 * std::sin(t * 1.7)};
}

double SpacingAt(uint32_t uRadius) {
    return SpacingOf(MakeStampShape(uRadius << 13, BLUR_LEVEL, 1), BLUR_LEVEL, 1) / 8.0;
}

void MyPaintStroke(benchmark::State& state) {
    MyPaintBrush* pBrush = mypaint_brush_new();
    mypaint_brush_from_defaults(pBrush);
    mypaint_brush_set_base_value(pBrush, MYPAINT_BRUSH_SETTING_RADIUS_LOGARITHMIC,
                                 std::log(static_cast<float>(RADIUS)));
    mypaint_brush_set_base_value(pBrush, MYPAINT_BRUSH_SETTING_HARDNESS, HARDNESS);
    if (state.range(0))
        mypaint_brush_set_base_value(pBrush, MYPAINT_BRUSH_SETTING_DABS_PER_ACTUAL_RADIUS,
                                     static_cast<float>(RADIUS / SpacingAt(RADIUS)));
    MyPaintSurface* pSurface =
        mypaint_fixed_tiled_surface_interface(mypaint_fixed_tiled_surface_new(CANVAS, CANVAS));
    for (auto _ : state) {
        mypaint_brush_reset(pBrush);
        mypaint_brush_new_stroke(pBrush);
        for (int n = 0; n < EVENTS; ++n) {
            const TEvent event = EventAt(n);
            mypaint_surface_begin_atomic(pSurface);
            mypaint_brush_stroke_to(pBrush, pSurface, static_cast<float>(event.x),
                                    static_cast<float>(event.y), static_cast<float>(event.dPressure), 0, 0,
                                    n ? 0.005 : 10);
            MyPaintRectangle rc;
            mypaint_surface_end_atomic(pSurface, &rc);
        }
    }
    mypaint_surface_unref(pSurface);
    mypaint_brush_unref(pBrush);
}

} // namespace Recorded
