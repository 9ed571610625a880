#include "tests/session/ScriptedSession.h"

namespace {

struct PixelCommands : testing::Test, CScriptedSession {};

} // namespace

TEST_F(PixelCommands, RunByScriptsUndoAndLeaveOtherLayers) {
    EXPECT_EQ(Play(R"(
{"mark":"start"}
{"level":{"high":200,"low":100,"channel":0}}
{"expect":{"mark":"start","history":{"undo":["レイヤー追加","レイヤー追加"]}}}
{"hue":{"hue":300}}
{"expect":{"pixel":{"x":1,"y":2,"rgba":[0,255,0,255]}}}
{"level":{"low":254,"gamma":"0.5","channel":1}}
{"hue":{"bright":256,"satPriority":0,"brightBand1":320}}
{"expect":{"history":{"undo":["レイヤー追加","レイヤー追加","色相・彩度・明度","色相・彩度・明度"]}}}
{"command":57643}
{"command":57643}
{"expect":{"mark":"start"}}
{"answer":{"dialog":"CHSBDlg","control":1433,"value":300}}
{"answer":{"cancel":true}}
{"command":"image-hsv"}
{"answer":{"dialog":"CLevelDlg","channel":4,"low":"x"}}
{"answer":{"cancel":true}}
{"command":"image-level"}
{"expect":{"box":"数字を入力してください。"}}
{"expect":{"mark":"start","enabled":{"image-level":true,"image-hsv":true}}}
)"),
              "");
    EXPECT_EQ(Play(R"(
{"command":12901}
{"answer":{"box":"ok"}}
{"command":"image-level"}
{"expect":{"box":"この処理はラスタレイヤーを対象としたものです。"}}
{"hue":{"hue":1}}
)"),
              "s:6: the box \"この処理はラスタレイヤーを対象としたものです。\" opened, but the answer of "
              "line 6 is for "
              "a dialog");
}

TEST_F(PixelCommands, ChangeWhatFloatsInOneStep) {
    EXPECT_EQ(Play(R"(
{"tool":5}
{"command":"select-all"}
{"mouse":{"message":"ldown","x":80,"y":80}}
{"mouse":{"x":160,"y":160}}
{"mouse":{"message":"lup","x":160,"y":160}}
{"expect":{"pixel":{"x":11,"y":12,"rgba":[255,0,0,255]}}}
{"mark":"afloat"}
{"hue":{"hue":60}}
{"expect":{"pixel":{"x":11,"y":12,"rgba":[0,0,255,255]},"history":{"undo":["レイヤー追加","レイヤー追加","全選択","ラスタ移動","色相・彩度・明度"]}}}
{"command":57643}
{"expect":{"mark":"afloat"}}
{"mouse":{"message":"ldown","x":160,"y":160}}
{"mouse":{"message":"lup","x":168,"y":160}}
{"expect":{"pixel":{"x":12,"y":12,"rgba":[255,0,0,255]}}}
)"),
              "");
}
