#include "ChooseBZTJ.h"

#include "ClientDataSet.h"
#include "Classes.h"
#include "Dialogs.h"
#include "DrawSetConsts.h"
#include "MZTDataSvr.h"
#include "VectorDrawing.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QPainter>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

std::vector<TDrawSetTreeNode> BuildDrawSetTree(const TDataPacket& ATypes, const TDataPacket& ADrawSets) {
  std::vector<TDrawSetTreeNode> Nodes;
  const int TypeID = ATypes.FieldIndex(QStringLiteral("DrawSetTypeID"));
  const int TypeName = ATypes.FieldIndex(QStringLiteral("DrawSetTypeName"));
  for (const TPacketRow& R : ATypes.Rows)
    Nodes.push_back({R.Values.value(TypeName).toString(), R.Values.value(TypeID).toInt(), -1});
  const int SetID = ADrawSets.FieldIndex(QStringLiteral("DrawSetID"));
  const int SetType = ADrawSets.FieldIndex(QStringLiteral("DrawSetTypeID"));
  const int SetName = ADrawSets.FieldIndex(QStringLiteral("DrawSetName"));
  int Other = -1, Parent = -1;
  const int Roots = int(Nodes.size());
  for (const TPacketRow& R : ADrawSets.Rows) {
    const int Type = R.Values.value(SetType).isNull() ? -1 : R.Values.value(SetType).toInt();
    if (Type != -1) {
      Parent = -1;
      for (int I = 0; I < Roots; ++I)
        if (Nodes[size_t(I)].Data == Type) {
          Parent = I;
          break;
        }
      if (Parent < 0) {
        if (Other < 0) {
          Nodes.push_back({QStringLiteral("其他类型"), -1, -1});
          Other = int(Nodes.size()) - 1;
        }
        Parent = Other;
      }
    }
    Nodes.push_back({R.Values.value(SetName).toString(), R.Values.value(SetID).toInt(), Parent});
  }
  return Nodes;
}

namespace {

// The chooser's state: its data and which node is the choice.
struct TChooser {
  TClientDataSet Sets;
  std::vector<TDrawSetTreeNode> Nodes;
  int ID = -1;
  QString Name;
  QByteArray Blob;

