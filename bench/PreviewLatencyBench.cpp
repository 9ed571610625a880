// Latency of the previews of level correction and of hue, saturation, brightness, from a slider's move to the
// picture of 1000 by 700 pixels in the real dialog, and of the hand that drags the picture. The layer has
// 6000 by 5000 random pixels, all selected softly.
#include "bench/BenchWindow.h"
#include "core/ImageDialogs/HSBDlg.h"
#include "core/ImageDialogs/LevelDlg.h"
#include "core/RasterBuffer/ColorRasterBuffer.h"
#include "core/RasterBuffer/SelectBuffer.h"

#include <QComboBox>
#include <QSlider>
#include <QTimer>

#include <random>

namespace {

constexpr CSize PAGE{6000, 5000};
constexpr QSize VIEW{1000, 700};
constexpr int MOVES = 1000;

TPreviewSource MakeSource() {
    std::mt19937 random(8);
    const auto fill = [&](CRasterBuffer& plane) {
        plane.ForEachBlock([&](CPoint pt) {
            const auto spTile = plane.GetBlock(pt, true);
            uint8_t* p = spTile->GetPixelPtr({0, 0});
            for (size_t i = 0; i < spTile->GetBytes(); ++i) p[i] = static_cast<uint8_t>(random() >> 8);
        });
    };
    const auto spPlane = boost::make_shared<CColorRasterBuffer>();
    spPlane->Create(PAGE, DEFAULT_BLOCKSIZE);
    fill(*spPlane);
    const auto spSelect = boost::make_shared<CSelectBuffer>(PAGE);
    fill(spSelect->GetMask());
    return {spPlane, spSelect, {PAGE.cx / 2, PAGE.cy / 2}};
}

/// Moves a slider of the open dialog again and again; every move is timed until the preview has been painted.
class CSliderDriver : public QObject {
public:
    CSliderDriver(int nZoomRow, bool bHand, CTimes& times)
        : m_nZoomRow(nZoomRow), m_bHand(bHand), m_times(times) {
        QTimer::singleShot(50, this, [this] { Begin(); });
    }

protected:
    bool eventFilter(QObject*, QEvent* pEvent) override {
        // Behind the paint, when the loop has flushed it.
        if (pEvent->type() == QEvent::Paint) QTimer::singleShot(0, this, [this] { Next(); });
        return false;
    }

private:
    void Begin() {
        QWidget& dialog = *QApplication::activeModalWidget();
        for (QWidget* pChild : dialog.findChildren<QWidget*>()) {
            if (pChild->cursor().shape() == Qt::OpenHandCursor) m_pView = pChild;
            if (pChild->height() == 18 && pChild->focusPolicy() == Qt::TabFocus) m_pPins = pChild;
        }
        m_pSlider = dialog.findChild<QSlider*>();
        if (m_bHand) m_pPins = m_pView;
        const QSize szMore = VIEW - m_pView->size();
        dialog.resize(dialog.size() + szMore);
        for (QComboBox* pCombo : dialog.findChildren<QComboBox*>())
            if (pCombo->count() == 9) emit pCombo->activated(m_nZoomRow);
        QTimer::singleShot(300, this, [this] {
            m_pView->installEventFilter(this);
            if (!m_pSlider) Mouse(QEvent::MouseButtonPress, 15);
            Next();
        });
    }
    void Mouse(QEvent::Type type, int x) {
        QMouseEvent event(type, QPointF(x, 5), m_pPins->mapToGlobal(QPointF(x, 5)),
                          type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, Qt::LeftButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(m_pPins, &event);
    }
    void Next() {
        if (m_nMoves > 1) m_times.Keep();
        if (++m_nMoves > MOVES) {
            QApplication::activeModalWidget()->close();
            return;
        }
        m_times.Begin();
        if (m_pSlider)
            m_pSlider->setValue(m_nMoves % 360);
        else
            Mouse(QEvent::MouseMove, 15 + m_nMoves % 200);
    }

    int m_nZoomRow;
    bool m_bHand; ///< the picture is dragged in place of a slider
    CTimes& m_times;
    QWidget* m_pView = nullptr;
    QWidget* m_pPins = nullptr;
    QSlider* m_pSlider = nullptr;
    int m_nMoves = 0;
};

template <class Dialog, bool HAND = false>
void MoveSlider(benchmark::State& state, CBenchWindow& window) {
    CTimes times;
    for (auto _ : state) {
        Dialog dialog(MakeSource());
        CSliderDriver driver(static_cast<int>(state.range(0)), HAND, times);
        window.GetFrame().GetOutside().platform.dialogs.Run(window.GetFrame().GetWindow(), dialog);
    }
    times.Report(state);
}

} // namespace

int main(int argc, char** argv) {
    return RunInWindow(argc, argv, [](CBenchWindow& window) {
        const auto add = [&](const char* pszName, auto fn) {
            benchmark::RegisterBenchmark(pszName, fn, std::ref(window))
                ->Arg(0)
                ->Arg(4)
                ->Arg(8)
                ->Iterations(1)
                ->Unit(benchmark::kMillisecond);
        };
        add("levels/zoom row", MoveSlider<CLevelDlg>);
        add("hue/zoom row", MoveSlider<CHSBDlg>);
        add("hand/zoom row", MoveSlider<CLevelDlg, true>);
    });
}
