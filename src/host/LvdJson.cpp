#include "LvdJson.h"

#include "DrawSet.h"

#include "VDIHatch.h"
#include "VDILine.h"
#include "VDIPoint.h"
#include "VDIText.h"
#include "VectorDrawing.h"

#include <QJsonArray>

namespace {

QJsonArray Pt(const TKRNVector2d& P) { return QJsonArray{P.X, P.Y}; }

QJsonArray Vertices(const TKRNVertex2dList& L) {
  QJsonArray A;
  for (int I = 0; I < L.Count(); ++I) {
    const TKRNVertex2d* V = L[I];
    const bool Arc = V->VertexType() == vtArc;
    A.append(QJsonArray{V->Point().X, V->Point().Y, Arc ? int(V->ArcType()) : 0, Arc ? V->Radius() : 0.0});
  }
  return A;
}

}  // namespace

QJsonObject ItemJson(const TVectorDrawingItem& I) {
  QJsonObject O;
  O.insert(QStringLiteral("type"), I.ItemType());
  O.insert(QStringLiteral("class"), QString::fromLatin1(FindVDIClass(I.ItemType())->ClassName));
  O.insert(QStringLiteral("id"), I.ID());
  O.insert(QStringLiteral("layer"), I.Layer() ? QJsonValue(I.Layer()->ID()) : QJsonValue(QJsonValue::Null));
  O.insert(QStringLiteral("color"), qint64(I.Color()));
  O.insert(QStringLiteral("extData"), I.ExtData());
  O.insert(QStringLiteral("relationId"), I.RelationID());
  O.insert(QStringLiteral("blockTypeId"), I.BlockTypeID());
  O.insert(QStringLiteral("blockId"), I.BlockID());
  O.insert(QStringLiteral("enableType"), I.EnableType());
  O.insert(QStringLiteral("currentScale"), I.CurrentScale());
  const TKRNBox2d& B = I.OutRect();
  O.insert(QStringLiteral("outRect"), QJsonArray{B.MinX(), B.MinY(), B.MaxX(), B.MaxY()});
  if (const auto* P = dynamic_cast<const TVectorPoint*>(&I)) {
    O.insert(QStringLiteral("insertPt"), Pt(P->InsertPt()));
    O.insert(QStringLiteral("size"), P->Size());
    O.insert(QStringLiteral("pointStyle"), int(P->PointStyle()));
  } else if (const auto* T = dynamic_cast<const TVectorText*>(&I)) {
    O.insert(QStringLiteral("text"), T->Text());
    O.insert(QStringLiteral("height"), T->Height());
    O.insert(QStringLiteral("floatHeight"), double(T->FloatHeight()));
    O.insert(QStringLiteral("angle"), double(T->Angle()));
    O.insert(QStringLiteral("insertPt"), Pt(T->InsertPt()));
    O.insert(QStringLiteral("horzAlignment"), int(T->HorzAlignment()));
    O.insert(QStringLiteral("vertAlignment"), int(T->VertAlignment()));
    O.insert(QStringLiteral("fontName"), T->FontName());
    O.insert(QStringLiteral("fontStyle"), T->FontStyle() & 3);
    O.insert(QStringLiteral("transparent"), T->Transparent());
    O.insert(QStringLiteral("backColor"), qint64(T->BackColor()));
  } else if (const auto* L = dynamic_cast<const TVectorLineBase*>(&I)) {
    O.insert(QStringLiteral("lineWidth"), L->LineWidth());
    O.insert(QStringLiteral("lineStyle"), L->LineStyle());
    O.insert(QStringLiteral("startMarkSize"), L->StartMarkSize());
    O.insert(QStringLiteral("endMarkSize"), L->EndMarkSize());
    O.insert(QStringLiteral("startMarkStyle"), int(L->StartMarkStyle()));
    O.insert(QStringLiteral("endMarkStyle"), int(L->EndMarkStyle()));
    O.insert(QStringLiteral("prevItemId"), L->PrevItemID());
    O.insert(QStringLiteral("nextItemId"), L->NextItemID());
    if (const auto* Ln = dynamic_cast<const TVectorLine*>(L)) {
      O.insert(QStringLiteral("startPt"), Pt(Ln->GetXLine().StartPt()));
      O.insert(QStringLiteral("endPt"), Pt(Ln->GetXLine().EndPt()));
      if (const auto* A = dynamic_cast<const TVectorArc*>(L)) {
        O.insert(QStringLiteral("radius"), A->Arc().Radius());
        O.insert(QStringLiteral("arcType"), int(A->Arc().ArcType()));
      }
    } else if (const auto* P = dynamic_cast<const TVectorPolyline*>(L)) {
      O.insert(QStringLiteral("vertices"), Vertices(P->Polyline().List()));
    }
  } else if (const auto* H = dynamic_cast<const TVectorHatch*>(&I)) {
    O.insert(QStringLiteral("fillStyle"), H->FillStyle());
    O.insert(QStringLiteral("vertices"), Vertices(H->XPoly().List()));
  } else if (const auto* C = dynamic_cast<const TVectorCircle*>(&I)) {
    O.insert(QStringLiteral("lineWidth"), C->LineWidth());
    O.insert(QStringLiteral("lineStyle"), C->LineStyle());
    O.insert(QStringLiteral("centerPt"), Pt(C->CenterPt()));
    O.insert(QStringLiteral("radius"), C->Radius());
  } else if (const auto* M = dynamic_cast<const TVectorHatchM*>(&I)) {
    O.insert(QStringLiteral("hatchStyle"), M->HatchStyle());
    QJsonArray Polys;
    for (int K = 0; K < M->XPoly().Count(); ++K) {
      const auto* P = dynamic_cast<const TKRNPolygon2d*>(M->XPoly().GetItems(K));
      Polys.append(P ? Vertices(P->List()) : QJsonArray());
    }
    O.insert(QStringLiteral("polygons"), Polys);
    O.insert(QStringLiteral("pattern"), QJsonArray::fromStringList(M->HatchPatternData()));
  } else if (const auto* Cm = dynamic_cast<const TVectorComment*>(&I)) {
    O.insert(QStringLiteral("text"), Cm->Text());
    O.insert(QStringLiteral("date"), Cm->Date());
    O.insert(QStringLiteral("insertPt"), Pt(Cm->InsertPt()));
    O.insert(QStringLiteral("commentPoly"), Vertices(Cm->CommentPoly().List()));
  }
  return O;
}