  bool IsLeaf(int ANode) const {
    for (const TDrawSetTreeNode& N : Nodes)
      if (&N - Nodes.data() > ANode && N.Parent == ANode) return false;
    return true;
  }
  // btnOK: a node with a parent; the message otherwise.
  bool Choose(int ANode, bool AShowMessage) {
    if (ANode < 0 || Nodes[size_t(ANode)].Parent < 0) {
      if (AShowMessage) ShowErrorBox(QStringLiteral("请选择结点图！"));
      return false;
    }
    ID = Nodes[size_t(ANode)].Data;
    if (!Sets.Locate(QStringLiteral("DrawSetID"), {ID})) return false;
    Name = Sets.FieldByName(QStringLiteral("DrawSetName")).AsString();
    const int Blob_ = Sets.FieldIndex(VectorDrawingFieldName);
    Blob = Blob_ >= 0 ? Sets.Fields(Blob_).AsBytes() : QByteArray();
    return true;
  }
};

int ShowChooser(TChooser& C, QWidget* AOwner) {
  QDialog Dlg(AOwner);
  Dlg.setWindowTitle(QStringLiteral("选择标准图集"));
  Dlg.resize(640, 420);
  auto* Top = new QHBoxLayout;
  auto* ListBox = new QGroupBox(QStringLiteral("图集列表"), &Dlg);
  auto* Tree = new QTreeWidget(ListBox);
  Tree->setHeaderHidden(true);
  (new QVBoxLayout(ListBox))->addWidget(Tree);
  auto* ViewBox = new QGroupBox(QStringLiteral("图形显示"), &Dlg);
  auto* Viewer = new TVectorDrawingViewer(ViewBox);
  (new QVBoxLayout(ViewBox))->addWidget(Viewer);
  Top->addWidget(ListBox, 2);
  Top->addWidget(ViewBox, 3);
  auto* Buttons = new QDialogButtonBox(&Dlg);
  QPushButton* Ok = Buttons->addButton(QStringLiteral("选择"), QDialogButtonBox::AcceptRole);
  Buttons->addButton(QDialogButtonBox::Cancel);
  auto* Layout = new QVBoxLayout(&Dlg);
  Layout->addLayout(Top, 1);
  Layout->addWidget(Buttons);

  std::vector<QTreeWidgetItem*> Items;
  for (size_t I = 0; I < C.Nodes.size(); ++I) {
    const TDrawSetTreeNode& N = C.Nodes[I];
    auto* Item = N.Parent < 0 ? new QTreeWidgetItem(Tree) : new QTreeWidgetItem(Items[size_t(N.Parent)]);
    Item->setText(0, N.Text);
    Item->setData(0, Qt::UserRole, int(I));
    Items.push_back(Item);
  }
  const auto NodeOf = [](QTreeWidgetItem* AItem) { return AItem ? AItem->data(0, Qt::UserRole).toInt() : -1; };
  QObject::connect(Tree, &QTreeWidget::currentItemChanged, &Dlg, [&](QTreeWidgetItem* AItem) {
    Viewer->Drawing().Clear();
    const int Node = NodeOf(AItem);
    if (AItem && AItem->childCount() == 0 && C.Sets.Locate(QStringLiteral("DrawSetID"), {C.Nodes[size_t(Node)].Data})) {
      const int F = C.Sets.FieldIndex(VectorDrawingFieldName);
      TBytesStream S(F >= 0 ? C.Sets.Fields(F).AsBytes() : QByteArray());
      S.SetPosition(0);
      try {
        if (S.GetSize() > 0) Viewer->Drawing().LoadFromStream(S);
      } catch (const std::exception&) {
        ShowErrorBox(QStringLiteral("载入图集数据发生错误"));
      }
    }
    Viewer->update();
  });
  QObject::connect(Ok, &QPushButton::clicked, &Dlg, [&] {
    if (C.Choose(NodeOf(Tree->currentItem()), true)) Dlg.accept();
  });
  QObject::connect(Buttons, &QDialogButtonBox::rejected, &Dlg, &QDialog::reject);
  QObject::connect(Tree, &QTreeWidget::itemDoubleClicked, &Dlg, [&](QTreeWidgetItem* AItem) {
    if (C.Choose(NodeOf(AItem), false)) Dlg.accept();
  });
  return Dlg.exec() == QDialog::Accepted ? mrOk : mrCancel;
}

}  // namespace

int TChooseBZTJForm::Execute(IDrawingsDataSvr& ADrawingsDataSvr, int& ATJID, QString& ATJName, QByteArray& AStream,
                             QWidget* AOwner) {
  TChooser C;
  {
    QApplication::setOverrideCursor(Qt::WaitCursor);
    struct TRestore {
      ~TRestore() { QApplication::restoreOverrideCursor(); }
    } Restore;
    const TDataPacket Types = DataSvr::GetDrawSetTypes(ADrawingsDataSvr);
    const TDataPacket Sets = DataSvr::GetDrawSets(ADrawingsDataSvr);
    C.Sets.SetData(Sets);
    C.Nodes = BuildDrawSetTree(Types, Sets);
  }
  const int R = Dialogs().CustomDialog(
      QStringLiteral("选择标准图集"), [&] { return ShowChooser(C, AOwner); },
      [&](const TDialogAnswer& A) {
        if (A.Kind == dakButton && A.Button == mrCancel) return int(mrCancel);
        if (A.Kind != dakChoose)
          throw EUnexpectedDialog(QStringLiteral("the dialog \"选择标准图集\" takes choose \"TEXT\" or answer cancel"));
        int Node = -1;
        for (size_t I = 0; I < C.Nodes.size() && Node < 0; ++I)
          if (C.Nodes[I].Text == A.Text) Node = int(I);
        if (Node < 0) throw EUnexpectedDialog(QStringLiteral("the dialog \"选择标准图集\" has no node \"%1\"").arg(A.Text));
        return C.Choose(Node, true) ? int(mrOk) : -1;
      });
  if (R != mrOk) return R;
  ATJID = C.ID;
  ATJName = C.Name;
  AStream = C.Blob;
  return R;
}
