// GIMP runs the plug-in over layers of every kind, without a display. The result has to be the one of the
// filter program.
#include "tests/support/ProgramTest.h"

#include "TestPaths.h"

#include <QRandomGenerator>
#include <gmock/gmock.h>
#include <unistd.h>

namespace {

// Every script of GIMP's language starts with this. (save) writes a layer alone, in 8 bits a channel.
constexpr char PRELUDE[] = R"((define (load-picture name) (car (file-png-load RUN-NONINTERACTIVE name name)))
(define (layer-of image) (car (gimp-image-get-active-drawable image)))
(define (write-png image name)
  (file-png-save2 RUN-NONINTERACTIVE image (layer-of image) name name 0 1 0 0 0 0 0 0 1))
(define (save image name)
  (let ((copy (car (gimp-image-duplicate image))))
    (if (not (= (car (gimp-image-get-precision copy)) PRECISION-U8-GAMMA))
        (gimp-image-convert-precision copy PRECISION-U8-GAMMA))
    (write-png copy name)
    (gimp-image-delete copy)))
(define (draw image mode script)
  (catch (gimp-message "refused") (plug-in-vellumcraft mode image (layer-of image) script)))
(define (say name value) (gimp-message (string-append name "=" (number->string value))))
)";

// A black stroke from the upper left corner, so grey in every kind of picture, and one of the eraser across
// it.
std::string MakeDrawing(int nWidth, int nHeight) {
    std::string strScript = R"({"set":{"section":"BrushParam\\RasterBrush","key":"BrushRadius","value":5}}
{"set":{"section":"BrushParam\\RasterBrush","key":"BrushColor","value":0}}
{"tool":2}
)";
    for (const bool bRising : {false, true}) {
        if (bRising) strScript += "{\"tool\":3}\n";
        for (int i = 0; i <= 22; ++i) {
            const int nAlong = std::min(i, 20), y = nHeight * 8 * nAlong / 20;
            strScript += "{\"pen\":{\"x\":" + std::to_string(nWidth * 8 * nAlong / 20) +
                         ",\"y\":" + std::to_string(bRising ? nHeight * 8 - y : y) +
                         ",\"pressure\":" + std::to_string(i <= 20 ? 300 + 30 * i : 0) + "}}\n";
        }
        strScript += "{\"wait\":400}\n";
    }
    return strScript;
}

// Every level of every channel; with alpha also translucent and transparent pixels, which have colours.
QImage MakeNoise(QSize size, QImage::Format format) {
    QImage image(size, QImage::Format_RGBA8888);
    QRandomGenerator random(5);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x) image.setPixel(x, y, random.generate());
    return image.convertToFormat(format);
}

class CGimp : public CProgramTest {
protected:
    CGimp() {
        // GIMP starts all plug-ins that it finds: few are enough.
        const std::filesystem::path system = VELLUM_GIMP_PLUGINS;
        for (const char* psz : {"script-fu", "file-png"}) {
            std::filesystem::create_directories(m_folder.File("plug-ins") / psz);
            std::filesystem::create_symlink(system / psz / psz, m_folder.File("plug-ins") / psz / psz);
        }
        Write("gimprc", "(plug-in-path \"" VELLUM_GIMP_FOLDER ":" VELLUM_GIMP_PROBE ":" +
                            m_folder.File("plug-ins").native() + "\")\n");
    }
    /// Plays a script of GIMP's language; `strBefore` precedes the program in the command line.
    void PlayInGimp(const std::string& strScript, const std::string& strBefore = {}) {
        Write("script.scm", PRELUDE + strScript);
        // GIMP leaves an empty folder among the temporary files.
        RunProgram("timeout", "120 " + strBefore +
                                  " env TMPDIR=$PWD/profile GIMP2_DIRECTORY=$PWD/profile "
                                  "XDG_CACHE_HOME=$PWD/.cache gimp-console -i -d -f -s --gimprc gimprc "
                                  "-b '(load \"script.scm\")' -b '(gimp-quit 0)'");
    }
    /// The same; expects that GIMP comes to the script's end.
    void RunGimp(const std::string& strScript, const std::string& strBefore = {}) {
        PlayInGimp(strScript, strBefore);
        EXPECT_TRUE(Says("batch command executed successfully")) << m_strSaid;
        EXPECT_FALSE(Says("experienced an execution error")) << m_strSaid;
        for (const auto& entry : std::filesystem::directory_iterator(m_folder.File("profile")))
            EXPECT_FALSE(entry.path().filename().native().starts_with("vellumcraft")) << entry.path();
    }
    QImage Filter(const std::string& strIn, const std::string& strScript) {
        EXPECT_EQ(RunProgram(VELLUM_FILTER, strIn + " filtered.png --script " + strScript), 0) << m_strSaid;
        return LoadPicture("filtered.png");
    }
    static int CountDifferent(const QImage& a, const QImage& b) {
        const QImage aPixels[] = {a.convertToFormat(QImage::Format_RGBA8888),
                                  b.convertToFormat(QImage::Format_RGBA8888)};
        int nDifferent = 0;
        for (int y = 0; y < a.height(); ++y)
            for (int x = 0; x < a.width(); ++x)
                nDifferent += aPixels[0].pixel(x, y) != aPixels[1].pixel(x, y);
        return nDifferent;
    }
};

