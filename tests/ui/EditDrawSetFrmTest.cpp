#include "ChooseBZTJ.h"
#include "Dialogs.h"
#include "DrawSetConsts.h"
#include "EditDrawSetFrm.h"
#include "IconsFrm.h"
#include "VDECommand.h"
#include "VDEPropGrid.h"
#include "VDEditorWidget.h"
#include "VectorDrawingEditor.h"

#include "../app/MemoryDataSvr.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QTemporaryDir>
#include <QToolBar>

#include <gtest/gtest.h>

namespace {

QString S(const char* AText) { return QString::fromUtf8(AText); }

struct TFormTest : testing::Test {
  void SetUp() override {
    SetRegionSettings(1);
    Form = std::make_unique<TEditDrawSetForm>(nullptr, 1, &Server, &Server, Dir.filePath(S("e.ini")));
    Form->LoadDrawSet(1);
    Form->ResetView();
  }
  void TearDown() override { Form.reset(); }
  TVectorDrawingEditor& E() { return Form->Editor(); }
  bool On(const char* AName) { return Form->IsActionEnabled(Form->Action(QLatin1String(AName))); }

  QTemporaryDir Dir;
  TIconsForm Icons;
  TMemoryDataSvr Server;
  std::unique_ptr<TEditDrawSetForm> Form;
};

QStringList MenuTexts(QMenu* M) {
  QStringList L;
  for (QAction* A : M->actions()) L << (A->isSeparator() ? S("-") : A->text());
  return L;
}

}  // namespace

TEST_F(TFormTest, ActionsCarryTheirCaptionsKeysAndVisibility) {
  const struct {
    const char* Name;
    const char* Caption;
    const char* Key;
    bool Visible;
  } Cases[] = {
      {"acZoomIn", "放大(&I)", "Ctrl+I", true},        {"acZoomOut", "缩小(&O)", "Ctrl+U", true},
      {"acPanLeft", "左移(&L)", "Ctrl+Left", true},     {"acRedo", "重复(&P)", "Ctrl+Shift+Z", false},
      {"acUndo", "撤销(&U)", "Ctrl+Z", false},          {"acSave", "保存(&S)", "Ctrl+S", true},
      {"acGridSetting", "设置网格(&G)...", "", true},   {"acEditTabOrder", "编辑跳转顺序", "", true},
      {"acImport", "导入DWG文件(&I)...", "", true},    {"acSaveToFile", "另存到文件(&F)", "", false},
      {"acViewID", "查看图元ID(&I)", "", false},        {"acOffset", "偏移(&O)", "", false},
      {"acRepeatCmd", "重复上次命令(&H)", "", false},   {"acSelectAll", "全选(&A)", "Ctrl+A", true},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    QAction* A = Form->Action(QLatin1String(C.Name));
    ASSERT_NE(A, nullptr);
    EXPECT_EQ(A->text(), S(C.Caption));
    EXPECT_EQ(A->shortcut(), QKeySequence(QLatin1String(C.Key)));
    EXPECT_EQ(A->isVisible(), C.Visible);
  }
  EXPECT_EQ(Form->windowTitle(), S("图集编辑器"));
  EXPECT_FALSE(Form->Action(S("acDrawLine"))->icon().isNull());
  // Adding bars waits for the panel to show; the import stays off by design.
  for (const char* Name : {"acAddBar", "acDeleteBar", "acDebug"}) EXPECT_FALSE(On(Name)) << Name;
  EXPECT_TRUE(On("acImport"));
  EXPECT_TRUE(On("acShowBars"));
  EXPECT_TRUE(On("acEditTabOrder"));
}

