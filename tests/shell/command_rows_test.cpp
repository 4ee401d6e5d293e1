#include <cstring>
#include <set>

#include "imaging/color_table.h"
#include "resources/ids.h"
#include "shell/shell_fixture.h"
#include "shell/tool_bar.h"
#include "tools/tool_table.h"

// The vocabulary of the program, entry by entry: menus, keys, tool bar and texts, who owns each number, and what each
// row of the commands does to the document, the panels and the marks.
namespace sorvel::testshell {
namespace {

enum EntryKind { kFrame, kCut, kPopup, kPopupEnd, kSeparator };

// A line of the menu bar, and whether the frame or the cut window runs its command.
struct MenuEntry {
  int32_t id;
  const char* label;
  EntryKind kind;
};

constexpr MenuEntry kMenuBar[] = {
    {0, "ソルヴェリン(&V)", kPopup},
    {kCommandAbout, "バージョン(&V) ...", kFrame},
    {0, "", kSeparator},
    {kCommandStatusBar, "ステータスバー(&S)", kFrame},
    {kCommandToolBar, "ツールバー(&T)", kFrame},
    {0, "", kSeparator},
    {kCommandExit, "終了(&X)", kFrame},
    {0, "", kPopupEnd},
    {0, "フィルム(&F)", kPopup},
    {kCommandNewFilm, "新規作成(&N)...", kFrame},
    {kCommandOpenFilm, "開く(&O)...", kFrame},
    {kCommandSaveFilmAs, "保存(&S)...", kFrame},
    {kCommandOverwriteFilm, "上書(W)", kFrame},
    {kCommandExtractCuts, "抽出(&E)...", kFrame},
    {0, "", kSeparator},
    {kCommandAddNumberedCut, "新しいカットを追加(&D)...\tShift+F3/F10", kFrame},
    {kCommandInsertNumberedCut, "新しいカットを挿入(&I)...\tShift+F2/F11", kFrame},
    {kCommandDeleteCuts, "カットを削除...(&R)", kFrame},
    {kCommandRenameCut, "カットの名前を変更(&C)...", kFrame},
    {0, "", kSeparator},
    {kCommandPlaySelection, "アニメーション(&A)", kFrame},
    {kCommandStop, "停止(&T)\tESC/F9", kFrame},
    {kCommandExportFilm, "SVファイルを出力(&V)...", kFrame},
    {kCommandExportAs, "書き出し...", kFrame},
    {0, "", kSeparator},
    {kCommandFilmProperties, "プロパティ(&P)...", kFrame},
    {0, "", kPopupEnd},
    {0, "カット(&C)", kPopup},
    {kCommandNewCut, "新規作成(&N)", kFrame},
    {kCommandOpenCut, "開く(&O) ...", kFrame},
    {kCommandSaveCutAs, "保存(&S) ...", kFrame},
    {kCommandOverwriteCut, "上書(W)", kFrame},
    {0, "", kSeparator},
    {kCommandAddCutToFilm, "追加(&A)", kFrame},
    {kCommandInsertCutIntoFilm, "挿入(&I)", kFrame},
    {kCommandRemoveCutFromFilm, "削除(&D)", kFrame},
    {0, "", kSeparator},
    {kCommandPlay, "アニメーション(&M)\tF4/F5", kCut},
    {kCommandStop, "停止(&T)\tESC/F9", kFrame},
    {0, "", kSeparator},
    {kCommandCurrentCellOnly, "現在のセルのみを表示(&C)", kCut},
    {kCommandDimOthers, "他のレイヤを淡色表示(&G)", kCut},
    {0, "", kSeparator},
    {kCommandCutProperties, "プロパティ(&P) ...", kFrame},
    {kCommandOpenVersion, "以前の版を開く...", kFrame},
    {0, "", kPopupEnd},
    {0, "フレーム(&R)", kPopup},
    {kCommandNextFrame, "次(&N)\tF3/F7", kFrame},
    {kCommandPreviousFrame, "前(&P)\tF2/F6", kFrame},
    {kCommandFirstFrame, "先頭(&H)", kCut},
    {kCommandLastFrame, "末尾(&T)", kCut},
    {kCommandNextKeyFrame, "次のキーフレーム(&K)", kFrame},
    {kCommandPreviousKeyFrame, "前のキーフレーム(&J)", kFrame},
    {0, "", kSeparator},
    {kCommandAddFrame, "追加(&A)", kFrame},
    {kCommandInsertFrame, "挿入(&I)", kFrame},
    {kCommandDeleteFrame, "削除(&D)", kCut},
    {kCommandAddFrames, "複数追加(&M)...", kFrame},
    {kCommandDeleteFrames, "複数削除(&U) ...", kFrame},
    {0, "", kSeparator},
    {kCommandBrightnessRamp, "明度の連続変化(&L)...", kFrame},
    {kCommandFrameRamp, "位置の連続変化(&O)...", kFrame},
    {kCommandAllKeyFrames, "全てキーフレームに(&K)", kFrame},
    {0, "", kSeparator},
    {kCommandExportBitmap, "ビットマップヘ出力(&B)...", kFrame},
    {kCommandPreview, "現在のフレームを表示(&V)", kCut},
    {0, "", kSeparator},
    {kCommandFrameSize, "サイズ(&S)...", kFrame},
    {0, "", kPopupEnd},
    {0, "レイヤ(&L)", kPopup},
    {kCommandAddLayer, "追加(&A) ...", kFrame},
    {kCommandInsertLayer, "挿入(&I)...", kFrame},
    {kCommandDeleteLayer, "削除(&D)", kFrame},
    {kCommandOverwriteLayer, "上書(&W)...", kFrame},
    {0, "", kSeparator},
    {kCommandOpenLayer, "開く(&L)...", kFrame},
    {kCommandSaveLayer, "保存(&S)...", kFrame},
    {0, "", kSeparator},
    {kCommandLayerUp, "上へ(&U)", kFrame},
    {kCommandLayerDown, "下へ(&O)", kFrame},
    {0, "", kSeparator},
    {kCommandEraseLayerSketch, "下描を消去(&R)", kCut},
    {kCommandLayerRamp, "連続移動(&M)...", kFrame},
    {kCommandMergeDown, "下のレイヤに転写(&C)", kCut},
    {0, "", kSeparator},
    {kCommandLayerProperties, "プロパティ(&P)...", kFrame},
    {0, "", kPopupEnd},
    {0, "セル(&E)", kPopup},
    {kCommandNextCell, "次(&N)", kCut},
    {kCommandPreviousCell, "前(&P)", kCut},
    {kCommandFirstCell, "先頭(&H)", kCut},
    {kCommandLastCell, "末尾(&L)", kCut},
    {0, "", kSeparator},
    {kCommandBlankCell, "空セル(&E)", kCut},
    {kCommandBlankAll, "全てを空に(&M)", kCut},
    {0, "", kSeparator},
    {kCommandAddCell, "追加(&A)", kCut},
    {kCommandInsertCell, "挿入(&I)", kCut},
    {kCommandDeleteCell, "削除(&D)", kCut},
    {0, "", kSeparator},
    {kCommandUndo, "元に戻す(&U)", kCut},
    {kCommandCopy, "コピー(&C)", kCut},
    {kCommandCut, "切り取り(&T)", kCut},
    {kCommandPaste, "貼り付け(&P)", kCut},
    {0, "クリップボード(&B)", kPopup},
    {kCommandCopyToClipboard, "コピー(&C)", kCut},
    {kCommandPasteFromClipboard, "貼り付け(&P)", kCut},
    {kCommandTransparentColor, "透過色(&T) ...", kFrame},
    {0, "", kPopupEnd},
    {0, "", kSeparator},
    {kCommandToSketch, "下絵へ転化(&S)", kCut},
    {kCommandEraseSketch, "下絵を消去(&R)", kCut},
    {kCommandEraseCell, "消去(&F)", kCut},
    {kCommandFlipHorizontal, "左右反転(&O)", kCut},
    {kCommandFlipVertical, "上下反転(&U)", kCut},
    {kCommandRandomDots, "ランダムに点描(Z)", kFrame},
    {kCommandDrawGrid, "グリッドを描画(&G)", kFrame},
    {0, "", kSeparator},
    {kCommandShowPrevious, "一つ前を透過(&V)", kCut},
    {kCommandShowNext, "一つ次を透過(&X)", kCut},
    {0, "", kSeparator},
    {kCommandStepBack, "一つ戻る\tCtrl+Z", kCut},
    {kCommandStepForward, "一つ進む\tCtrl+Y", kCut},
    {0, "", kPopupEnd},
    {0, "ツール(&T)", kPopup},
    {kToolFreePen, "自由ペン(&B)", kFrame},
    {kToolEraser, "消しゴム(&E)", kFrame},
    {kToolFill, "塗りつぶし(&I)", kFrame},
    {kToolGradient, "グラデーション(&D)", kFrame},
    {kToolEdging, "縁取り(&H)", kFrame},
    {kToolRectangle, "矩形(&R)", kFrame},
    {kToolLine, "直線(&N)", kFrame},
    {kToolCurve, "連続曲線(&V)", kFrame},
    {kToolFocusLines, "集中線(&C)", kFrame},
    {kToolParallelLines, "平行線(&A)", kFrame},
    {kToolText, "テキスト(&T)", kFrame},
    {kToolZoom, "拡大/縮小表示(&Z)", kFrame},
    {kToolAreaSelect, "領域選択(&S)", kFrame},
    {kToolMosaic, "モザイク(&U)", kFrame},
    {kToolLayerPosition, "レイヤ位置(&L)", kFrame},
    {kToolFramePosition, "フレーム位置(&F)", kFrame},
    {0, "", kSeparator},
    {kCommandSnapGrid, "グリッド(&G)...", kFrame},
    {kCommandMask, "マスク(&M)...", kFrame},
    {kCommandFont, "フォント(&O)...", kFrame},
    {0, "", kSeparator},
    {kCommandMuraRemoval, "ムラ消し(&W)", kCut},
    {kCommandLineEmphasis, "線を強調(&K)", kCut},
    {kCommandSquarePen, "角ペン(&P)", kFrame},
    {0, "", kSeparator},
    {kCommandExplainTool, "説明(&X) ...\tF1/F8", kFrame},
    {0, "", kPopupEnd},
    {0, "ウィンドウ(&W)", kPopup},
    {kCommandCloseAll, "全て閉じる(&C)...", kFrame},
    {kCommandSheet, "タイムシート(&T)", kFrame},
    {0, "", kPopupEnd},
};

bool IsItem(const MenuEntry& entry) {
  return entry.kind == kFrame || entry.kind == kCut;
}

struct Text {
  int32_t id;
  const char* text;
};

constexpr Text kTexts[] = {
    {kFrameTimeEdit, "現在のフレームの時間をFPS単位で指定します。マイナス値で前のフレームと段階的につなぎます。"},
    {kCutList,
     "現在のフィルムにあるカットの一覧です。Shift/"
     "Ctrlキーで複数選択できます。また、ダブルクリックでカットを開きます。"},
    {kLayerList, "現在のフレームにあるレイヤの一覧です。選択されたレイヤが編集対象となります。"},
    {kLoopEdit, "ループさせたい先頭のフレームにループ回数を指定し、以降のフレームを0にします。"},
    {kCommentEdit, "現在のフレームについてのコメントを入力します。"},
    {kBrightnessEdit,
     "出力時のフレームの明るさを指定します。50が標準で、0で画面が全て黒くなり、100で全て白くなります。"},
    {kKeyFrameCheck,
     "チェックすると現在のフレームをキーフレームに指定します。左側の数はフレーム番号、右のカッコ内の数は実際のタイミン"
     "グを示します。"},
    {kCommandExit, "ソルヴェリンを終了します。"},
    {kCommandAddFrame, "フレームを追加\n現在のフレームの次の位置に新しいフレームを追加します。"},
    {kCommandInsertFrame, "フレームを挿入\n現在のフレームの位置に新しいフレームを挿入します。"},
    {kCommandDeleteFrame, "フレームを削除\n現在のフレームを削除します。"},
    {kCommandPreviousFrame, "前のフレーム\n前のフレームに移動します。"},
    {kCommandNextFrame, "次のフレーム\n次のフレームに移動します。"},
    {kCommandDeleteCell, "セルを削除\n現在のセルを削除します。"},
    {kCommandInsertCell, "セルを挿入\n現在のセルの位置に新しいセルを挿入します。"},
    {kCommandAddCell, "セルを追加\n現在のセルの次の位置に新しいセルを追加します。"},
    {kCommandPreviousCell, "前のセル\n前のセルに変更します。"},
    {kCommandNextCell, "次のセル\n次のセルに変更します。"},
    {kCommandAddLayer, "現在のレイヤの次の位置に新しいレイヤを追加します。"},
    {kCommandDeleteLayer, "現在のレイヤを削除します。"},
    {kCommandLayerUp, "現在のレイヤのフレーム中の位置を一つ上げます。"},
    {kCommandLayerDown, "現在のレイヤのフレーム中の位置を一つ下げます。"},
    {kToolFramePosition,
     "フレーム位置\nドラッグしてフレームの位置を変更します。\n右クリックで前のフレームと同じ位置になります。\nCtrl + "
     "右クリックで前後の中間の位置になります。\nCtrl + 左クリックで初期位置に戻ります。"},
    {kCommandLayerProperties, "現在のレイヤのプロパティを変更します。"},
    {kToolLayerPosition,
     "レイヤ位置\nドラッグしてレイヤの位置を指定します。\n右クリックで前のフレームと同じ位置になります。\nCtrl + "
     "右クリックで前後の中間の位置になります。\nCtrl + 左クリックで初期位置に戻ります。"},
    {kCommandToSketch, "現在のセルの内容を下絵に転化します。"},
    {kCommandEraseSketch, "現在のセルの下絵を消去します。"},
    {kCommandPlay, "再生\n現在のカットをアニメーションします。"},
    {kCommandStop, "停止\nアニメーションを停止します。"},
    {kToolZoom,
     "拡大/"
     "縮小表示\n左右のクリックでカーソル位置の表示を拡大したり縮小したり出来ます。\nしかしキーボードを使った方が良いで"
     "しょう。"},
    {kToolFreePen, "自由ペン\nドラッグして線を描きます。"},
    {kCommandUndo, "元に戻す\nセルの状態を一つ前に戻します。"},
    {kToolFill, "塗りつぶし\nクリックして閉鎖領域を塗りつぶします。\n右クリックでカーソル下の色を拾います。"},
    {kCommandShowPrevious, "一つ前のセルの線を透過します。"},
    {kCommandShowNext, "一つ次のセルの線を透過します。"},
    {kCommandCurrentCellOnly, "編集対象のセルのみを表示します。"},
    {kToolLine,
     "直線\nドラッグで直線を描きます。\nCtrl を押しながらクリックすると、連続直線モードとなります。\n連続直線モードで "
     "Ctrl を押しながらクリックするとスキップします。\n連続直線モードは右クリックで解除します。"},
    {kToolCurve, "連続曲線\n連続した点を曲線で結びます。\n右クリックで解除します。"},
    {kCommandSnapGrid, "グリッドのサイズを指定します。"},
    {kCommandFirstFrame, "先頭のフレームに移動します。"},
    {kCommandLastFrame, "末尾のフレームに移動します。"},
    {kCommandFirstCell, "先頭のセルに変更します。"},
    {kCommandLastCell, "末尾のセルに変更します。"},
    {kToolRectangle, "矩形\nドラッグして矩形を描きます。\nCtrl を押しながら離すと、塗り潰します。"},
    {kCommandMask, "マスク\nマスクをかける色の種類を指定します。"},
    {kCommandAddCutToFilm, "現在のカットをフィルムに追加します。"},
    {kCommandInsertCutIntoFilm, "現在のカットをフィルムの選択位置に挿入します。"},
    {kCommandRemoveCutFromFilm, "選択位置のカットをフィルムから削除します。"},
    {kCommandNewCut, "カットを新しく作成します。"},
    {kCommandNewFilm, "フィルムを新しく作成します。"},
    {kCommandSaveCutAs, "カットをファイル名を指定して保存します。"},
    {kCommandOpenFilm, "フィルムを開きます。"},
    {kCommandSaveFilmAs, "フィルムを保存します。"},
    {kCommandOpenCut, "カットを開きます。"},
    {kCommandPlaySelection, "カット・リスト上で選択されたカットを、連続してアニメーションします。"},
    {kTextStoryboard, "現在のカットをコンテモードで編集します。"},
    {kToolAreaSelect,
     "領域選択\nドラッグして選択領域を指定できます。\n右クリックでセル全体を選択出来ます。\n矩形内をドラッグすると移動"
     "できます。"},
    {kCommandBlankCell, "空セルに指定します。空セルは描画されません。チェックを外すと元に戻ります。"},
    {kCommandCopy, "選択領域をコピーします。"},
    {kCommandPaste, "コピーされた領域を貼り付けます。"},
    {kCommandCut, "選択領域を切り取ります。"},
    {kCommandEraseLayerSketch, "現在のレイヤ中の全てのセルの下書き色を消去します。"},
    {kToolEraser, "消しゴム\nドラッグした部分を下絵に転化します。\n右クリックで枠の大きさを変えます。"},
    {kCommandSaveLayer, "現在のレイヤをファイルへ保存します。"},
    {kCommandOpenLayer, "レイヤをファイルから開きます。"},
    {kCommandOverwriteLayer, "現在のレイヤを指定したファイルで上書します。"},
    {kCommandLayerRamp, "現在のフレームから指定したフレームまでの現在のレイヤの位置を段階的につなぎます。"},
    {kToolGradient,
     "グラデーション\n色を変えて二つの座標をクリックすると、段階的に色を変えて塗りつぶします。\n右クリックで色を拾いま"
     "す。"},
    {kCommandMergeDown, "一つ下のレイヤに現在のレイヤのイメージを同化させます。"},
    {kCommandFont, "テキスト・ツールで使うフォントを指定します。"},
    {kToolText, "テキスト\nクリックしてダイアログにテキストを入力し、もう一度クリックして描画します。"},
    {kCommandSquarePen, "ペン先を矩形に変えます。あまり意味が無いような気がします。"},
    {kToolEdging, "縁取り\nドラッグした領域の内部に縁取りをかけます。"},
    {kCommandExportBitmap, "現在のフレームのイメージをビットマップファイルとして出力します。"},
    {kCommandCutProperties, "カットのプロパティを変更します。"},
    {kCommandInsertLayer, "現在のレイヤの位置に新しいレイヤを挿入します。"},
    {kCommandFilmProperties, "フィルムのプロパティを変更します。"},
    {kCommandExportFilm, "フィルムをSVファイルとして出力します。"},
    {kCommandExportAs, "フィルムを、なければ現在のカットを、ウェブページやGIF、PNGとして書き出します。"},
    {kCommandStatusBar, "ステータスバーを表示します。"},
    {kCommandToolBar, "ツールバーを表示します。"},
    {kToolMosaic,
     "モザイク\nドラッグしてモザイクをかけます。\n右クリックで矩形のサイズを変更します。\nモザイク用のレイヤを作るのが"
     "良いでしょう。"},
    {kCommandOverwriteCut, "カットを上書して保存します。"},
    {kToolFocusLines, "集中線\n最初のクリックで中心点を指定し、以降で集中線を描画します。\n右クリックで解除します。"},
    {kCommandPasteFromClipboard, "クリップボードの画像をセルに貼り付けます。"},
    {kCommandEraseCell, "現在のセルの全範囲、もしくは選択範囲を消去します。"},
    {kCommandBrightnessRamp,
     "現在のフレームから指定したフレームまでの明度を段階的につなぎます。主にフェイドイン、フェイドアウトに使います。"},
    {kCommandAddFrames, "任意の数のフレームを追加します。"},
    {kCommandDimOthers, "現在のレイヤ以外を淡い色で表示します。また、現在のレイヤが最も上層に表示されます。"},
    {kCommandMuraRemoval, "自動的にムラと思われる座標をスキップします。"},
    {kCommandFrameRamp,
     "現在のフレームから指定したフレームまでの位置を段階的につなぎます。主にパン、ティルトに使います。"},
    {kCommandLineEmphasis, "作画用の線(パレット左上の線明暗の三色)を原色で強調します。"},
    {kCommandBlankAll, "全てのフレームで、同一レイヤのセルの空状態を反転します。"},
    {kCommandNextKeyFrame, "次のキーフレームに移動します。"},
    {kCommandPreviousKeyFrame, "前のキーフレームへ移動します。"},
    {kCommandAllKeyFrames, "全てのフレームをキーフレームに指定します。原画作業が終った時に使ってください。"},
    {kCommandFlipHorizontal, "セルの全体もしくは選択矩形を左右反転します。"},
    {kCommandFlipVertical, "セルの全体もしくは選択矩形を上下反転します。"},
    {kCommandFrameSize, "フレームのサイズを設定します。"},
    {kCommandPreview, "現在のフレームをアニメーション ウィンドウに出力します。"},
    {kCommandAddNumberedCut,
     "新しいカットを追加\n新しいカットをフィルムに追加します。ファイル名は自動的に番号付けされます。"},
    {kCommandInsertNumberedCut,
     "新しいカットを挿入\n新しいカットをフィルムに挿入します。ファイル名は自動的に番号付けされます。"},
    {kCommandDeleteCuts, "カットを削除\n現在のカットをフィルムから削除します。また、同時にファイルも削除できます。"},
    {kCommandRenameCut, "現在のカットの名前を変更します。実際のファイル名も書き換えられます。"},
    {kCommandOverwriteFilm, "フィルムを上書して保存します。"},
    {kCommandCloseAll, "カットのウィンドウを全て閉じます。"},
    {kCommandCopyToClipboard, "セルの画像をクリップボードへコピーします。"},
    {kCommandRandomDots, "選択領域もしくは全体に、現在のペンを使ってランダムに点を描きます。"},
    {kCommandDrawGrid, "グリッドを下書き色で描画します。この時自動的にマスクがかかります。"},
    {kTextCircle, "円\nドラッグして中心点と半径を指定し、円形を描きます。\nCtrl を押しながら離すと、塗り潰します。"},
    {kToolParallelLines,
     "最初にドラッグして線を描画し、以降のクリックでその線をコピーします。\n右クリックで解除します。\nCtrl + "
     "右クリックで、線を 90 度回転できます。"},
    {kCommandDeleteFrames, "複数のカットをまとめて削除します。"},
    {kCommandExtractCuts, "カット・リスト上で選択されたカットを、新しいフィルムに抽出します。"},
    {kTextSearch, "コメントを検索します。"},
    {kCommandExplainTool, "現在のツールを説明します。"},
    {kCommandTransparentColor, "貼り付けの際に透過色にする RGB 値を指定します。"},
    {kTextSaveQuestion, "%s を保存しますか？"},
    {kTextDeleteQuestion, "ファイルを削除しますか？"},
    {kTextAbout, "Sorvel Developer Version 1.0"},
    {kCommandAbout, "バージョン情報を表示します。"},
    {kCommandOpenVersion, "カットの以前の版を新しいウィンドウで開きます。"},
    {kCommandStepBack, "一つ戻る\nカットの変更を一つずつさかのぼって取り消します。"},
    {kCommandStepForward, "一つ進む\n取り消した変更を一つずつやり直します。"},
};

std::string TextWithNumber(int32_t id) {
  char text[512];
  platform::ReadResourceText(id, text, sizeof(text));
  return text;
}

// A line of text for each line of the menu, popups in place.
void Describe(const platform::Menu* menu, std::string* text) {
  for (const platform::MenuLine& line : menu->lines) {
    if (line.separator) {
      *text += "-\n";
    } else if (line.popup != nullptr) {
      *text += line.label + " {\n";
      Describe(line.popup, text);
      *text += "}\n";
    } else {
      *text += std::to_string(line.id) + " " + line.label + "\n";
    }
  }
}

std::string Expected(const MenuEntry* from, const MenuEntry* to) {
  std::string text;
  for (const MenuEntry* entry = from; entry != to; ++entry) {
    if (entry->kind == kSeparator) text += "-\n";
    if (entry->kind == kPopup) text += ShiftJis(entry->label) + " {\n";
    if (entry->kind == kPopupEnd) text += "}\n";
    if (IsItem(*entry)) text += std::to_string(entry->id) + " " + ShiftJis(entry->label) + "\n";
  }
  return text;
}

class Vocabulary : public ShellTest {
 protected:
  // The command with an answer for whatever it asks.
  int32_t RunWithCancel(int32_t id) {
    const std::vector<std::pair<int32_t, int32_t>> dialogs = {{kCommandNewFilm, kFilmDialog},
                                                              {kCommandFilmProperties, kFilmDialog},
                                                              {kCommandNewCut, kCutDialog},
                                                              {kCommandAddNumberedCut, kCutDialog},
                                                              {kCommandInsertNumberedCut, kCutDialog},
                                                              {kCommandSnapGrid, kGridDialog},
                                                              {kCommandMask, kMaskDialog},
                                                              {kCommandFont, kFontDialog}};
    for (const auto& [command, dialog] : dialogs) {
      if (command == id) platform::headless::QueueDialog({dialog, {}, false});
    }
    const std::set<int32_t> files = {kCommandOpenFilm,    kCommandSaveFilmAs, kCommandOverwriteFilm,
                                     kCommandExtractCuts, kCommandOpenCut,    kCommandOpenLayer};
    if (files.count(id) != 0) platform::headless::QueueFileCancel();
    if (id == kCommandTransparentColor) platform::headless::QueueColorCancel();
    if (id == kCommandCloseAll) platform::headless::QueueYesNo(false);
    return frame->OnCommand(0, id, nullptr);
  }
};

TEST_F(Vocabulary, TheMenuBarHasTheseLines) {
  std::string text;
  Describe(platform::FrameMenu(frame->frameWindow), &text);
  EXPECT_EQ(text, Expected(std::begin(kMenuBar), std::end(kMenuBar)));
}

TEST_F(Vocabulary, ThePopupOfTheToolsHasTheLinesOfTheMenuOfTheTools) {
  const MenuEntry* first = std::begin(kMenuBar);
  while (first->id != kToolFreePen) ++first;
  const MenuEntry* end = first;
  while (end->kind != kPopupEnd) ++end;
  std::string text;
  ASSERT_NE(platform::Submenu(frame->toolPopupMenu, 0), nullptr);
  Describe(platform::Submenu(frame->toolPopupMenu, 0), &text);
  EXPECT_EQ(text, Expected(first, end));
  EXPECT_EQ(frame->toolPopupMenu->lines.size(), 1u);
}

TEST_F(Vocabulary, EveryTextStandsAsItIs) {
  for (const Text& each : kTexts) EXPECT_EQ(TextWithNumber(each.id), ShiftJis(each.text)) << each.id;
}

TEST_F(Vocabulary, TheKeysAreTheseAndNoOthers) {
  struct Key {
    int32_t key;
    bool shift;
    bool control;
    int32_t command;
  };
  constexpr int32_t f1 = 0x70;
  const Key keys[] = {
      {'N', false, true, kCommandNewCut},
      {'O', false, true, kCommandOpenCut},
      {'S', false, true, kCommandSaveCutAs},
      {27, false, false, kCommandStop},
      {f1, false, false, kCommandExplainTool},
      {f1 + 9, false, false, kCommandAddNumberedCut},
      {f1 + 10, false, false, kCommandInsertNumberedCut},
      {f1 + 1, false, false, kCommandPreviousFrame},
      {f1 + 1, true, false, kCommandInsertNumberedCut},
      {f1 + 2, false, false, kCommandNextFrame},
      {f1 + 2, true, false, kCommandAddNumberedCut},
      {f1 + 3, false, false, kCommandPlay},
      {f1 + 4, false, false, kCommandPlay},
      {f1 + 5, false, false, kCommandPreviousFrame},
      {f1 + 6, false, false, kCommandNextFrame},
      {f1 + 7, false, false, kCommandExplainTool},
      {f1 + 8, false, false, kCommandStop},
      {13, false, false, kCommandFocusForward},
      {13, true, false, kCommandFocusBackward},
      {9, false, false, kCommandFocusForward},
      {9, true, false, kCommandFocusBackward},
      {'T', false, true, kCommandSheet},
      {'Z', false, true, kCommandStepBack},
      {'Y', false, true, kCommandStepForward},
      {'Z', true, true, kCommandStepForward},
  };
  size_t found = 0;
  for (int32_t key = 0; key < 256; ++key) {
    for (const bool shift : {false, true}) {
      for (const bool control : {false, true}) {
        if (platform::headless::FindAccelerator(key, shift, control) != 0) ++found;
      }
    }
  }
  EXPECT_EQ(found, std::size(keys));
  for (const Key& each : keys) {
    EXPECT_EQ(platform::headless::FindAccelerator(each.key, each.shift, each.control), each.command) << each.key;
  }
}

TEST_F(Vocabulary, TheToolBarHasTheseButtons) {
  // Picture and command; command 0 is a separator.
  const std::pair<int32_t, int32_t> buttons[] = {{21, kCommandInsertNumberedCut},
                                                 {22, kCommandAddNumberedCut},
                                                 {23, kCommandDeleteCuts},
                                                 {0, 0},
                                                 {1, kCommandAddFrame},
                                                 {2, kCommandInsertFrame},
                                                 {3, kCommandDeleteFrame},
                                                 {5, kCommandPreviousFrame},
                                                 {4, kCommandNextFrame},
                                                 {0, 0},
                                                 {6, kCommandAddCell},
                                                 {7, kCommandInsertCell},
                                                 {8, kCommandDeleteCell},
                                                 {10, kCommandPreviousCell},
                                                 {9, kCommandNextCell},
                                                 {0, 0},
                                                 {11, kToolFreePen},
                                                 {12, kToolEraser},
                                                 {13, kToolLine},
                                                 {14, kToolCurve},
                                                 {15, kToolFill},
                                                 {16, kToolAreaSelect},
                                                 {17, kToolZoom},
                                                 {0, 0},
                                                 {0, kCommandUndo},
                                                 {18, kCommandMask},
                                                 {0, 0},
                                                 {24, kCommandPlay},
                                                 {25, kCommandStop}};
  const std::set<int32_t> tools = {kToolFreePen, kToolEraser,     kToolLine, kToolCurve,
                                   kToolFill,    kToolAreaSelect, kToolZoom};
  ASSERT_EQ(std::size(kToolButtons), std::size(buttons));
  ASSERT_EQ(frame->toolBar->buttons.size(), std::size(buttons));
  for (size_t i = 0; i < std::size(buttons); ++i) {
    EXPECT_EQ(kToolButtons[i].command, buttons[i].second) << i;
    EXPECT_EQ(frame->toolBar->buttons[i].command, buttons[i].second) << i;
    EXPECT_EQ(kToolButtons[i].check, tools.count(buttons[i].second) != 0) << i;
    EXPECT_EQ(kToolButtons[i].image, buttons[i].first) << i;
  }
}

TEST_F(Vocabulary, TheButtonOfTheCurrentToolAloneIsDown) {
  for (const int32_t tool :
       {kToolEraser, kToolLine, kToolCurve, kToolFill, kToolAreaSelect, kToolZoom, kToolFreePen, kToolFocusLines}) {
    Command(tool);
    for (const platform::ToolButtonState& button : frame->toolBar->buttons) {
      EXPECT_EQ(button.checked, button.command == tool) << tool << " " << button.command;
    }
    EXPECT_EQ(platform::headless::CheckedEntries(frame->toolPopupMenu), std::vector<int32_t>({tool}));
  }
}

TEST_F(Vocabulary, WithoutACutTheFrameHandlesItsOwnAndPassesTheCutsOn) {
  for (const MenuEntry& entry : kMenuBar) {
    if (!IsItem(entry) || entry.id == kCommandExit) continue;
    EXPECT_EQ(RunWithCancel(entry.id), entry.kind == kFrame ? 0 : 1) << entry.id;
  }
  for (const int32_t id : {kCommandFocusForward, kCommandFocusBackward})
    EXPECT_EQ(frame->OnCommand(0, id, nullptr), 0) << id;
  EXPECT_EQ(frame->ActiveCut(), nullptr);
}

TEST_F(Vocabulary, WithACutItsCommandsAreHandledByItsWindow) {
  MakeCut();
  for (const MenuEntry& entry : kMenuBar) {
    if (IsItem(entry)) {
      EXPECT_EQ(Cut()->OnCommand(0, entry.id, nullptr), entry.kind == kCut ? 0 : 1) << entry.id;
    }
  }
}

TEST_F(Vocabulary, NumbersThatNobodyOwnsArePassedOn) {
  std::set<int32_t> owned = {kCommandFocusForward, kCommandFocusBackward};
  for (const MenuEntry& entry : kMenuBar) owned.insert(entry.id);
  for (const bool withCut : {false, true}) {
    if (withCut) MakeCut();
    for (const int32_t first : {0, 9900, 39900, 57990}) {
      for (int32_t id = first; id < first + 300; ++id) {
        const bool isPanel = id >= kFrameTimeEdit && id <= kKeyFrameCheck;
        if (isPanel || owned.count(id) != 0) continue;
        EXPECT_EQ(frame->OnCommand(0, id, nullptr), 1) << id;
      }
    }
  }
}

// What each command does. The scene: three frames of the layers A, B and C with three cells each; the middle frame,
// B and its second cell are current. A comment and a brightness are typed; the other frames are key frames.

struct Row {
  int32_t id;
  int32_t dialog;    // that comes up, or 0
  const char* file;  // the answer to a file dialog, or null
  bool selectsAll;   // a selection lies over the whole cell
  const char* effects;
};

class CommandRows : public ShellTest {
 protected:
  void MakeScene(bool selectsAll) {
    MakeCut();
    AddLayer("B");
    AddLayer("C");
    for (int32_t i = 0; i < 3; ++i) testdoc::NumberCells(Cut()->layers.At(i), 3);
    MakeFrames(3);
    Command(kCommandPreviousFrame);
    platform::headless::SelectLines(frame->layerList, {1});
    Command(kCommandNextCell);
    for (const int32_t i : {0, 2}) Cut()->frames.At(i)->SetKey(true);
    FileCommand(kCommandSaveLayer, folder.Path("old.lyr"));
    FileCommand(kCommandSaveCutAs, folder.Path("old.cut"));
    Cut()->SaveUndo();
    Cut()->undoRect = Rect{};
    if (selectsAll) {
      Point corners[2] = {{0, 0}, {40, 30}};
      Cut()->CutToWindow(corners, 2);
      Cut()->selection = {corners[0].x, corners[0].y, corners[1].x, corners[1].y};
    }
    Type(frame->commentEdit, "typed");
    Type(frame->brightnessEdit, "50x");
    for (int32_t i = 0; i < 3; ++i) {
      platform::DeleteListLine(frame->layerList, i);
      platform::InsertListLine(frame->layerList, i, "old");
    }
    platform::SelectListLine(frame->layerList, 1);
    ClearMarks();
    SpoilView();
  }

