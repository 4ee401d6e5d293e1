#include <algorithm>
#include <string>
#include <vector>

#include "dialog_fixture.h"
#include "platform/headless/resources.h"

// What the templates hold, whatever the order of their controls.
namespace sorvel::testdialogs {
namespace {

using platform::headless::DialogPart;
using platform::headless::DialogResource;

struct Template {
  int32_t id;
  const char* title;
  int32_t width;
  int32_t height;
  // Beside OK and cancel. An edit with an up-down control is "number EDIT UPDOWN".
  std::vector<std::string> controls;
};

const std::vector<Template>& Templates() {
  static const std::vector<Template> templates = {
      {106,
       "レイヤのプロパティ",
       155,
       89,
       {"label 名前(&N) :", "edit 1000", "label 横幅(&W) :", "number 1002 1004", "label 縦幅(&H) :", "number 1001 1003",
        "check 1060 フレームに追随"}},
      {107,
       "カットのプロパティ",
       191,
       93,
       {"label 横幅(&W) :", "number 1002 1005", "label 縦幅(&H) :", "number 1001 1006",
        "label &FPS :", "number 1041 1036", "group アンチエイリアス", "radio 1055 無し(&1)", "radio 1056 1/&2",
        "radio 1057 1/&4", "label クレジット(&C) :", "edit 1037"}},
      {108, "グリッド", 159, 51, {"label 横幅(&W) :", "number 1022 1007", "label 縦幅(&H) :", "number 1001 1008"}},
      {109,
       "マスク",
       159,
       83,
       {"check 1013 透(&T)", "check 1009 黒(&B)", "check 1011 濃(&K)", "check 1012 淡(&G)", "check 1010 白(&W)",
        "check 1017 線(&P)", "check 1018 暗(D)", "check 1019 明(&L)", "check 1046 +&2", "check 1045 +&1",
        "check 1047 -&1", "check 1048 -&2", "button 1049 クリア(&C)", "button 1050 反転(&N)"}},
      {110,
       "フィルムのプロパティー",
       159,
       89,
       {"label 横幅(&W) :", "number 1002 1014", "label 縦幅(&H) :", "number 1001 1015",
        "label タイトル(&T) :", "edit 1039", "label 作者(&A) :", "edit 1040"}},
      {112, "レイヤの連続移動", 119, 49, {"label 終点のフレーム(&E) :", "number 1065 1026"}},
      {113,
       "フォント指定",
       150,
       101,
       {"label フォント名(&F) :", "list 1028", "label サイズ(&S) :", "number 1001 1033",
        "label 行間(&L) :", "number 1022 1029", "label 太さ(&W) :", "number 1042 1035"}},
      {114, "テキスト", 133, 123, {"text 1034"}},
      {115, "明度の連続変化", 119, 49, {"label 終点のフレーム(&E) :", "number 1065 1026"}},
      {116, "フレームの複数指定", 119, 49, {"label フレーム数(&N) :", "number 1001 1044"}},
      {117, "フレームの連続移動", 119, 49, {"label 終点のフレーム(&E) :", "number 1065 1026"}},
      {123,
       "フレームのプロパティ",
       155,
       51,
       {"label 横幅(&W) :", "number 1002 1005", "label 縦幅(&H) :", "number 1001 1006"}},
      {126, "カット名の変更", 130, 49, {"label カット名(&C) :", "edit 1058"}},
      {127, "ランダムに点描", 119, 51, {"label 点の間隔(&D) :", "number 1001 1061"}},
      {129, "以前の版を開く", 213, 121, {"label 版(&V) :", "list 1066"}},
  };
  return templates;
}

std::string Described(const DialogResource& part) {
  const std::string id = std::to_string(part.id);
  const std::string text = part.text;
  switch (part.part) {
    case DialogPart::kLabel:
      return "label " + text;
    case DialogPart::kGroupBox:
      return "group " + text;
    case DialogPart::kEdit:
      return "edit " + id;
    case DialogPart::kNumber:
      return "number " + id + " " + std::to_string(part.upDown);
    case DialogPart::kTextBox:
      return "text " + id;
    case DialogPart::kList:
      return "list " + id;
    case DialogPart::kCheckBox:
      return "check " + id + " " + text;
    case DialogPart::kFirstRadioButton:
    case DialogPart::kRadioButton:
      return "radio " + id + " " + text;
    case DialogPart::kButton:
      return "button " + id + " " + text;
    default:
      return "";
  }
}

const DialogResource* Find(int32_t id) {
  for (const DialogResource& part : platform::headless::Dialogs()) {
    if (part.part == DialogPart::kDialog && part.id == id) return &part;
  }
  return nullptr;
}

TEST(DialogTemplates, HaveTheirTitlesSizesAndControls) {
  for (const Template& each : Templates()) {
    const DialogResource* head = Find(each.id);
    ASSERT_NE(head, nullptr) << each.id;
    EXPECT_STREQ(head->text, each.title);
    EXPECT_EQ(head->width, each.width) << each.id;
    EXPECT_EQ(head->height, each.height) << each.id;
    std::vector<std::string> controls;
    for (const DialogResource* part = head + 1; part->part != DialogPart::kDialogEnd; ++part) {
      controls.push_back(Described(*part));
    }
    std::vector<std::string> expected = each.controls;
    expected.insert(expected.end(), {"button 1 OK", "button 2 キャンセル"});
    std::sort(controls.begin(), controls.end());
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(controls, expected) << each.id;
  }
}

TEST(DialogTemplates, TheSearchOfCommentsIsThere) {
  const DialogResource* head = Find(128);
  ASSERT_NE(head, nullptr);
  EXPECT_STREQ(head->text, "コメントの検索");
}

TEST(DialogTemplates, LieWithinTheirDialogs) {
  const DialogResource* head = nullptr;
  for (const DialogResource& part : platform::headless::Dialogs()) {
    if (part.part == DialogPart::kDialog) head = &part;
    if (part.part == DialogPart::kDialog || part.part == DialogPart::kDialogEnd) continue;
    EXPECT_LE(part.x + part.width, head->width) << head->id << " " << part.id;
    EXPECT_LE(part.y + part.height, head->height) << head->id << " " << part.id;
  }
}

}  // namespace
}  // namespace sorvel::testdialogs
