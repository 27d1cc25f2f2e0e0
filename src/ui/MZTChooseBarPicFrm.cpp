#include "MZTChooseBarPicFrm.h"

#include "Classes.h"
#include "Dialogs.h"
#include "MZTDataSvr.h"
#include "VectorDrawing.h"
#include "VectorIconViewer.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

const char* const PageCaptions[] = {"常用图库", "BS图库", "系统图库", "香港房屋署图号库", "自定义图库"};

}  // namespace

TMZTChooseBarPicForm::TMZTChooseBarPicForm(const TBarPicCatalog& ACatalog, bool ACustomBarPics, QWidget* AOwner)
    : QDialog(AOwner), FCatalog(ACatalog) {
  setWindowTitle(QStringLiteral("选择钢筋图形"));
  resize(760, 460);
  FPages = new QTabWidget(this);
  for (int I = 0; I < 5; ++I) {
    auto* Sheet = new QWidget;
    auto* L = new QHBoxLayout(Sheet);
    L->setContentsMargins(4, 4, 4, 4);
    if (I == bppSystem) {
      FBend = new QComboBox(Sheet);
      FHook = new QComboBox(Sheet);
      for (const auto& [ID, Text] : FCatalog.BendEntries()) FBend->addItem(Text, ID);
      for (const auto& [ID, Text] : FCatalog.HookEntries()) FHook->addItem(Text, ID);
      L->addWidget(new QLabel(QStringLiteral("弯折:"), Sheet));
      L->addWidget(FBend);
      L->addWidget(new QLabel(QStringLiteral("弯钩:"), Sheet));
      L->addWidget(FHook);
      connect(FBend, &QComboBox::currentIndexChanged, this, [this] { FillPage(); });
      connect(FHook, &QComboBox::currentIndexChanged, this, [this] { FillPage(); });
    } else if (I == bppCustom) {
      FTypes = new QTreeWidget(Sheet);
      FTypes->setHeaderHidden(true);
      FTypes->setMaximumHeight(90);
      for (const auto& [ID, Name] : FCatalog.CustomTypes()) {
        auto* N = new QTreeWidgetItem(FTypes, {Name});
        N->setData(0, Qt::UserRole, ID);
      }
      if (FTypes->topLevelItemCount() > 0) FTypes->setCurrentItem(FTypes->topLevelItem(0));
      L->addWidget(FTypes);
      connect(FTypes, &QTreeWidget::currentItemChanged, this, [this] { FillPage(); });
    }
    L->addStretch(1);
    FPages->addTab(Sheet, QString::fromUtf8(PageCaptions[I]));
  }
  if (!ACustomBarPics) FPages->setTabVisible(bppCustom, false);
  FBarPicsGrid = new TVectorAutoColRow(this);
  FBarPicsGrid->OnIconChanged = [this] { ShowLabel(); };
  FBarPicsGrid->OnIconDblClick = [this] {
    if (Accept()) accept();
  };
  FLabel = new QLabel(this);
  FLabel->setFixedWidth(180);
  auto* Buttons = new QDialogButtonBox(this);
  auto* AddCommon = Buttons->addButton(QStringLiteral("加入常用图库"), QDialogButtonBox::ActionRole);
  auto* RemoveCommon = Buttons->addButton(QStringLiteral("移出常用图库"), QDialogButtonBox::ActionRole);
  FCustomButton = Buttons->addButton(QStringLiteral("自定义图形"), QDialogButtonBox::ActionRole);
  FCustomButton->setEnabled(false);  // editing custom pictures belongs to the host's catalogue
  Buttons->addButton(QDialogButtonBox::Ok);
  Buttons->addButton(QDialogButtonBox::Cancel);
  connect(AddCommon, &QPushButton::clicked, this, [this] { AddToCommonList(); });
  connect(RemoveCommon, &QPushButton::clicked, this, [this] { RemoveFromCommonList(); });
  connect(Buttons, &QDialogButtonBox::accepted, this, [this] {
    if (Accept()) accept();
  });
  connect(Buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* Bottom = new QHBoxLayout;
  Bottom->addWidget(FLabel);
  Bottom->addWidget(Buttons, 1);
  auto* Layout = new QVBoxLayout(this);
  Layout->addWidget(FPages);
  Layout->addWidget(FBarPicsGrid, 1);
  Layout->addLayout(Bottom);
  FPages->setMaximumHeight(FPages->tabBar()->sizeHint().height() + 56);
  connect(FPages, &QTabWidget::currentChanged, this, [this] { FillPage(); });
  FillPage();
}

TMZTChooseBarPicForm::~TMZTChooseBarPicForm() = default;

TBarPicPage TMZTChooseBarPicForm::Page() const { return TBarPicPage(FPages->currentIndex()); }

void TMZTChooseBarPicForm::SetPage(TBarPicPage APage) {
  if (FPages->currentIndex() == APage) FillPage();
  else FPages->setCurrentIndex(APage);
}

int TMZTChooseBarPicForm::CurrentCustomType() const {
  const QTreeWidgetItem* N = FTypes->currentItem();
  return N ? N->data(0, Qt::UserRole).toInt() : -1;
}

void TMZTChooseBarPicForm::FillPage() {
  if (FFilling) return;
  FFilling = true;
  const TBarPicPage P = Page();
  FUseCustomed = P == bppCustom;
  FCustomButton->setVisible(P == bppCustom);
  FBarPicsGrid->Clear();
  FPicArray = FCatalog.Page(P, CommonBarPicStore().Load(), FBend->currentData().isValid() ? FBend->currentData().toInt() : -1,
                            FHook->currentData().isValid() ? FHook->currentData().toInt() : -1, CurrentCustomType());
  for (const TBarPicPageItem& Item : FPicArray) {
    auto* V = new TVectorDrawingViewer;
    TBytesStream S(FCatalog.DrawingOf(Item.BarPicID));
    S.SetPosition(0);
    try {
      if (S.GetSize() > 0) V->Drawing().LoadFromStream(S);
    } catch (const std::exception&) {
      // A damaged picture shows an empty cell.
    }
    V->Drawing().SetTag(Item.BarPicID);
    V->setToolTip(TBarPicCatalog::LabelText(Item));
    FBarPicsGrid->Add(V, Item.BarPicID);
  }
  if (FBarPicsGrid->Count() > 0) FBarPicsGrid->SetItemIndex(0);
  ShowLabel();
  FFilling = false;
}

void TMZTChooseBarPicForm::ShowLabel() {
  const int I = FBarPicsGrid->ItemIndex();
  FLabel->setText(I >= 0 && I < FPicArray.size() ? TBarPicCatalog::LabelText(FPicArray[I]) : QString());
}

QString TMZTChooseBarPicForm::LabelText() const { return FLabel->text(); }

bool TMZTChooseBarPicForm::SelectPicture(int APic) {
  const auto Find = [&] {
    for (int I = 0; I < FPicArray.size(); ++I)
      if (FPicArray[I].BarPicID == APic) return I;
    return -1;
  };
  int I = Find();
  for (int Page = 0; I < 0 && Page < 5; ++Page) {
    if (!FPages->isTabVisible(Page)) continue;
    SetPage(TBarPicPage(Page));
    if (Page == bppSystem) {
      // The page shows one bend and hook at a time.
      for (int B = 0; I < 0 && B < FBend->count(); ++B)
        for (int H = 0; I < 0 && H < FHook->count(); ++H) {
          FBend->setCurrentIndex(B);
          FHook->setCurrentIndex(H);
          I = Find();
        }
    } else if (Page == bppCustom) {
      for (int T = 0; I < 0 && T < FTypes->topLevelItemCount(); ++T) {
        FTypes->setCurrentItem(FTypes->topLevelItem(T));
        I = Find();
      }
    } else {
      I = Find();
    }
  }
  if (I < 0) return false;
  FBarPicsGrid->SetItemIndex(I);
  return true;
}

bool TMZTChooseBarPicForm::Accept() {
  if (FBarPicsGrid->Count() == 0 || FBarPicsGrid->ItemIndex() < 0) {
    ShowHintBox(QStringLiteral("尚未选择有效的图形"));
    return false;
  }
  FPicID = FPicArray[FBarPicsGrid->ItemIndex()].BarPicID;
  return true;
}

void TMZTChooseBarPicForm::AddToCommonList() {
  const int I = FBarPicsGrid->ItemIndex();
  if (I < 0) return;
  CommonBarPicStore().Save(AddToCommon(CommonBarPicStore().Load(), FPicArray[I].BarPicID));
  FillPage();
}

void TMZTChooseBarPicForm::RemoveFromCommonList() {
  const int I = FBarPicsGrid->ItemIndex();
  if (I < 0) return;
  CommonBarPicStore().Save(RemoveFromCommon(CommonBarPicStore().Load(), FPicArray[I].BarPicID));
  FillPage();
}

int TMZTChooseBarPicForm::Execute(int& APicID, IMZTBarInfoDataSvr& ASysDataSvr, bool, bool ACustomBarPics,
                                  bool ASysPicDef, QWidget* AOwner) {
  const std::unique_ptr<TBarPicCatalog> Catalog = TBarPicCatalog::Fetch(ASysDataSvr);
  TMZTChooseBarPicForm Form(*Catalog, ACustomBarPics, AOwner);
  if (ASysPicDef) Form.SetPage(bppSystem);
  const int R = Dialogs().CustomDialog(
      QStringLiteral("选择钢筋图形"), [&] { return Form.exec() == QDialog::Accepted ? int(mrOk) : int(mrCancel); },
      [&](const TDialogAnswer& A) {
        if (A.Kind == dakChoose && A.Text.startsWith(QLatin1String("pic "))) {
          bool Ok = false;
          const int Pic = A.Text.mid(4).toInt(&Ok);
          if (!Ok || !Form.SelectPicture(Pic))
            throw EUnexpectedDialog(QStringLiteral("the dialog \"选择钢筋图形\" offers no picture %1").arg(A.Text.mid(4)));
          return -1;
        }
        if (A.Kind != dakButton)
          throw EUnexpectedDialog(QStringLiteral("the dialog \"选择钢筋图形\" takes choose pic N and answer ok|cancel"));
        if (A.Button != mrOk) return int(mrCancel);
        return Form.Accept() ? int(mrOk) : -1;
      });
  if (R == mrOk) APicID = Form.PicID();
  return R;
}
