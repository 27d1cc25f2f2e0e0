// The main form's action list, menus, tool bars and status bar.

#include "EditDrawSetFrm.h"

#include "IconsFrm.h"
#include "VDEPropGrid.h"
#include "VDEditorWidget.h"
#include "VectorDrawingEditor.h"

#include <QAction>
#include <QActionGroup>
#include <QComboBox>
#include <QDockWidget>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QShortcut>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>

struct TEditDrawSetForm::TActionDef {
  const char* Name;
  const char* Caption;
  const char* Key;
  int Command;       // -1: the form's own handler, -2: no handler at all
  bool ModeParam;    // the second argument is 1 in bar mode
  bool Visible;
  bool StateCommand; // one of the mutually exclusive check marks
};

namespace {

using TDef = const char*;

QString ToolText(const QString& ACaption) {
  QString T = ACaption;
  const int I = T.indexOf(QLatin1String("(&"));
  if (I >= 0) T = T.left(I);
  return T.remove(QLatin1Char('&')).remove(QLatin1String("..."));
}

}  // namespace

void TEditDrawSetForm::CreateActions() {
  static const TActionDef Defs[] = {
      {"acSelect", "选择(&S)", "", 1, false, true, true},
      {"acZoomAll", "显示全图(&A)", "", 4, false, true, false},
      {"acZoomRunTime", "实时缩放(&T)", "", 5, false, true, true},
      {"acZoomIn", "放大(&I)", "Ctrl+I", 6, false, true, false},
      {"acZoomOut", "缩小(&O)", "Ctrl+U", 7, false, true, false},
      {"acZoomWin", "窗口缩放(&W)", "", 8, false, true, true},
      {"acPanRunTime", "实时平移(&T)", "", 9, false, true, true},
      {"acPanPoint", "定点(&P)", "", 10, false, true, true},
      {"acPanCenter", "中心点(&C)", "", 11, false, true, true},
      {"acPanLeft", "左移(&L)", "Ctrl+Left", 12, false, true, false},
      {"acPanRight", "右移(&R)", "Ctrl+Right", 13, false, true, false},
      {"acPanUp", "上移(&U)", "Ctrl+Up", 14, false, true, false},
      {"acPanDown", "下移(&D)", "Ctrl+Down", 15, false, true, false},
      {"acDrawPoint", "点(&P)", "", 16, false, true, true},
      {"acDrawLine", "直线(&L)", "", 17, true, true, true},
      {"acDrawACSArc", "逆小弧(&A)", "", 18, true, true, true},
      {"acDrawCSArc", "顺小弧(&S)", "", 19, true, true, true},
      {"acDrawACLArc", "逆大弧(&N)", "", 20, true, true, true},
      {"acDrawCLArc", "顺大弧(&B)", "", 21, true, true, true},
      {"acDraw3PArc", "三点画弧(&E)", "", 22, true, true, true},
      {"acDrawRect", "矩形(&R)", "", 23, true, true, true},
      {"acDrawCircle", "圆(&C)", "", 24, false, true, true},
      {"acDrawPolygon", "正多边形(&G)", "", 25, true, true, true},
      {"acDrawText", "文字(&T)", "", 26, false, true, true},
      {"acDrawHatch", "填充区域(&H)", "", 27, false, true, true},
      {"acDrawDimension", "尺寸标注(&D)", "", 28, false, true, true},
      {"acDrawArc", "画弧(&A)", "", -1, false, true, false},
      {"acErase", "删除(&D)", "", 29, false, true, true},
      {"acDuplicate", "复制(&C)", "", 30, false, true, true},
      {"acMirror", "镜像(&M)", "", 31, false, true, true},
      {"acMove", "移动(&V)", "", 32, false, true, true},
      {"acRotate", "旋转(&R)", "", 33, false, true, true},
      {"acExtend", "延伸(&E)", "", 34, false, true, true},
      {"acTrim", "修剪(&T)", "", 35, false, true, true},
      {"acBreak", "打断(&K)", "", 36, false, true, true},
      {"acMerge", "合并(&G)", "", 37, false, true, true},
      {"acStretch", "拉伸(&S)", "", 38, false, true, true},
      {"acOffset", "偏移(&O)", "", -2, false, false, false},
      {"acUndo", "撤销(&U)", "Ctrl+Z", 40, false, false, false},
      {"acRedo", "重复(&P)", "Ctrl+Shift+Z", 41, false, false, false},
      {"acPerSnap", "垂点捕捉(&P)", "", 45, false, true, true},
      {"acMidSnap", "中点捕捉(&M)", "", 46, false, true, true},
      {"acIntSnap", "交点捕捉(&I)", "", 47, false, true, true},
      {"acCut", "剪切(&T)", "Ctrl+X", 48, false, false, false},
      {"acCopy", "复制(&C)", "Ctrl+C", 49, false, false, false},
      {"acPaste", "粘贴(&P)", "Ctrl+V", 50, false, false, false},
      {"acDelete", "删除(&D)", "", 51, false, false, false},
      {"acSelectAll", "全选(&A)", "Ctrl+A", 52, false, true, false},
      {"acSnapSwitch", "捕捉开关(&S)", "", 53, false, true, false},
      {"acGridSetting", "设置网格(&G)...", "", 56, false, true, false},
      {"acDrawProp", "图形属性(&P)...", "", 57, false, true, false},
      {"acRepeatCmd", "重复上次命令(&H)", "", 58, false, false, false},
      {"acCancelSel", "取消选择(&A)", "", 59, false, true, false},
      {"acSave", "保存(&S)", "Ctrl+S", -1, false, true, false},
      {"acExit", "退出(&X)", "", -1, false, true, false},
      {"acSelDrawSet", "选择图集(&C)", "", -1, false, true, false},
      {"acImport", "导入DWG文件(&I)...", "", -1, false, true, false},
      {"acSaveToFile", "另存到文件(&F)", "", -1, false, false, false},
      {"acViewID", "查看图元ID(&I)", "", -2, false, false, false},
      {"acInitialize", "初始化(&I)", "", -1, false, true, false},
      {"acShowBars", "显示钢筋(&S)", "", -1, false, true, false},
      {"acAddBar", "增加钢筋(&C)", "", -1, false, true, false},
      {"acDeleteBar", "删除钢筋(&E)", "", -1, false, true, false},
      {"acDebug", "脚本调试(&D)", "", -1, false, true, false},
      {"acSetBarInfo", "布置钢筋信息(&B)", "", 101, false, true, false},
      {"acMergeBars", "合并钢筋(&M)", "", 102, false, true, false},
      {"acFindParam", "变量查询(&F)", "", -1, false, true, false},
      {"acEditParam", "编辑变量(&P)", "", 100, false, true, false},
      {"acLinesToBar", "置成钢筋线(&L)", "", 103, false, true, false},
      {"acEditTabOrder", "编辑跳转顺序", "", 104, false, true, false},
      {"acHelp", "帮助(&H)", "", -2, false, true, false},
      {"acAbout", "关于(&A)...", "", -2, false, true, false},
  };
  auto* Group = new QActionGroup(this);
  Group->setExclusionPolicy(QActionGroup::ExclusionPolicy::ExclusiveOptional);
  for (const TActionDef& D : Defs) {
    QAction* A = AddAction(D);
    if (D.StateCommand) {
      A->setCheckable(true);
      Group->addAction(A);
    }
  }
  Action(QStringLiteral("acSnapSwitch"))->setCheckable(true);
  Action(QStringLiteral("acShowBars"))->setCheckable(true);
  Action(QStringLiteral("acDrawArc"))->setCheckable(true);
  // The arc drop-down's head runs no command: its menu does.
  SetActionEnabled(Action(QStringLiteral("acDrawArc")), true);
}

