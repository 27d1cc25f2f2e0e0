#pragma once
// An editor on a temporary settings file with a 800 x 600 client and world (x, y) at
// pixel (400 + x, 300 - y), fed input records as a widget would.

#include "Dialogs.h"
#include "VDILine.h"
#include "VDIVisitor.h"
#include "VectorDrawingEditor.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

class EditorFixture : public ::testing::Test {
protected:
  void SetUp() override {
    E = std::make_unique<TVectorDrawingEditor>(Dir.filePath(QStringLiteral("editor.ini")));
    E->SetClientSize(800, 600);
    E->GetCoordTrans().SetCoordTransParam({400, 300}, {0, 0}, 1);
  }
  TVectorDrawing& D() { return E->GetVectorDrawing(); }
  int AddLine(double X1, double Y1, double X2, double Y2) {
    auto* L = new TVectorLine(&D(), D().GenID(), 0xFFFFFF, 0, psSolid, 0, 0, msNone, msNone, {X1, Y1}, {X2, Y2});
    D().Add(std::unique_ptr<TVectorDrawingItem>(L));
    return L->ID();
  }
  TKRNPoint2i Px(double X, double Y) { return E->GetCoordTrans().WCTODC(TKRNVector2d{X, Y}); }
  void Move(double X, double Y, TShiftState S = 0) { E->MouseMove(S, Px(X, Y)); }
  void Down(double X, double Y, TMouseButton B = mbLeft, TShiftState S = 0) {
    E->MouseDown(B, S | (B == mbLeft ? sfLeft : B == mbRight ? sfRight : sfMiddle), Px(X, Y));
  }
  void Up(double X, double Y, TMouseButton B = mbLeft, TShiftState S = 0) { E->MouseUp(B, S, Px(X, Y)); }
  void Click(double X, double Y, TShiftState S = 0) {
    Move(X, Y, S);
    Down(X, Y, mbLeft, S);
    Up(X, Y, mbLeft, S);
  }
  void RClick(double X, double Y) {
    Move(X, Y);
    Down(X, Y, mbRight);
    Up(X, Y, mbRight);
  }
  void Drag(double X1, double Y1, double X2, double Y2) {
    Move(X1, Y1);
    Down(X1, Y1);
    for (int K = 1; K <= 4; ++K) Move(X1 + (X2 - X1) * K / 5, Y1 + (Y2 - Y1) * K / 5, sfLeft);
    Move(X2, Y2, sfLeft);
    Up(X2, Y2);
  }
  void Key(quint16 AKey, TShiftState S = 0) { E->KeyDown(AKey, S); }
  // Selected IDs in drawing order.
  std::vector<int> Sel() {
    std::vector<int> R;
    for (int I = 0; I < D().Count(); ++I)
      if (D().Items(I)->Selected()) R.push_back(D().Items(I)->ID());
    return R;
  }
  std::vector<int> Items() {
    std::vector<int> R;
    for (int I = 0; I < D().Count(); ++I) R.push_back(D().Items(I)->ID());
    return R;
  }

  QTemporaryDir Dir;
  TDialogScope Boxes;
  std::unique_ptr<TVectorDrawingEditor> E;
};
