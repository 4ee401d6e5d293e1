#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <set>

#include "cutwindow/clipboard.h"
#include "imaging/color_table.h"
#include "shell/shell_fixture.h"
#include "shell/tool_bar.h"

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
    {40142, "バージョン(&V) ...", kFrame},
    {0, "", kSeparator},
    {40084, "ステータスバー(&S)", kFrame},
    {40085, "ツールバー(&T)", kFrame},
    {0, "", kSeparator},
    {40001, "終了(&X)", kFrame},
    {0, "", kPopupEnd},
    {0, "フィルム(&F)", kPopup},
    {40051, "新規作成(&N)...", kFrame},
    {40053, "開く(&O)...", kFrame},
    {40054, "保存(&S)...", kFrame},
    {40119, "上書(W)", kFrame},
    {40134, "抽出(&E)...", kFrame},
    {0, "", kSeparator},
    {40115, "新しいカットを追加(&D)...\tShift+F3/F10", kFrame},
    {40116, "新しいカットを挿入(&I)...\tShift+F2/F11", kFrame},
    {40117, "カットを削除...(&R)", kFrame},
    {40118, "カットの名前を変更(&C)...", kFrame},
    {0, "", kSeparator},
    {40057, "アニメーション(&A)", kFrame},
    {40027, "停止(&T)\tESC/F9", kFrame},
    {40083, "SVファイルを出力(&V)...", kFrame},
    {0, "", kSeparator},
    {40082, "プロパティ(&P)...", kFrame},
    {0, "", kPopupEnd},
    {0, "カット(&C)", kPopup},
    {40050, "新規作成(&N)", kFrame},
    {40056, "開く(&O) ...", kFrame},
    {40052, "保存(&S) ...", kFrame},
    {40088, "上書(W)", kFrame},
    {0, "", kSeparator},
    {40047, "追加(&A)", kFrame},
    {40048, "挿入(&I)", kFrame},
    {40049, "削除(&D)", kFrame},
    {0, "", kSeparator},
    {40026, "アニメーション(&M)\tF4/F5", kCut},
    {40027, "停止(&T)\tESC/F9", kFrame},
    {0, "", kSeparator},
    {40034, "現在のセルのみを表示(&C)", kCut},
    {40097, "他のレイヤを淡色表示(&G)", kCut},
    {0, "", kSeparator},
    {40077, "プロパティ(&P) ...", kFrame},
    {0, "", kPopupEnd},
    {0, "フレーム(&R)", kPopup},
    {40008, "次(&N)\tF3/F7", kFrame},
    {40007, "前(&P)\tF2/F6", kFrame},
    {40041, "先頭(&H)", kCut},
    {40042, "末尾(&T)", kCut},
    {40104, "次のキーフレーム(&K)", kFrame},
    {40105, "前のキーフレーム(&J)", kFrame},
    {0, "", kSeparator},
    {40004, "追加(&A)", kFrame},
    {40005, "挿入(&I)", kFrame},
    {40006, "削除(&D)", kCut},
    {40094, "複数追加(&M)...", kFrame},
    {40133, "複数削除(&U) ...", kFrame},
    {0, "", kSeparator},
    {40093, "明度の連続変化(&L)...", kFrame},
    {40101, "位置の連続変化(&O)...", kFrame},
    {40106, "全てキーフレームに(&K)", kFrame},
    {0, "", kSeparator},
    {40076, "ビットマップヘ出力(&B)...", kFrame},
    {40113, "現在のフレームを表示(&V)", kCut},
    {0, "", kSeparator},
    {40112, "サイズ(&S)...", kFrame},
    {0, "", kPopupEnd},
    {0, "レイヤ(&L)", kPopup},
    {40014, "追加(&A) ...", kFrame},
    {40080, "挿入(&I)...", kFrame},
    {40015, "削除(&D)", kFrame},
    {40068, "上書(&W)...", kFrame},
    {0, "", kSeparator},
    {40067, "開く(&L)...", kFrame},
    {40066, "保存(&S)...", kFrame},
    {0, "", kSeparator},
    {40016, "上へ(&U)", kFrame},
    {40017, "下へ(&O)", kFrame},
    {0, "", kSeparator},
    {40064, "下描を消去(&R)", kCut},
    {40069, "連続移動(&M)...", kFrame},
    {40071, "下のレイヤに転写(&C)", kCut},
    {0, "", kSeparator},
    {40022, "プロパティ(&P)...", kFrame},
    {0, "", kPopupEnd},
    {0, "セル(&E)", kPopup},
    {40013, "次(&N)", kCut},
    {40012, "前(&P)", kCut},
    {40043, "先頭(&H)", kCut},
    {40044, "末尾(&L)", kCut},
    {0, "", kSeparator},
    {40060, "空セル(&E)", kCut},
    {40103, "全てを空に(&M)", kCut},
    {0, "", kSeparator},
    {40011, "追加(&A)", kCut},
    {40010, "挿入(&I)", kCut},
    {40009, "削除(&D)", kCut},
    {0, "", kSeparator},
    {40030, "元に戻す(&U)", kCut},
    {40061, "コピー(&C)", kCut},
    {40063, "切り取り(&T)", kCut},
    {40062, "貼り付け(&P)", kCut},
    {0, "クリップボード(&B)", kPopup},
    {40124, "コピー(&C)", kCut},
    {40091, "貼り付け(&P)", kCut},
    {40137, "透過色(&T) ...", kFrame},
    {0, "", kPopupEnd},
    {0, "", kSeparator},
    {40024, "下絵へ転化(&S)", kCut},
    {40025, "下絵を消去(&R)", kCut},
    {40092, "消去(&F)", kCut},
    {40109, "左右反転(&O)", kCut},
    {40110, "上下反転(&U)", kCut},
    {40126, "ランダムに点描(Z)", kFrame},
    {40127, "グリッドを描画(&G)", kFrame},
    {0, "", kSeparator},
    {40032, "一つ前を透過(&V)", kCut},
    {40033, "一つ次を透過(&X)", kCut},
    {0, "", kPopupEnd},
    {0, "ツール(&T)", kPopup},
    {40029, "自由ペン(&B)", kFrame},
    {40065, "消しゴム(&E)", kFrame},
    {40031, "塗りつぶし(&I)", kFrame},
    {40070, "グラデーション(&D)", kFrame},
    {40075, "縁取り(&H)", kFrame},
    {40045, "矩形(&R)", kFrame},
    {40037, "直線(&N)", kFrame},
    {40038, "連続曲線(&V)", kFrame},
    {40090, "集中線(&C)", kFrame},
    {40132, "平行線(&A)", kFrame},
    {40073, "テキスト(&T)", kFrame},
    {40028, "拡大/縮小表示(&Z)", kFrame},
    {40059, "領域選択(&S)", kFrame},
    {40086, "モザイク(&U)", kFrame},
    {40023, "レイヤ位置(&L)", kFrame},
    {40019, "フレーム位置(&F)", kFrame},
    {0, "", kSeparator},
    {40040, "グリッド(&G)...", kFrame},
    {40046, "マスク(&M)...", kFrame},
    {40072, "フォント(&O)...", kFrame},
    {0, "", kSeparator},
    {40099, "ムラ消し(&W)", kCut},
    {40102, "線を強調(&K)", kCut},
    {40074, "角ペン(&P)", kFrame},
    {0, "", kSeparator},
    {40136, "説明(&X) ...\tF1/F8", kFrame},
    {0, "", kPopupEnd},
    {0, "ウィンドウ(&W)", kPopup},
    {40122, "全て閉じる(&C)...", kFrame},
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
    {10002, "現在のフレームの時間をFPS単位で指定します。マイナス値で前のフレームと段階的につなぎます。"},
    {10003,
     "現在のフィルムにあるカットの一覧です。Shift/"
     "Ctrlキーで複数選択できます。また、ダブルクリックでカットを開きます。"},
    {10004, "現在のフレームにあるレイヤの一覧です。選択されたレイヤが編集対象となります。"},
    {10005, "ループさせたい先頭のフレームにループ回数を指定し、以降のフレームを0にします。"},
    {10006, "現在のフレームについてのコメントを入力します。"},
    {10007, "出力時のフレームの明るさを指定します。50が標準で、0で画面が全て黒くなり、100で全て白くなります。"},
    {10009,
     "チェックすると現在のフレームをキーフレームに指定します。左側の数はフレーム番号、右のカッコ内の数は実際のタイミン"
     "グを示します。"},
    {40001, "ソルヴェリンを終了します。"},
    {40004, "フレームを追加\n現在のフレームの次の位置に新しいフレームを追加します。"},
    {40005, "フレームを挿入\n現在のフレームの位置に新しいフレームを挿入します。"},
    {40006, "フレームを削除\n現在のフレームを削除します。"},
    {40007, "前のフレーム\n前のフレームに移動します。"},
    {40008, "次のフレーム\n次のフレームに移動します。"},
    {40009, "セルを削除\n現在のセルを削除します。"},
    {40010, "セルを挿入\n現在のセルの位置に新しいセルを挿入します。"},
    {40011, "セルを追加\n現在のセルの次の位置に新しいセルを追加します。"},
    {40012, "前のセル\n前のセルに変更します。"},
    {40013, "次のセル\n次のセルに変更します。"},
    {40014, "現在のレイヤの次の位置に新しいレイヤを追加します。"},
    {40015, "現在のレイヤを削除します。"},
    {40016, "現在のレイヤのフレーム中の位置を一つ上げます。"},
    {40017, "現在のレイヤのフレーム中の位置を一つ下げます。"},
    {40019,
     "フレーム位置\nドラッグしてフレームの位置を変更します。\n右クリックで前のフレームと同じ位置になります。\nCtrl + "
     "右クリックで前後の中間の位置になります。\nCtrl + 左クリックで初期位置に戻ります。"},
    {40022, "現在のレイヤのプロパティを変更します。"},
    {40023,
     "レイヤ位置\nドラッグしてレイヤの位置を指定します。\n右クリックで前のフレームと同じ位置になります。\nCtrl + "
     "右クリックで前後の中間の位置になります。\nCtrl + 左クリックで初期位置に戻ります。"},
    {40024, "現在のセルの内容を下絵に転化します。"},
    {40025, "現在のセルの下絵を消去します。"},
    {40026, "再生\n現在のカットをアニメーションします。"},
    {40027, "停止\nアニメーションを停止します。"},
    {40028,
     "拡大/"
     "縮小表示\n左右のクリックでカーソル位置の表示を拡大したり縮小したり出来ます。\nしかしキーボードを使った方が良いで"
     "しょう。"},
    {40029, "自由ペン\nドラッグして線を描きます。"},
    {40030, "元に戻す\nセルの状態を一つ前に戻します。"},
    {40031, "塗りつぶし\nクリックして閉鎖領域を塗りつぶします。\n右クリックでカーソル下の色を拾います。"},
    {40032, "一つ前のセルの線を透過します。"},
    {40033, "一つ次のセルの線を透過します。"},
    {40034, "編集対象のセルのみを表示します。"},
    {40037,
     "直線\nドラッグで直線を描きます。\nCtrl を押しながらクリックすると、連続直線モードとなります。\n連続直線モードで "
     "Ctrl を押しながらクリックするとスキップします。\n連続直線モードは右クリックで解除します。"},
    {40038, "連続曲線\n連続した点を曲線で結びます。\n右クリックで解除します。"},
    {40040, "グリッドのサイズを指定します。"},
    {40041, "先頭のフレームに移動します。"},
    {40042, "末尾のフレームに移動します。"},
    {40043, "先頭のセルに変更します。"},
    {40044, "末尾のセルに変更します。"},
    {40045, "矩形\nドラッグして矩形を描きます。\nCtrl を押しながら離すと、塗り潰します。"},
    {40046, "マスク\nマスクをかける色の種類を指定します。"},
    {40047, "現在のカットをフィルムに追加します。"},
    {40048, "現在のカットをフィルムの選択位置に挿入します。"},
    {40049, "選択位置のカットをフィルムから削除します。"},
    {40050, "カットを新しく作成します。"},
    {40051, "フィルムを新しく作成します。"},
    {40052, "カットをファイル名を指定して保存します。"},
    {40053, "フィルムを開きます。"},
    {40054, "フィルムを保存します。"},
    {40056, "カットを開きます。"},
    {40057, "カット・リスト上で選択されたカットを、連続してアニメーションします。"},
    {40058, "現在のカットをコンテモードで編集します。"},
    {40059,
     "領域選択\nドラッグして選択領域を指定できます。\n右クリックでセル全体を選択出来ます。\n矩形内をドラッグすると移動"
     "できます。"},
    {40060, "空セルに指定します。空セルは描画されません。チェックを外すと元に戻ります。"},
    {40061, "選択領域をコピーします。"},
    {40062, "コピーされた領域を貼り付けます。"},
    {40063, "選択領域を切り取ります。"},
    {40064, "現在のレイヤ中の全てのセルの下書き色を消去します。"},
    {40065, "消しゴム\nドラッグした部分を下絵に転化します。\n右クリックで枠の大きさを変えます。"},
    {40066, "現在のレイヤをファイルへ保存します。"},
    {40067, "レイヤをファイルから開きます。"},
    {40068, "現在のレイヤを指定したファイルで上書します。"},
    {40069, "現在のフレームから指定したフレームまでの現在のレイヤの位置を段階的につなぎます。"},
    {40070,
     "グラデーション\n色を変えて二つの座標をクリックすると、段階的に色を変えて塗りつぶします。\n右クリックで色を拾いま"
     "す。"},
    {40071, "一つ下のレイヤに現在のレイヤのイメージを同化させます。"},
    {40072, "テキスト・ツールで使うフォントを指定します。"},
    {40073, "テキスト\nクリックしてダイアログにテキストを入力し、もう一度クリックして描画します。"},
    {40074, "ペン先を矩形に変えます。あまり意味が無いような気がします。"},
    {40075, "縁取り\nドラッグした領域の内部に縁取りをかけます。"},
    {40076, "現在のフレームのイメージをビットマップファイルとして出力します。"},
    {40077, "カットのプロパティを変更します。"},
    {40080, "現在のレイヤの位置に新しいレイヤを挿入します。"},
    {40082, "フィルムのプロパティを変更します。"},
    {40083, "フィルムをSVファイルとして出力します。"},
    {40084, "ステータスバーを表示します。"},
    {40085, "ツールバーを表示します。"},
    {40086,
     "モザイク\nドラッグしてモザイクをかけます。\n右クリックで矩形のサイズを変更します。\nモザイク用のレイヤを作るのが"
     "良いでしょう。"},
    {40088, "カットを上書して保存します。"},
    {40090, "集中線\n最初のクリックで中心点を指定し、以降で集中線を描画します。\n右クリックで解除します。"},
    {40091, "クリップボードの画像をセルに貼り付けます。"},
    {40092, "現在のセルの全範囲、もしくは選択範囲を消去します。"},
    {40093,
     "現在のフレームから指定したフレームまでの明度を段階的につなぎます。主にフェイドイン、フェイドアウトに使います。"},
    {40094, "任意の数のフレームを追加します。"},
    {40097, "現在のレイヤ以外を淡い色で表示します。また、現在のレイヤが最も上層に表示されます。"},
    {40099, "自動的にムラと思われる座標をスキップします。"},
    {40101, "現在のフレームから指定したフレームまでの位置を段階的につなぎます。主にパン、ティルトに使います。"},
    {40102, "作画用の線(パレット左上の線明暗の三色)を原色で強調します。"},
    {40103, "全てのフレームで、同一レイヤのセルの空状態を反転します。"},
    {40104, "次のキーフレームに移動します。"},
    {40105, "前のキーフレームへ移動します。"},
    {40106, "全てのフレームをキーフレームに指定します。原画作業が終った時に使ってください。"},
    {40109, "セルの全体もしくは選択矩形を左右反転します。"},
    {40110, "セルの全体もしくは選択矩形を上下反転します。"},
    {40112, "フレームのサイズを設定します。"},
    {40113, "現在のフレームをアニメーション ウィンドウに出力します。"},
    {40115, "新しいカットを追加\n新しいカットをフィルムに追加します。ファイル名は自動的に番号付けされます。"},
    {40116, "新しいカットを挿入\n新しいカットをフィルムに挿入します。ファイル名は自動的に番号付けされます。"},
    {40117, "カットを削除\n現在のカットをフィルムから削除します。また、同時にファイルも削除できます。"},
    {40118, "現在のカットの名前を変更します。実際のファイル名も書き換えられます。"},
    {40119, "フィルムを上書して保存します。"},
    {40122, "カットのウィンドウを全て閉じます。"},
    {40124, "セルの画像をクリップボードへコピーします。"},
    {40126, "選択領域もしくは全体に、現在のペンを使ってランダムに点を描きます。"},
    {40127, "グリッドを下書き色で描画します。この時自動的にマスクがかかります。"},
    {40131, "円\nドラッグして中心点と半径を指定し、円形を描きます。\nCtrl を押しながら離すと、塗り潰します。"},
    {40132,
     "最初にドラッグして線を描画し、以降のクリックでその線をコピーします。\n右クリックで解除します。\nCtrl + "
     "右クリックで、線を 90 度回転できます。"},
    {40133, "複数のカットをまとめて削除します。"},
    {40134, "カット・リスト上で選択されたカットを、新しいフィルムに抽出します。"},
    {40135, "コメントを検索します。"},
    {40136, "現在のツールを説明します。"},
    {40137, "貼り付けの際に透過色にする RGB 値を指定します。"},
    {40138, "%s を保存しますか？"},
    {40140, "ファイルを削除しますか？"},
    {40141, "Sorvel Developer Version 1.0"},
    {40142, "バージョン情報を表示します。"},
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
    const std::vector<std::pair<int32_t, int32_t>> dialogs = {{40051, 110}, {40082, 110}, {40050, 107}, {40115, 107},
                                                              {40116, 107}, {40040, 108}, {40046, 109}, {40072, 113}};
    for (const auto& [command, dialog] : dialogs) {
      if (command == id) platform::headless::QueueDialog({dialog, {}, false});
    }
    const std::set<int32_t> files = {40053, 40054, 40119, 40134, 40056, 40067};
    if (files.count(id) != 0) platform::headless::QueueFileCancel();
    if (id == 40137) platform::headless::QueueColorCancel();
    if (id == 40122) platform::headless::QueueYesNo(false);
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
  while (first->id != 40029) ++first;
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
      {'N', false, true, 40050},      {'O', false, true, 40056},     {'S', false, true, 40052},
      {27, false, false, 40027},      {f1, false, false, 40136},     {f1 + 9, false, false, 40115},
      {f1 + 10, false, false, 40116}, {f1 + 1, false, false, 40007}, {f1 + 1, true, false, 40116},
      {f1 + 2, false, false, 40008},  {f1 + 2, true, false, 40115},  {f1 + 3, false, false, 40026},
      {f1 + 4, false, false, 40026},  {f1 + 5, false, false, 40007}, {f1 + 6, false, false, 40008},
      {f1 + 7, false, false, 40136},  {f1 + 8, false, false, 40027}, {13, false, false, 40095},
      {13, true, false, 40096},       {9, false, false, 40095},      {9, true, false, 40096},
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
  const std::pair<int32_t, int32_t> buttons[] = {
      {21, 40116}, {22, 40115}, {23, 40117}, {0, 0},      {1, 40004},  {2, 40005},  {3, 40006},  {5, 40007},
      {4, 40008},  {0, 0},      {6, 40011},  {7, 40010},  {8, 40009},  {10, 40012}, {9, 40013},  {0, 0},
      {11, 40029}, {12, 40065}, {13, 40037}, {14, 40038}, {15, 40031}, {16, 40059}, {17, 40028}, {0, 0},
      {0, 40030},  {18, 40046}, {0, 0},      {24, 40026}, {25, 40027}};
  const std::set<int32_t> tools = {40029, 40065, 40037, 40038, 40031, 40059, 40028};
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
  for (const int32_t tool : {40065, 40037, 40038, 40031, 40059, 40028, 40029, 40090}) {
    Command(tool);
    for (const platform::ToolButtonState& button : frame->toolBar->buttons) {
      EXPECT_EQ(button.checked, button.command == tool) << tool << " " << button.command;
    }
    EXPECT_EQ(platform::headless::CheckedEntries(frame->toolPopupMenu), std::vector<int32_t>({tool}));
  }
}