QAction* TEditDrawSetForm::AddAction(const TActionDef& D) {
  const QString Name = QString::fromLatin1(D.Name);
  auto* A = new QAction(QString::fromUtf8(D.Caption), this);
  A->setObjectName(Name);
  A->setIconText(ToolText(A->text()));
  A->setToolTip(ToolText(A->text()));
  if (TIconsForm* Icons = TIconsForm::Instance()) A->setIcon(Icons->Icon(Name));
  if (*D.Key) A->setShortcut(QKeySequence(QString::fromLatin1(D.Key)));
  addAction(A);  // shortcuts work without a menu entry
  FActions << A;
  FActionByName.insert(Name, A);

  bool Available = D.Command != -2;
  if (D.Command >= 0) {
    FCommandOf.insert(A, D.Command);
    Available = FindVDECommand(D.Command) != nullptr;
  }
  FAvailable.insert(Name, Available);
  SetActionEnabled(A, Available);

  if (!D.Visible) {
    A->setVisible(false);
    // A hidden action's shortcut is off in Qt; the form keeps it working.
    if (*D.Key) {
      auto* S = new QShortcut(A->shortcut(), this);
      connect(S, &QShortcut::activated, this, [this, Name] {
        UpdateActions();
        UpdateEditActions();
        TriggerAction(Name);
      });
    }
  }
  connect(A, &QAction::triggered, this, [this, Name] { RunAction(Name); });
  return A;
}