QJsonObject BarJson(const TDrawSetBar& B, const TVectorDrawing& ADrawing) {
  QString Info = B.BarInfo();
  if (B.BarInfoVDID() >= 0) {
    const auto* T = dynamic_cast<const TVectorText*>(ADrawing.ItemByID(B.BarInfoVDID()));
    Info = T ? T->Text() : QString();
  }
  return QJsonObject{{QStringLiteral("barId"), B.BarID()},       {QStringLiteral("barNum"), B.BarNum()},
                     {QStringLiteral("barPicId"), B.BarPicID()}, {QStringLiteral("items"), B.BarVDID()},
                     {QStringLiteral("infoItem"), B.BarInfoVDID()}, {QStringLiteral("barInfo"), Info},
                     {QStringLiteral("orderNum"), B.OrderNum()}, {QStringLiteral("remark"), B.BarRemark()},
                     {QStringLiteral("script"), B.CalcProgram()}};
}

QJsonObject ParamJson(const TDrawSetParam& P) {
  return QJsonObject{{QStringLiteral("paramId"), P.ParamID()},   {QStringLiteral("code"), P.ParamCode()},
                     {QStringLiteral("item"), P.ParamVDID()},     {QStringLiteral("value"), P.ParamVal()},
                     {QStringLiteral("unit"), P.Unit()},          {QStringLiteral("dataType"), P.DataType()},
                     {QStringLiteral("validateExpr"), P.ValidateExpr()},
                     {QStringLiteral("invalidMsg"), P.InvalidMsg()}, {QStringLiteral("orderNum"), P.OrderNum()}};
}