TEST_F(Vocabulary, WithoutACutTheFrameHandlesItsOwnAndPassesTheCutsOn) {
  for (const MenuEntry& entry : kMenuBar) {
    if (!IsItem(entry) || entry.id == 40001) continue;
    EXPECT_EQ(RunWithCancel(entry.id), entry.kind == kFrame ? 0 : 1) << entry.id;
  }
  for (const int32_t id : {40095, 40096}) EXPECT_EQ(frame->OnCommand(0, id, nullptr), 0) << id;
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
  std::set<int32_t> owned = {40095, 40096};
  for (const MenuEntry& entry : kMenuBar) owned.insert(entry.id);
  for (const bool withCut : {false, true}) {
    if (withCut) MakeCut();
    for (const int32_t first : {0, 9900, 39900, 57990}) {
      for (int32_t id = first; id < first + 300; ++id) {
        const bool isPanel = id >= 10002 && id <= 10009;
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
  void SetUp() override {
    ResetClipboardBlock();
    ShellTest::SetUp();
  }
  void TearDown() override {
    ShellTest::TearDown();
    ResetClipboardBlock();
  }
  void MakeScene(bool selectsAll) {
    MakeCut();
    AddLayer("B");
    AddLayer("C");
    for (int32_t i = 0; i < 3; ++i) testdoc::NumberCells(Cut()->layers.At(i), 3);
    MakeFrames(3);
    Command(40007);
    platform::headless::SelectLines(frame->layerList, {1});
    Command(40013);
    for (const int32_t i : {0, 2}) Cut()->frames.At(i)->SetKey(true);
    FileCommand(40066, folder.Path("old.lyr"));
    FileCommand(40052, folder.Path("old.cut"));
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
};

TEST_F(CommandRows, OfFrames) {
  Expect({{40004, 0, nullptr, false, "commit refresh mit"},
          {40005, 0, nullptr, false, "commit refresh mt"},
          {40006, 0, nullptr, false, "refresh repaint mit"},
          {40007, 0, nullptr, false, "commit refresh repaint mt"},
          {40008, 0, nullptr, false, "commit refresh repaint mt"},
          {40041, 0, nullptr, false, "commit refresh repaint mt"},
          {40042, 0, nullptr, false, "commit refresh repaint mt"},
          {40104, 0, nullptr, false, "commit refresh repaint mt"},
          {40105, 0, nullptr, false, "commit refresh repaint mt"},
          {40094, 116, nullptr, false, "commit refresh mit"},
          {40133, 116, nullptr, false, "refresh mit"},
          {40093, 115, nullptr, false, "commit mt"},
          {40101, 117, nullptr, false, "commit mt"},
          {40106, 0, nullptr, false, "refresh mt"},
          {40077, 107, nullptr, false, "repaint mit"},
          {40112, 123, nullptr, false, "mt"}});
}

TEST_F(CommandRows, OfLayers) {
  Expect({{40014, 106, nullptr, false, "refresh repaint mit"},
          {40080, 106, nullptr, false, "refresh repaint mit"},
          {40015, 0, nullptr, false, "list repaint mit"},
          {40016, 0, nullptr, false, "line repaint mit"},
          {40017, 0, nullptr, false, "line repaint mit"},
          {40022, 106, nullptr, false, "repaint mit"},
          {40066, 0, "new.lyr", false, ""},
          {40068, 0, "old.lyr", false, "repaint mit"},
          {40064, 0, nullptr, false, "repaint mit"},
          {40071, 0, nullptr, false, "repaint mit"}});
}

TEST_F(CommandRows, OfCells) {
  for (const int32_t id : {40009, 40010, 40011, 40012, 40013, 40043, 40044, 40060, 40103}) {
    EXPECT_EQ(EffectsOf({id, 0, nullptr, false, ""}), "line repaint mit") << id;
  }
  // There is nothing to paste yet.
  Expect({{40062, 0, nullptr, false, ""},
          {40091, 0, nullptr, false, ""},
          {40024, 0, nullptr, false, "repaint mit"},
          {40025, 0, nullptr, false, "repaint mit"},
          {40092, 0, nullptr, false, "repaint mit"},
          {40030, 0, nullptr, false, "repaint mit"},
          {40061, 0, nullptr, false, ""},
          {40061, 0, nullptr, true, ""},
          {40063, 0, nullptr, false, ""},
          {40063, 0, nullptr, true, "repaint mit"},
          {40109, 0, nullptr, false, "repaint mit"},
          {40110, 0, nullptr, false, "repaint mit"},
          {40124, 0, nullptr, false, ""},
          {40126, 127, nullptr, false, "repaint mit"},
          {40127, 108, nullptr, false, "repaint mit"}});
}

TEST_F(CommandRows, OfPlayingViewAndTools) {
  // The stream that is played is new, and the cut still to be saved.
  Expect({{40026, 0, nullptr, false, "commit repaint m"},
          {40027, 0, nullptr, false, ""},
          {40032, 0, nullptr, false, "repaint "},
          {40033, 0, nullptr, false, "repaint "},
          {40097, 0, nullptr, false, "repaint "},
          {40034, 0, nullptr, false, "repaint i"},
          {40099, 0, nullptr, false, ""},
          {40099, 0, nullptr, false, ""},
          {40102, 0, nullptr, false, "repaint "},
          {40074, 0, nullptr, false, ""},
          {40040, 108, nullptr, false, ""},
          {40046, 109, nullptr, false, ""},
          {40072, 113, nullptr, false, ""},
          {40136, 0, nullptr, false, ""},
          {40142, 0, nullptr, false, ""},
          {40084, 0, nullptr, false, ""},
          {40084, 0, nullptr, false, ""},
          {40085, 0, nullptr, false, ""},
          {40085, 0, nullptr, false, ""},
          {40095, 0, nullptr, false, ""},
          {40096, 0, nullptr, false, ""}});
  for (const int32_t id : {40019, 40023, 40028, 40029, 40031, 40037, 40038, 40045, 40059, 40065, 40070, 40073, 40075,
                           40086, 40090, 40132}) {
    EXPECT_EQ(EffectsOf({id, 0, nullptr, false, ""}), "") << id;
  }
}

TEST_F(CommandRows, OfFiles) {
  Expect({{40052, 0, "new.cut", false, "commit t"},
          {40088, 0, nullptr, false, ""},
          {40047, 0, nullptr, false, ""},
          {40048, 0, nullptr, false, ""},
          {40049, 0, nullptr, false, ""},
          {40119, 0, "new.flm", false, ""},
          {40054, 0, "new.flm", false, ""},
          {40082, 110, nullptr, false, ""}});
}

// The order in which a command of the cut window tells the frame and repaints: a pulse comes before and after the
// repaint, and the view is as it should be by the second one.
class OrderHost final : public CutWindowHost {
 public:
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
  void RefreshLayerLine(CutWindow*) override { Note("line"); }
  void SelectCutLine(CutWindow*) override {}
  void TogglePanels() override {}
  void AskSaveCut(CutWindow*) override {}
  void CutGone(CutWindow*) override {}
  void StopAnimation() override { Note("stop"); }
  int32_t PlayBuffer(uint8_t* buffer, int32_t) override {
    Note("play");
    std::free(buffer);
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
    ResetTools();
    host.frameWindow = platform::MakeFrameWindow("Frame", "", 103, nullptr);
    host.mdiClient = platform::MakeMdiClient(host.frameWindow, 10001, 0, 0);
  }
  void TearDown() override {
    platform::DestroyWindow(host.frameWindow);
    ResetTools();
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
  EXPECT_EQ(OrderOf(40006), "refreshi pulsei pulsei*");
  for (const int32_t id : {40041, 40042}) EXPECT_EQ(OrderOf(id), "commit refresh pulse pulse*") << id;
}

TEST_F(CommandOrder, OfCells) {
  for (const int32_t id : {40009, 40010, 40011, 40012, 40013, 40043, 40044}) {
    EXPECT_EQ(OrderOf(id), "linei pulsei pulsei*") << id;
  }
  // A blank cell is marked behind the line.
  for (const int32_t id : {40060, 40103}) EXPECT_EQ(OrderOf(id), "line pulsei pulsei*") << id;
  for (const int32_t id : {40024, 40025, 40030, 40064, 40071, 40092}) {
    EXPECT_EQ(OrderOf(id), "pulsei pulsei*") << id;
  }
}

TEST_F(CommandOrder, OfViewSwitches) {
  for (const int32_t id : {40032, 40033, 40097, 40102}) EXPECT_EQ(OrderOf(id), "pulse pulse*") << id;
  EXPECT_EQ(OrderOf(40034), "pulsei pulsei*");
  EXPECT_EQ(OrderOf(40099), "");
}

TEST_F(CommandOrder, OfPlaying) {
  const std::string order = OrderOf(40026);
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