TEST_F(CGimp, LayersOfEveryKindGetWhatTheFilterGives) {
    const struct {
        std::string strName, strSetup; ///< of the image, before it is drawn on
        QSize size;
        QImage::Format format = QImage::Format_RGB888;
    } aCases[] = {
        {"colour", "", {201, 150}},
        {"alpha", "", {150, 201}, QImage::Format_RGBA8888},
        {"grey", "", {256, 97}, QImage::Format_Grayscale8},
        {"greyalpha", "(gimp-image-convert-grayscale image)", {130, 60}, QImage::Format_RGBA8888},
        {"sixteen", "(gimp-image-convert-precision image PRECISION-U16-GAMMA)", {120, 90}},
        {"linear", "(gimp-image-convert-precision image PRECISION-U16-LINEAR)", {120, 90}},
        {"float",
         "(gimp-image-convert-precision image PRECISION-FLOAT-LINEAR)",
         {90, 120},
         QImage::Format_RGBA8888},
        {"greylinear",
         "(gimp-image-convert-grayscale image)(gimp-image-convert-precision image PRECISION-HALF-LINEAR)",
         {70, 70}},
        {"dot", "", {1, 1}},
        {"flat", "", {1500, 3}, QImage::Format_RGBA8888},
        {"tiles", "", {700, 500}},
        {"offset", "(gimp-layer-set-offsets (layer-of image) -40 -30)", {200, 100}, QImage::Format_RGBA8888},
        {"outside", "(gimp-image-resize image 20 20 -500 0)", {64, 65}},
    };
    std::string strScript;
    for (const auto& [strName, strSetup, size, format] : aCases) {
        SavePicture(strName + ".png", MakeNoise(size, format));
        Write(strName + ".jsonl", MakeDrawing(size.width(), size.height()));
        strScript += "(let ((image (load-picture \"" + strName + ".png\")))" + strSetup + "(save image \"" +
                     strName + "-before.png\")(gimp-image-clean-all image)(draw image RUN-NONINTERACTIVE \"" +
                     strName + ".jsonl\")(say \"" + strName +
                     "\" (car (gimp-image-is-dirty image)))(save image \"" + strName + "-after.png\"))\n";
    }
    RunGimp(strScript);
    for (const auto& tCase : aCases) EXPECT_TRUE(Says(tCase.strName + "=1")) << m_strSaid;
    for (const auto& tCase : aCases) {
        SCOPED_TRACE(tCase.strName);
        const QImage before = LoadPicture(tCase.strName + "-before.png");
        const QImage after = LoadPicture(tCase.strName + "-after.png");
        ASSERT_EQ(before.size(), tCase.size);
        ASSERT_EQ(after.size(), tCase.size);
        EXPECT_EQ(CountDifferent(after, Filter(tCase.strName + "-before.png", tCase.strName + ".jsonl")), 0);
        EXPECT_LE(qGray(after.pixel(after.width() / 4, after.height() / 4)), 140) << "drawn";
    }
}