TEST_F(TFormTest, MenusAndToolBarsInTheirOrder) {
  const QList<QAction*> Menus = Form->menuBar()->actions();
  ASSERT_GE(Menus.size(), 7);
  EXPECT_EQ(Menus[0]->text(), S("图集(&S)"));
  EXPECT_EQ(MenuTexts(Menus[0]->menu()), (QStringList{S("选择图集(&C)"), S("-"), S("保存(&S)"),
                                                        S("导入DWG文件(&I)..."), S("-"), S("退出(&X)")}));
  EXPECT_EQ(MenuTexts(Menus[3]->menu()).mid(0, 4), (QStringList{S("撤销(&U)"), S("重复(&P)"), S("-"), S("删除(&D)")}));
  EXPECT_EQ(Menus[4]->text(), S("视图(&V)"));
  EXPECT_EQ(MenuTexts(Menus[4]->menu()).first(), S("图元属性(&P)"));
  EXPECT_FALSE(Menus[6]->isVisible());  // help
  QStringList Bars;
  for (QToolBar* T : Form->findChildren<QToolBar*>()) Bars << T->windowTitle();
  for (const char* T : {"系统工具栏", "图元属性工具栏", "修改工具栏", "捕捉工具栏", "钢筋编辑工具栏", "图元类型工具栏"})
    EXPECT_TRUE(Bars.contains(S(T))) << T;
}

TEST_F(TFormTest, ModesKeepTheirOwnNewItemProperties) {
  TVDEPropList& Add = E().GetAddItemProp();
  EXPECT_EQ(Add.Items(ptColor).Value(), S("16777215"));
  EXPECT_EQ(Add.Items(ptStartMarkStyle).Value(), S("箭头"));
  Add.Items(ptLineWidth).SetValue(S("3"));

  Form->ModeButton(dsBar)->trigger();
  EXPECT_EQ(Form->CurDSType(), dsBar);
  EXPECT_EQ(Add.Items(ptColor).Value(), S("65535"));
  EXPECT_EQ(Add.Items(ptLineWidth).Value(), S("2"));
  EXPECT_EQ(Add.Items(ptEndMarkStyle).Value(), S("弯钩"));
  EXPECT_FALSE(On("acDrawText"));
  EXPECT_TRUE(Form->ModeButton(dsBar)->isChecked());

  Form->ModeButton(dsParam)->trigger();
  EXPECT_EQ(Add.Items(ptColor).Value(), S("65280"));
  EXPECT_TRUE(On("acFindParam"));
  EXPECT_FALSE(Form->RadiusCombo().isEnabled());

  Form->ModeButton(dsNormal)->trigger();
  EXPECT_EQ(Add.Items(ptLineWidth).Value(), S("3"));  // the user's setting in this mode
  EXPECT_EQ(Add.Items(ptColor).Value(), S("16777215"));
}

TEST_F(TFormTest, ParamModeRefusesATextThatIsNoNumber) {
  TDialogScope Boxes;
  Form->ModeButton(dsParam)->trigger();
  QString Msg;
  const auto& Check = Form->PropGrid().Delegate().OnPropValValidate;
  ASSERT_TRUE(Check);
  EXPECT_FALSE(Check(ptText, S("abc"), Msg));
  EXPECT_EQ(Msg, S("参数值必须为整数或实数"));
  EXPECT_TRUE(Check(ptText, S("12.5"), Msg));
  EXPECT_TRUE(Check(ptColor, S("abc"), Msg));  // only the text is tested
}

TEST_F(TFormTest, SaveIsOnExactlyWithUnsavedWork) {
  Form->UpdateActions();
  EXPECT_FALSE(On("acSave"));
  E().Execute(cmdSelAll, 0);
  Form->UpdateActions();
  EXPECT_FALSE(On("acSave"));
  EXPECT_EQ(Form->StatusTexts()[4], S("1"));  // the plain mode leaves the bar's and the param's items alone
  E().Execute(cmdEditDelete, 0);
  Form->UpdateActions();
  EXPECT_TRUE(On("acSave"));
  EXPECT_TRUE(On("acUndo"));
  EXPECT_TRUE(Form->TriggerAction(S("acSave")));
  Form->UpdateActions();
  EXPECT_FALSE(On("acSave"));
  EXPECT_FALSE(On("acUndo"));
  EXPECT_EQ(Server.Saves, 1);
  EXPECT_EQ(Form->StatusTexts()[4], QString());
}

