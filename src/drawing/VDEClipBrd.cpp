#include "VDEClipBrd.h"

#include "Classes.h"
#include "VectorDrawing.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

const char* const CF_VECTORDRAWINGCLIPBRD = "CF_VECTORDRAWINGCLIPBRD";

void CopyToClipboard(const std::vector<TVectorDrawingItem*>& AItems) {
  if (AItems.empty()) return;
  TVectorDrawing Temp;
  for (TVectorDrawingItem* I : AItems) I->Clone(&Temp);
  TBytesStream S;
  Temp.SaveToStream(S, sfBin, false);
  auto* Data = new QMimeData();
  Data->setData(QString::fromLatin1(CF_VECTORDRAWINGCLIPBRD), S.Bytes());
  QGuiApplication::clipboard()->setMimeData(Data);
}

void PasteFromClipboard(std::vector<std::unique_ptr<TVectorDrawingItem>>& AItems) {
  AItems.clear();
  const QMimeData* Data = QGuiApplication::clipboard()->mimeData();
  if (!Data || !Data->hasFormat(QString::fromLatin1(CF_VECTORDRAWINGCLIPBRD))) return;
  TBytesStream S(Data->data(QString::fromLatin1(CF_VECTORDRAWINGCLIPBRD)));
  TVectorDrawing Temp;
  Temp.LoadFromStream(S);
  for (int I = 0; I < Temp.Count(); ++I) {
    std::unique_ptr<TVectorDrawingItem> C(Temp.Items(I)->Clone(nullptr));
    C->SetLayerRaw(nullptr);
    AItems.push_back(std::move(C));
  }
}