  std::string Effects() {
    std::string effects;
    for (int32_t i = 0; i < Cut()->frames.Count(); ++i) {
      if (std::strcmp(Cut()->frames.At(i)->comment, "typed") == 0 && effects.empty()) effects = "commit ";
    }
    const int32_t lines = platform::ListCount(frame->layerList);
    int32_t oldLines = 0;
    for (int32_t i = 0; i < lines; ++i) oldLines += LineOf(frame->layerList, i) == "old" ? 1 : 0;
    const bool isListNew = oldLines == 0;
    if (TextOf(frame->brightnessEdit) != "50x") effects += isListNew ? "refresh " : "edits ";
    if (TextOf(frame->brightnessEdit) == "50x" && isListNew) effects += "list ";
    if (oldLines == lines - 1) effects += "line ";
    if (ViewIsCurrent()) effects += "repaint ";
    return effects + Marks();
  }

  std::string EffectsOf(const Row& row) {
    MakeScene(row.selectsAll);
    if (row.dialog != 0) platform::headless::QueueDialog({row.dialog, {}, true});
    if (row.file != nullptr) platform::headless::QueueFile(folder.Path(row.file));
    Command(row.id);
    const std::string effects = Effects();
    CloseCuts();
    return effects;
  }

  void Expect(const std::vector<Row>& rows) {
    for (const Row& row : rows) EXPECT_EQ(EffectsOf(row), row.effects) << row.id;
  }
  // The same for commands that ask nothing.
  void ExpectEach(const std::vector<int32_t>& ids, const char* effects) {
    for (const int32_t id : ids) Expect({{id, 0, nullptr, false, effects}});
  }
};

TEST_F(CommandRows, OfFrames) {
  ExpectEach({kCommandPreviousFrame, kCommandNextFrame, kCommandFirstFrame, kCommandLastFrame, kCommandNextKeyFrame,
              kCommandPreviousKeyFrame},
             "commit refresh repaint mt");
  ExpectEach({kCommandAddFrame}, "commit refresh mit");
  ExpectEach({kCommandInsertFrame}, "commit refresh mt");
  ExpectEach({kCommandDeleteFrame}, "refresh repaint mit");
  ExpectEach({kCommandAllKeyFrames}, "refresh mt");
  Expect({{kCommandAddFrames, kFrameCountDialog, nullptr, false, "commit refresh mit"},
          {kCommandDeleteFrames, kFrameCountDialog, nullptr, false, "refresh mit"},
          {kCommandBrightnessRamp, kBrightnessRampDialog, nullptr, false, "commit mt"},
          {kCommandFrameRamp, kFrameRampDialog, nullptr, false, "commit mt"},
          {kCommandCutProperties, kCutDialog, nullptr, false, "repaint mit"},
          {kCommandFrameSize, kFrameSizeDialog, nullptr, false, "mt"}});
}

TEST_F(CommandRows, OfLayers) {
  ExpectEach({kCommandDeleteLayer}, "list repaint mit");
  ExpectEach({kCommandLayerUp, kCommandLayerDown}, "line repaint mit");
  ExpectEach({kCommandEraseLayerSketch, kCommandMergeDown}, "repaint mit");
  Expect({{kCommandAddLayer, kLayerDialog, nullptr, false, "refresh repaint mit"},
          {kCommandInsertLayer, kLayerDialog, nullptr, false, "refresh repaint mit"},
          {kCommandLayerProperties, kLayerDialog, nullptr, false, "repaint mit"},
          {kCommandSaveLayer, 0, "new.lyr", false, ""},
          {kCommandOverwriteLayer, 0, "old.lyr", false, "repaint mit"}});
}

TEST_F(CommandRows, OfCells) {
  ExpectEach({kCommandDeleteCell, kCommandInsertCell, kCommandAddCell, kCommandPreviousCell, kCommandNextCell,
              kCommandFirstCell, kCommandLastCell, kCommandBlankCell, kCommandBlankAll},
             "line repaint mit");
  // There is nothing to paste yet.
  ExpectEach({kCommandPaste, kCommandPasteFromClipboard}, "");
  ExpectEach({kCommandToSketch, kCommandEraseSketch, kCommandEraseCell, kCommandUndo, kCommandFlipHorizontal,
              kCommandFlipVertical},
             "repaint mit");
  ExpectEach({kCommandCopy, kCommandCut, kCommandCopyToClipboard}, "");
  Expect({{kCommandCopy, 0, nullptr, true, ""},
          {kCommandCut, 0, nullptr, true, "repaint mit"},
          {kCommandRandomDots, kRandomDotsDialog, nullptr, false, "repaint mit"},
          {kCommandDrawGrid, kGridDialog, nullptr, false, "repaint mit"}});
}

TEST_F(CommandRows, OfPlayingViewAndTools) {
  // The stream that is played is new, and the cut still to be saved.
  ExpectEach({kCommandPlay}, "commit repaint m");
  ExpectEach({kCommandShowPrevious, kCommandShowNext, kCommandDimOthers, kCommandLineEmphasis}, "repaint ");
  ExpectEach({kCommandCurrentCellOnly}, "repaint i");
  // Switches are flipped twice.
  ExpectEach({kCommandStop, kCommandMuraRemoval, kCommandMuraRemoval, kCommandSquarePen, kCommandExplainTool,
              kCommandAbout, kCommandStatusBar, kCommandStatusBar, kCommandToolBar, kCommandToolBar,
              kCommandFocusForward, kCommandFocusBackward},
             "");
  Expect({{kCommandSnapGrid, kGridDialog, nullptr, false, ""},
          {kCommandMask, kMaskDialog, nullptr, false, ""},
          {kCommandFont, kFontDialog, nullptr, false, ""}});
  ExpectEach({kToolFramePosition, kToolLayerPosition, kToolZoom, kToolFreePen, kToolFill, kToolLine, kToolCurve,
              kToolRectangle, kToolAreaSelect, kToolEraser, kToolGradient, kToolText, kToolEdging, kToolMosaic,
              kToolFocusLines, kToolParallelLines},
             "");
}

TEST_F(CommandRows, OfFiles) {
  ExpectEach({kCommandOverwriteCut, kCommandAddCutToFilm, kCommandInsertCutIntoFilm, kCommandRemoveCutFromFilm}, "");
  Expect({{kCommandSaveCutAs, 0, "new.cut", false, "commit t"},
          {kCommandOverwriteFilm, 0, "new.flm", false, ""},
          {kCommandSaveFilmAs, 0, "new.flm", false, ""},
          {kCommandFilmProperties, kFilmDialog, nullptr, false, ""}});
}

// The order in which a command of the cut window tells the frame and repaints: a pulse comes before and after the
// repaint, and the view is as it should be by the second one.
class OrderHost final : public CutWindowHost {
 public:
  OrderHost() : CutWindowHost(AllTools()) {}