TEST_F(TFormTest, CloseAsksOnlyWithUnsavedWork) {
  TDialogScope Boxes;
  Form->show();
  EXPECT_TRUE(Form->close());
  EXPECT_TRUE(Boxes->Calls.empty());
  EXPECT_EQ(Form->ModalResult(), mrCancel);

  Form->show();
  E().Execute(cmdSelAll, 0);
  E().Execute(cmdEditDelete, 0);
  Boxes->QueueButton(mrCancel);
  EXPECT_FALSE(Form->close());
  EXPECT_TRUE(Form->isVisible());
  Boxes->QueueButton(mrNo);
  EXPECT_TRUE(Form->close());
  EXPECT_EQ(Server.Saves, 0);
  EXPECT_EQ(Boxes->Lines(), (QStringList{S("[确认] 图集已修改，是否保存？"), S("[确认] 图集已修改，是否保存？")}));

  // A refused save does not keep the window open.
  Form->show();
  Server.Refuse = true;
  Boxes->QueueButton(mrYes);
  EXPECT_TRUE(Form->close());
  EXPECT_EQ(Server.Saves, 1);
  EXPECT_EQ(Boxes->Lines().last(), S("[错误] 图集已被其他用户修改"));
}

TEST_F(TFormTest, StatusBarPanels) {
  E().SetGridXSpace(20);
  E().SetSnapSwitch(false);
  Form->UpdateActions();
  const QStringList T = Form->StatusTexts();
  ASSERT_EQ(T.size(), 6);
  EXPECT_EQ(T[1], S("捕捉: 关"));
  EXPECT_EQ(T[2], S("网格: 开"));
  EXPECT_EQ(T[3], S("网格间距: 20*10"));
  EXPECT_EQ(T[5], E().GetPrompt());
  EXPECT_FALSE(Form->Action(S("acSnapSwitch"))->isChecked());
}

TEST_F(TFormTest, ComboBoxesSetZoomAndRadius) {
  const auto Type = [](QComboBox& B, const char* AText) {
    B.lineEdit()->setText(S(AText));
    emit B.lineEdit()->returnPressed();
  };
  Type(Form->ZoomCombo(), "75");
  EXPECT_DOUBLE_EQ(E().GetScale(), 75);
  EXPECT_EQ(Form->ZoomCombo().currentText(), S("75%"));
  Type(Form->ZoomCombo(), "0");
  EXPECT_DOUBLE_EQ(E().GetScale(), 75);
  EXPECT_EQ(Form->ZoomCombo().currentText(), S("75%"));
  Type(Form->RadiusCombo(), "25.5");
  EXPECT_DOUBLE_EQ(E().GetRadius(), 25.5);
  Type(Form->RadiusCombo(), "-2");
  EXPECT_DOUBLE_EQ(E().GetRadius(), 25.5);
  EXPECT_EQ(Form->RadiusCombo().currentText(), S("25.5"));
  Type(Form->RadiusCombo(), "");
  EXPECT_DOUBLE_EQ(E().GetRadius(), 0);
  EXPECT_EQ(Form->RadiusCombo().currentText(), S("0"));
  // A list item does the same as typing it.
  emit Form->ZoomCombo().activated(0);
  EXPECT_DOUBLE_EQ(E().GetScale(), 500);
}