TEST_F(CGimp, PixelsThatAreNotDrawnOnKeepTheirPrecision) {
    QImage image(60, 40, QImage::Format_RGBA64);
    for (int i = 0; i < 2400; ++i)
        image.setPixelColor(i % 60, i / 60,
                            QRgba64::fromRgba64(i * 27, 65535 - i * 3, i * 11 + 7, 65535 - i));
    SavePicture("deep.png", image);
    Write("draw.jsonl", MakeDrawing(20, 20));
    RunGimp(R"((let ((image (load-picture "deep.png")))
  (draw image RUN-NONINTERACTIVE "draw.jsonl") (write-png image "deep-after.png")))");
    const QImage after(QString::fromStdWString(Path("deep-after.png")));
    EXPECT_NE(after.pixelColor(10, 10).rgba64(), image.pixelColor(10, 10).rgba64()) << "drawn on";
    for (int i = 0; i < 2400; ++i) {
        const int x = i % 60, y = i / 60;
        ASSERT_TRUE((x < 30 && y < 30) || after.pixelColor(x, y).rgba64() == image.pixelColor(x, y).rgba64())
            << x << ' ' << y;
    }
}

TEST_F(CGimp, TheSelectionIsThePictureAndLimitsTheResult) {
    const QImage page = MakeNoise({160, 120}, QImage::Format_RGB888);
    SavePicture("page.png", page);
    const QRect rc(37, 21, 70, 60); // of the layer
    SavePicture("part.png", page.copy(rc));
    Write("draw.jsonl", MakeDrawing(rc.width(), rc.height()));
    RunGimp(R"((define (selected name feather)
  (let ((image (load-picture "page.png")))
    (gimp-layer-set-offsets (layer-of image) 10 -5)
    (gimp-image-select-rectangle image CHANNEL-OP-REPLACE 47 16 70 60)
    (if feather (gimp-selection-feather image 8))
    (draw image RUN-NONINTERACTIVE "draw.jsonl")
    (save image name)))
(selected "hard.png" #f)
(selected "soft.png" #t)
(let ((image (load-picture "page.png")))
  (gimp-image-resize image 400 400 0 0)
  (gimp-image-select-rectangle image CHANNEL-OP-REPLACE 200 200 70 60)
  (draw image RUN-NONINTERACTIVE "draw.jsonl"))
)");
    EXPECT_TRUE(Says("選択範囲がレイヤーと重なっていません。")) << m_strSaid;
    const QImage hard = LoadPicture("hard.png"), soft = LoadPicture("soft.png");
    const QImage drawn = Filter("part.png", "draw.jsonl");
    EXPECT_EQ(CountDifferent(hard.copy(rc), drawn), 0);
    EXPECT_EQ(CountDifferent(hard, page), CountDifferent(page.copy(rc), drawn)) << "nothing beside it";
    // The first stroke starts at the selection's corner, which is selected by less than a half.
    EXPECT_GT(CountDifferent(soft, page), 0);
    EXPECT_GT(qGray(soft.pixel(rc.topLeft())), qGray(page.pixel(rc.topLeft())) / 2);
}

TEST_F(CGimp, RunModesAndCallsThatCannotDraw) {
    SavePicture("page.png", MakeNoise({40, 30}, QImage::Format_RGB888));
    Write("draw.jsonl", MakeDrawing(40, 30));
    Write("wrong.jsonl", MakeDrawing(40, 30) + "{\"expect\":{\"frames\":9}}\n");
    Write("idle.jsonl", "{\"wait\":10}\n");
    RunGimp(R"((define (unchanged name mode script prepare)
  (let ((image (load-picture "page.png")))
    (prepare image)
    (gimp-image-clean-all image)
    (draw image mode script)
    (say name (car (gimp-image-is-dirty image)))))
(define (nothing image) #t)
(unchanged "idle" RUN-NONINTERACTIVE "idle.jsonl" nothing)
(unchanged "wrong" RUN-NONINTERACTIVE "wrong.jsonl" nothing)
(unchanged "none" RUN-NONINTERACTIVE "none.jsonl" nothing)
(unchanged "empty" RUN-NONINTERACTIVE "" nothing)
(unchanged "window" RUN-INTERACTIVE "" nothing)
(unchanged "locked" RUN-NONINTERACTIVE "draw.jsonl"
  (lambda (image) (gimp-item-set-lock-content (layer-of image) TRUE)))
(unchanged "group" RUN-NONINTERACTIVE "draw.jsonl"
  (lambda (image) (gimp-image-insert-layer image (car (gimp-layer-group-new image)) 0 0)))
(unchanged "indexed" RUN-NONINTERACTIVE "draw.jsonl" (lambda (image)
  (gimp-image-convert-indexed image CONVERT-DITHER-NONE CONVERT-PALETTE-GENERATE 9 FALSE FALSE "")))
(let ((image (load-picture "page.png")))
  (draw image RUN-NONINTERACTIVE "draw.jsonl")
  (gimp-image-clean-all image)
  (draw image RUN-WITH-LAST-VALS "")
  (say "again" (car (gimp-image-is-dirty image)))
  (save image "twice.png"))
)");
    for (const char* psz : {"idle=0", "wrong=0", "none=0", "empty=0", "window=0", "locked=0", "group=0",
                            "indexed=0", "again=1"})
        EXPECT_TRUE(Says(psz)) << psz << '\n' << m_strSaid;
    for (const char* psz : {"wrong.jsonl:53: ", "スクリプトがありません: none.jsonl",
                            "スクリプトのパスが必要です", "there is no window system", "ロックされています",
                            "レイヤーグループには描けません", "RGBに変換してください"})
        EXPECT_TRUE(Says(psz)) << psz << '\n' << m_strSaid;
    SavePicture("once.png", Filter("page.png", "draw.jsonl"));
    EXPECT_EQ(CountDifferent(LoadPicture("twice.png"), Filter("once.png", "draw.jsonl")), 0);
}

TEST_F(CGimp, TheResultIsKeptWhateverTheUserDidInGimp) {
    QImage page(8, 6, QImage::Format_RGB888);
    page.fill(Qt::white);
    SavePicture("page.png", page);
    RunGimp(R"((define (interrupted what)
  (let ((image (load-picture "page.png")))
    (gimp-layer-set-offsets (layer-of image) 2 1)
    (say what (car (plug-in-delivery-probe RUN-NONINTERACTIVE image (layer-of image) what)))
    (if (= (car (gimp-image-is-valid image)) TRUE) image (aref (cadr (gimp-image-list)) 0))))
(define (save-result what)
  (let ((image (interrupted what)))
    (say (string-append what "-x") (car (gimp-drawable-offsets (layer-of image))))
    (write-png image (string-append what ".png"))))
(for-each save-result '("nothing" "draw" "delete" "select" "scale" "close")))");
    for (const char* psz : {"nothing=0", "draw=0", "delete=1", "select=1", "scale=1", "close=2", "delete-x=2",
                            "select-x=2", "close-x=0"})
        EXPECT_TRUE(Says(psz)) << psz << '\n' << m_strSaid;
    page.setPixel(3, 2, qRgb(255, 0, 0));
    for (const char* psz : {"nothing.png", "delete.png", "select.png", "scale.png", "close.png"})
        EXPECT_EQ(CountDifferent(LoadPicture(psz), page), 0) << psz;
    page.setPixel(1, 0, qRgb(0, 0, 255));
    EXPECT_EQ(CountDifferent(LoadPicture("draw.png"), page), 0) << "what was drawn in GIMP stays";

    PlayInGimp(R"((let ((image (load-picture "page.png")))
  (plug-in-delivery-probe RUN-NONINTERACTIVE image (layer-of image) "crash")))");
    for (int i = 0; i < 100 && !m_files.Read(Path("lives")); ++i) usleep(50000);
    EXPECT_EQ(m_files.Read(Path("lives")), "10") << m_strSaid;
}

TEST_F(CGimp, TheRealWindowDrawsTheSame) {
    SavePicture("page.png", MakeNoise({150, 100}, QImage::Format_RGB888));
    Write("draw.jsonl", MakeDrawing(150, 100));
    Write("shown.jsonl", MakeDrawing(150, 100) + "{\"screenshot\":\"window.png\"}\n");
    RunGimp(R"((let ((image (load-picture "page.png")))
  (draw image RUN-INTERACTIVE "shown.jsonl") (save image "after.png")))",
            "xvfb-run -a -s '-screen 0 1280x800x24'");
    EXPECT_GT(LoadPicture("window.png").width(), 600) << m_strSaid;
    EXPECT_EQ(CountDifferent(LoadPicture("after.png"), Filter("page.png", "draw.jsonl")), 0);
}

} // namespace