  CutWindow* ActiveCut() override {
    CutWindow* cut = static_cast<CutWindow*>(platform::ObjectOf(platform::ActiveMdiChild(mdiClient)));
    // Of all that these commands do only a pulse asks which window is the active one.
    if (records) Note("pulse");
    return cut;
  }
  int32_t OnCommand(int32_t, int32_t, platform::WindowHandle) override { return 1; }
  void SendCommand(int32_t) override {}
  void RefreshPanels(CutWindow*) override { Note("refresh"); }
  void CommitPanels(CutWindow*) override { Note("commit"); }
  void CommitTyping(CutWindow*) override {}
  void RefreshLayerLine(CutWindow*) override { Note("line"); }
  void SelectCutLine(CutWindow*) override {}
  void TogglePanels() override {}
  bool AskSaveCut(CutWindow*) override { return true; }
  void CutGone(CutWindow*) override {}
  void StopAnimation() override { Note("stop"); }
  int32_t PlayBuffer(Buffer<uint8_t>, int32_t) override {
    Note("play");
    return 1;
  }
  bool EditText(char**) override { return false; }

  // The marks as they are then: i images, t timing; * a view that shows the frame; w the wait cursor.
  void Note(const char* what) {
    if (!records) return;
    records = false;
    log += log.empty() ? what : std::string(" ") + what;
    CutWindow* cut = static_cast<CutWindow*>(platform::ObjectOf(platform::ActiveMdiChild(mdiClient)));
    IndexedImage composed;
    composed.Resize(cut->width, cut->height, 0);
    cut->CurrentFrame()->ComposeFrame(&composed, 0, 0, cut->width, cut->height, &cut->viewFlags, nullptr);
    if (cut->Has(kImagesStale)) log += "i";
    if (testdoc::Picture(&composed) == testdoc::Picture(&cut->view)) log += "*";
    if (platform::headless::CurrentCursor() == platform::CursorShape::kWait) log += "w";
    records = true;
  }