TEST_F(TFormTest, PopupShowsOnlyEnabledEntries) {
  Form->show();
  emit Form->EditorWidget().ContextMenuRequested(QPoint(50, 50));
  QMenu* M = Form->PopupMenu();
  ASSERT_NE(M, nullptr);
  QStringList Names;
  for (QAction* A : M->actions())
    if (!A->isSeparator()) Names << A->objectName();
  EXPECT_FALSE(Names.contains(S("acRepeatCmd")));  // nothing to repeat yet
  EXPECT_FALSE(Names.contains(S("acUndo")));
  EXPECT_TRUE(Names.contains(S("acSelectAll")));
  EXPECT_TRUE(Names.contains(S("acZoomAll")));
  M->close();

  E().Execute(cmdDrawLine, 0);
  E().Execute(cmdSelect, 0);
  E().Execute(cmdSelAll, 0);
  emit Form->EditorWidget().ContextMenuRequested(QPoint(50, 50));
  M = Form->PopupMenu();
  ASSERT_FALSE(M->actions().isEmpty());
  QAction* First = M->actions().first();
  EXPECT_EQ(First->objectName(), S("acRepeatCmd"));
  EXPECT_EQ(First->text(), E().RepeatCmdInfo().Caption);
  Names.clear();
  for (QAction* A : M->actions()) Names << A->objectName();
  EXPECT_TRUE(Names.contains(S("acCancelSel")));
  EXPECT_FALSE(M->actions().last()->isSeparator());
  M->close();
}

TEST_F(TFormTest, FindParamAsksUntilANameComes) {
  TDialogScope Boxes;
  Form->ModeButton(dsParam)->trigger();
  Boxes->QueueInput(S("  "));
  Boxes->QueueInput(S("h"));
  EXPECT_TRUE(Form->TriggerAction(S("acFindParam")));
  EXPECT_EQ(Boxes->Lines(), (QStringList{S("[错误] 查询变量名不能为空"), S("[错误] 没有找到变量，请确认变量的正确性")}));
  Boxes->QueueInput(S(" W"));
  EXPECT_TRUE(Form->TriggerAction(S("acFindParam")));
  EXPECT_EQ(E().GetVectorDrawing().ItemByID(5)->Tag(), 1);
  EXPECT_TRUE(Boxes->Queue.empty());
}

TEST_F(TFormTest, InitializeClearsEverythingAfterTheQuestion) {
  TDialogScope Boxes;
  Form->UpdateActions();
  ASSERT_TRUE(On("acInitialize"));
  Boxes->QueueButton(mrNo);
  Form->TriggerAction(S("acInitialize"));
  EXPECT_EQ(E().GetVectorDrawing().Count(), 3);
  Boxes->QueueButton(mrYes);
  Form->TriggerAction(S("acInitialize"));
  EXPECT_EQ(E().GetVectorDrawing().Count(), 0);
  EXPECT_EQ(Form->Session().DrawSet()->Bars().Count(), 0);
  EXPECT_EQ(Form->Session().DrawSet()->Params().Count(), 0);
  EXPECT_EQ(Boxes->Lines().first(), S("[确认] 是否清除全部内容？"));
  Form->UpdateActions();
  EXPECT_FALSE(On("acInitialize"));
  EXPECT_TRUE(On("acSave"));
}

TEST_F(TFormTest, ChoosingAnotherDrawSet) {
  TDialogScope Boxes;
  Boxes->QueueChoose(S("梁柱节点"));  // a type: refused, the chooser stays
  Boxes->QueueChoose(S("板边"));
  EXPECT_TRUE(Form->TriggerAction(S("acSelDrawSet")));
  EXPECT_EQ(Boxes->Lines(), QStringList{S("[错误] 请选择结点图！")});
  EXPECT_EQ(Form->Session().DrawSet()->ID(), 2);
  EXPECT_EQ(E().GetVectorDrawing().Count(), 2);
  EXPECT_FALSE(E().CanUndo());

  // Unsaved work: the save prompt comes first, and Cancel ends it there.
  E().Execute(cmdSelAll, 0);
  E().Execute(cmdEditDelete, 0);
  Boxes->QueueButton(mrCancel);
  Form->TriggerAction(S("acSelDrawSet"));
  EXPECT_EQ(Form->Session().DrawSet()->ID(), 2);
  Boxes->QueueButton(mrNo);
  Boxes->QueueButton(mrCancel);  // the chooser
  Form->TriggerAction(S("acSelDrawSet"));
  EXPECT_EQ(Form->Session().DrawSet()->ID(), 2);
  EXPECT_TRUE(Boxes->Queue.empty());
}