void TEditDrawSetForm::CreateMenus() {
  QMenuBar* Bar = menuBar();
  const auto Fill = [this](QMenu* M, const char* AItems) {
    for (const QString& N : QString::fromLatin1(AItems).split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
      if (N == QLatin1String("-"))
        M->addSeparator();
      else
        M->addAction(Action(N));
    }
  };
  Fill(Bar->addMenu(QStringLiteral("图集(&S)")), "acSelDrawSet - acSave acImport - acExit");
  Fill(Bar->addMenu(QStringLiteral("编辑(&E)")),
       "acCut acCopy acPaste acDelete - acInitialize - acShowBars acAddBar acDeleteBar acDebug - acSetBarInfo "
       "acMergeBars - acFindParam acEditParam acLinesToBar acEditTabOrder - acSelectAll");
  Fill(Bar->addMenu(QStringLiteral("绘图(&D)")),
       "acDrawPoint - acDrawLine acDrawACSArc acDrawCSArc acDrawACLArc acDrawCLArc acDraw3PArc acDrawCircle "
       "acDrawRect acDrawPolygon - acDrawText - acDrawHatch - acDrawDimension");
  Fill(Bar->addMenu(QStringLiteral("修改(&M)")),
       "acUndo acRedo - acErase - acDuplicate acMirror - acMove acRotate acOffset - acExtend acTrim acBreak "
       "acMerge acStretch");

  QMenu* View = Bar->addMenu(QStringLiteral("视图(&V)"));
  QAction* PropSwitch = FPropDock->toggleViewAction();
  PropSwitch->setText(QStringLiteral("图元属性(&P)"));
  View->addAction(PropSwitch);
  QMenu* Bars = View->addMenu(QStringLiteral("工具栏(&T)"));
  const char* BarItems[][2] = {{"tbStandard", "系统工具栏(&S)"}, {"tbDraw", "绘图工具栏(&D)"},
                               {"tbModify", "修改工具栏(&M)"}, {"tbSnap", "捕捉工具栏(&N)"},
                               {"tbDSType", "图元类型工具栏(&T)"}, {"tbBar", "钢筋编辑工具栏(&B)"}};
  for (const auto& B : BarItems) {
    QToolBar* T = findChild<QToolBar*>(QString::fromLatin1(B[0]));
    QAction* Switch = T->toggleViewAction();
    Switch->setText(QString::fromUtf8(B[1]));
    Bars->addAction(Switch);
  }
  QAction* StatusSwitch = View->addAction(QStringLiteral("状态条(&B)"));
  StatusSwitch->setCheckable(true);
  StatusSwitch->setChecked(true);
  connect(StatusSwitch, &QAction::toggled, statusBar(), &QStatusBar::setVisible);
  View->addSeparator();
  Fill(View->addMenu(QStringLiteral("缩放(&Z)")), "acZoomAll acZoomRunTime acZoomWin acZoomIn acZoomOut");
  Fill(View->addMenu(QStringLiteral("平移(&D)")), "acPanRunTime - acPanLeft acPanRight acPanUp acPanDown");

  QMenu* Options = Bar->addMenu(QStringLiteral("设置(&O)"));
  QAction* Grid = Options->addAction(QStringLiteral("网格(&G)..."));
  connect(Grid, &QAction::triggered, Action(QStringLiteral("acGridSetting")), &QAction::trigger);
  Options->addSeparator();
  Fill(Options, "acSnapSwitch - acDrawProp - acViewID acSaveToFile");

  QMenu* Help = Bar->addMenu(QStringLiteral("帮助(&H)"));
  Fill(Help, "acHelp - acAbout");
  Help->menuAction()->setVisible(false);

  FCommonMenu = new QMenu(this);
  FModifyMenu = new QMenu(this);
}