  platform::WindowHandle mdiClient = nullptr;
  bool records = false;
  std::string log;
};

class CommandOrder : public testing::Test {
 protected:
  void SetUp() override {
    platform::headless::Reset();
    ResetProgram();
    host.frameWindow = platform::MakeFrameWindow("Frame", "", 103, nullptr);
    host.mdiClient = platform::MakeMdiClient(host.frameWindow, kMdiClientId, 0, 0);
  }
  void TearDown() override {
    platform::DestroyWindow(host.frameWindow);
    ResetProgram();
    platform::headless::Reset();
  }

  // Two layers of three cells, three frames; the middle frame, the upper layer and its second cell are current.
  std::string OrderOf(int32_t id) {
    CutWindow* cut = new CutWindow(&host, 16, 8, 24, "", 0);
    cut->AddFrame();
    for (const char* name : {"A", "B"}) {
      testdoc::NumberCells(cut->AddLayer(name, 16, 8, &cut->prototype), 3);
      cut->AttachLayer(cut->layers.Count() - 1, 0, 0);
    }
    for (int32_t i = 1; i < 3; ++i) cut->AddFrame()->CopyFrom(cut->frames.At(i - 1));
    cut->PreviousFrame();
    cut->NextCellOfFrame();
    cut->SaveUndo();
    cut->Create(host.mdiClient);
    cut->view.Fill(24);
    cut->stateFlags &= ~static_cast<uint32_t>(kModified | kImagesStale | kTimingStale);
    host.log.clear();
    host.records = true;
    EXPECT_EQ(cut->OnCommand(0, id, nullptr), 0);
    host.records = false;
    platform::DestroyMdiChild(host.mdiClient, cut->window);
    return host.log;
  }