TEST(ChooseBZTJ, TreeByType) {
  TMemoryDataSvr Server;
  // A draw set of type -1 goes under the parent of the row before it; every unknown type
  // shares one "其他类型".
  Server.Sets.AddRow({5, -1, 4, S("续图"), QVariant(), QVariant()});
  Server.Sets.AddRow({6, 8, 5, S("另图"), QVariant(), QVariant()});
  const std::vector<TDrawSetTreeNode> N = BuildDrawSetTree(Server.Types, Server.Sets);
  const struct {
    const char* Text;
    int Data, Parent;
  } Expect[] = {{"梁柱节点", 1, -1}, {"板", 2, -1},  {"空类型", 3, -1},   {"中间节点", 1, 0},
                {"板边", 2, 1},      {"其他类型", -1, -1}, {"散图", 4, 5}, {"续图", 5, 5},
                {"另图", 6, 5}};
  ASSERT_EQ(N.size(), std::size(Expect));
  for (size_t I = 0; I < N.size(); ++I) {
    SCOPED_TRACE(Expect[I].Text);
    EXPECT_EQ(N[I].Text, S(Expect[I].Text));
    EXPECT_EQ(N[I].Data, Expect[I].Data);
    EXPECT_EQ(N[I].Parent, Expect[I].Parent);
  }
  // A first draw set of type -1 becomes a root.
  TDataPacket Sets;
  Sets.Fields = Server.Sets.Fields;
  Sets.AddRow({7, -1, 1, S("孤图"), QVariant(), QVariant()});
  EXPECT_EQ(BuildDrawSetTree(Server.Types, Sets).back().Parent, -1);
}

TEST(ChooseBZTJ, ExecuteHandsOutTheChoice) {
  SetRegionSettings(1);
  TMemoryDataSvr Server;
  TDialogScope Boxes;
  Boxes->QueueChoose(S("其他类型"));
  Boxes->QueueChoose(S("中间节点"));
  int ID = -1;
  QString Name;
  QByteArray Blob;
  EXPECT_EQ(TChooseBZTJForm::Execute(Server, ID, Name, Blob), mrOk);
  EXPECT_EQ(ID, 1);
  EXPECT_EQ(Name, S("中间节点"));
  EXPECT_EQ(Blob, TMemoryDataSvr::Drawing(2));
  EXPECT_EQ(Boxes->Lines(), QStringList{S("[错误] 请选择结点图！")});

  Boxes->QueueChoose(S("无此图"));
  EXPECT_THROW(TChooseBZTJForm::Execute(Server, ID, Name, Blob), EUnexpectedDialog);
  Boxes->Queue.clear();
  Boxes->QueueButton(mrCancel);
  EXPECT_EQ(TChooseBZTJForm::Execute(Server, ID, Name, Blob), mrCancel);
}

TEST(OVRAInputBox, TrimmedCheckHintAndTheTextAsTyped) {
  TDialogScope Boxes;
  Boxes->QueueInput(S("  "));
  Boxes->QueueInput(S(" ab "));
  QString Seen, Text;
  const bool Ok = OVRAInputBox(S("输入框"), S("名称"), Text, [&](const QString& A, QString& AMsg) {
    Seen = A;
    AMsg = S("不能为空");
    return !A.isEmpty();
  });
  EXPECT_TRUE(Ok);
  EXPECT_EQ(Seen, S("ab"));
  EXPECT_EQ(Text, S(" ab "));
  EXPECT_EQ(Boxes->Lines(), QStringList{S("[提示] 不能为空")});
  Boxes->QueueInputCancel();
  EXPECT_FALSE(OVRAInputBox(S("输入框"), S("名称"), Text));
  EXPECT_EQ(Text, S(" ab "));
}