void TEditDrawSetForm::CreateToolBars() {
  const auto Make = [this](const char* AName, const char* ACaption) {
    QToolBar* T = addToolBar(QString::fromUtf8(ACaption));
    T->setObjectName(QString::fromLatin1(AName));
    T->setIconSize(QSize(20, 20));
    FToolBars << T;
    return T;
  };
  const auto Fill = [this](QToolBar* T, const char* AItems) {
    for (const QString& N : QString::fromLatin1(AItems).split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
      if (N == QLatin1String("-"))
        T->addSeparator();
      else
        T->addAction(Action(N));
    }
  };
  QToolBar* Standard = Make("tbStandard", "系统工具栏");
  Fill(Standard, "acSave - acCut acCopy acPaste acDelete - acZoomAll acZoomRunTime acZoomWin");
  FZoomCombo = new QComboBox(Standard);
  FZoomCombo->setObjectName(QStringLiteral("cbZoomFactor"));
  FZoomCombo->setEditable(true);
  FZoomCombo->setInsertPolicy(QComboBox::NoInsert);
  FZoomCombo->setToolTip(QStringLiteral("缩放比例"));
  FZoomCombo->addItems({QStringLiteral("500%"), QStringLiteral("200%"), QStringLiteral("150%"), QStringLiteral("100%"),
                        QStringLiteral("75%"), QStringLiteral("50%"), QStringLiteral("25%"), QStringLiteral("10%")});
  FZoomCombo->setMinimumWidth(80);
  FZoomCombo->setCurrentText(FZoomText);
  Standard->addWidget(FZoomCombo);
  Fill(Standard, "acPanRunTime - acUndo acRedo -");
  QAction* PropSwitch = FPropDock->toggleViewAction();
  Standard->addAction(PropSwitch);

  QToolBar* Draw = Make("tbDraw", "图元属性工具栏");
  Fill(Draw, "acSelect - acDrawPoint - acDrawLine");
  auto* ArcMenu = new QMenu(this);
  for (const char* N : {"acDrawACSArc", "acDrawCSArc", "acDrawACLArc", "acDrawCLArc", "acDraw3PArc"})
    ArcMenu->addAction(Action(QString::fromLatin1(N)));
  QAction* ArcHead = Action(QStringLiteral("acDrawArc"));
  ArcHead->setMenu(ArcMenu);
  Draw->addAction(ArcHead);
  if (auto* B = qobject_cast<QToolButton*>(Draw->widgetForAction(ArcHead))) B->setPopupMode(QToolButton::InstantPopup);
  Fill(Draw, "acDrawCircle");
  FRadiusCombo = new QComboBox(Draw);
  FRadiusCombo->setObjectName(QStringLiteral("cbRadius"));
  FRadiusCombo->setEditable(true);
  FRadiusCombo->setInsertPolicy(QComboBox::NoInsert);
  FRadiusCombo->setToolTip(QStringLiteral("圆弧(圆)半径值"));
  for (int R = 0; R <= 100; R += 10) FRadiusCombo->addItem(QString::number(R));
  FRadiusCombo->setMinimumWidth(70);
  FRadiusCombo->setCurrentText(FRadiusText);
  Draw->addWidget(FRadiusCombo);
  Fill(Draw, "acDrawRect acDrawPolygon - acDrawText - acDrawHatch - acDrawDimension");

  Fill(Make("tbModify", "修改工具栏"),
       "acErase - acDuplicate acMirror - acMove acRotate acOffset acStretch - acExtend acTrim acMerge acBreak");
  addToolBarBreak();
  Fill(Make("tbSnap", "捕捉工具栏"), "acPerSnap acMidSnap acIntSnap");
  Fill(Make("tbBar", "钢筋编辑工具栏"),
       "acInitialize - acShowBars acAddBar acDeleteBar acDebug - acSetBarInfo acMergeBars - acFindParam acEditParam "
       "acLinesToBar");

  QToolBar* Modes = Make("tbDSType", "图元类型工具栏");
  FModeGroup = new QActionGroup(this);
  const char* ModeDefs[][2] = {{"tbiNormal", "图元"}, {"tbiBar", "钢筋"}, {"tbiParam", "变量"}};
  for (int I = 0; I < 3; ++I) {
    auto* A = new QAction(QString::fromUtf8(ModeDefs[I][1]), this);
    A->setObjectName(QString::fromLatin1(ModeDefs[I][0]));
    A->setCheckable(true);
    FModeGroup->addAction(A);
    Modes->addAction(A);
    FModeButtons[size_t(I)] = A;
    connect(A, &QAction::triggered, this, [this, I] { Guard([&] { SetCurDSType(TDSType(I)); }); });
  }
  FModeButtons[dsNormal]->setChecked(true);

  for (QToolBar* T : FToolBars)
    for (QAction* A : T->actions())
      if (QWidget* W = T->widgetForAction(A))
        if (auto* B = qobject_cast<QToolButton*>(W)) B->setToolButtonStyle(A->icon().isNull() ? Qt::ToolButtonTextOnly
                                                                                             : Qt::ToolButtonIconOnly);

  connect(FZoomCombo->lineEdit(), &QLineEdit::returnPressed, this, [this] { Guard([&] { ZoomAccepted(); }); });
  connect(FZoomCombo, &QComboBox::activated, this, [this](int AIndex) {
    Guard([&] {
      FZoomCombo->setCurrentText(FZoomCombo->itemText(AIndex));
      ZoomAccepted();
    });
  });
  connect(FRadiusCombo->lineEdit(), &QLineEdit::returnPressed, this, [this] { Guard([&] { RadiusAccepted(); }); });
  connect(FRadiusCombo, &QComboBox::activated, this, [this](int AIndex) {
    Guard([&] {
      FRadiusCombo->setCurrentText(FRadiusCombo->itemText(AIndex));
      RadiusAccepted();
    });
  });
}

void TEditDrawSetForm::CreateStatusBar() {
  QStatusBar* Bar = statusBar();
  const int Widths[6] = {100, 55, 55, 110, 40, 0};
  for (int I = 0; I < 6; ++I) {
    auto* L = new QLabel(Bar);
    L->setObjectName(QStringLiteral("sbPanel%1").arg(I));
    if (Widths[I] > 0) L->setFixedWidth(Widths[I]);
    if (I == 4) L->setAlignment(Qt::AlignCenter);
    L->setFrameShape(QFrame::StyledPanel);
    L->setFrameShadow(QFrame::Sunken);
    if (I >= 1 && I <= 3) L->installEventFilter(this);
    if (I == 5)
      Bar->addWidget(L, 1);
    else
      Bar->addWidget(L);
    FPanels[size_t(I)] = L;
  }
  FPanels[5]->setMinimumWidth(40);
}