  OrderHost host;
};

TEST_F(CommandOrder, OfFrames) {
  EXPECT_EQ(OrderOf(kCommandDeleteFrame), "refreshi pulsei pulsei*");
  for (const int32_t id : {kCommandFirstFrame, kCommandLastFrame})
    EXPECT_EQ(OrderOf(id), "commit refresh pulse pulse*") << id;
}

TEST_F(CommandOrder, OfCells) {
  for (const int32_t id : {kCommandDeleteCell, kCommandInsertCell, kCommandAddCell, kCommandPreviousCell,
                           kCommandNextCell, kCommandFirstCell, kCommandLastCell}) {
    EXPECT_EQ(OrderOf(id), "linei pulsei pulsei*") << id;
  }
  // A blank cell is marked behind the line.
  for (const int32_t id : {kCommandBlankCell, kCommandBlankAll}) EXPECT_EQ(OrderOf(id), "line pulsei pulsei*") << id;
  for (const int32_t id : {kCommandToSketch, kCommandEraseSketch, kCommandUndo, kCommandEraseLayerSketch,
                           kCommandMergeDown, kCommandEraseCell}) {
    EXPECT_EQ(OrderOf(id), "pulsei pulsei*") << id;
  }
}

TEST_F(CommandOrder, OfViewSwitches) {
  for (const int32_t id : {kCommandShowPrevious, kCommandShowNext, kCommandDimOthers, kCommandLineEmphasis})
    EXPECT_EQ(OrderOf(id), "pulse pulse*") << id;
  EXPECT_EQ(OrderOf(kCommandCurrentCellOnly), "pulsei pulsei*");
  EXPECT_EQ(OrderOf(kCommandMuraRemoval), "");
}

TEST_F(CommandOrder, OfPlaying) {
  const std::string order = OrderOf(kCommandPlay);
  // The commit is under the wait cursor; the repaint isn't.
  EXPECT_EQ(order.substr(0, order.find(' ')), "commitw");
  const size_t play = order.find("play");
  ASSERT_NE(play, std::string::npos) << order;
  EXPECT_LT(order.find("stop"), play);
  EXPECT_EQ(order.substr(order.find(' ', play)), " pulse* pulse*");
  EXPECT_EQ(order.find("pulse", 0), order.find("pulse", play));
}

}  // namespace
}  // namespace sorvel::testshell
