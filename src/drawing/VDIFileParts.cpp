// The file forms of the item classes: the header every item shares and each
// class's part, in binary and in XML.
#include "SelkaXMLDoc.h"
#include "KRNExceptions.h"
#include "VDIFormat.h"
#include "VDIHatch.h"
#include "VDILine.h"
#include "VDIPoint.h"
#include "VDIText.h"
#include "VectorDrawing.h"

#include <algorithm>

// ---- the header -------------------------------------------------------------

void TVectorDrawingItem::LoadFromStream(TVDReader& AReader) {
  ReadFromStream(AReader);
  Changed(true);
}

void TVectorDrawingItem::LoadFromXMLNode(IXMLNode& ANode) {
  ReadFromXMLNode(ANode);
  Changed(true);
}

// The numeric version tests are plain comparisons of the version number.
void TVectorDrawingItem::ReadFromStream(TVDReader& R) {
  const double V = R.VersionNumber();
  const bool HasBlock = V > 1.45;
  TVDReader::TFields F = R.Take(HasBlock ? 20 : 12);
  FID = F.I32();
  if (HasBlock) {
    FBlockTypeID = F.I32();
    FBlockID = F.I32();
  }
  const qint32 Layer = F.I32();
  FColor = F.U32();
  FLayer = FOwner == &R.Drawing() ? R.Layer(Layer) : FOwner ? FOwner->Layers().GetItemByID(Layer) : nullptr;
  if (R.ItemsHaveExtData()) FExtData = R.Str(4);
  const bool HasRelation = V >= 1.6, HasEnable = V > 1.7, HasScale = V > 1.9;
  TVDReader::TFields G = R.Take((HasRelation ? 4 : 0) + (HasEnable ? 4 : 0) + (HasScale ? 8 : 0));
  FRelationID = HasRelation ? G.I32() : -1;
  if (HasEnable) FEnableType = G.I32();
  if (HasScale) FCurrentScale = G.F64();
}

void TVectorDrawingItem::WriteToStream(TVDWriter& W) const {
  W.U8(quint8(ItemType()));
  W.I32(FID);
  W.I32(FBlockTypeID);
  W.I32(FBlockID);
  W.I32(FLayer ? FLayer->ID() : 0);
  W.U32(FColor);
  W.Str(FExtData, 4);
  W.I32(FRelationID);
  W.I32(FEnableType);
  W.F64(FCurrentScale);
}

void TVectorDrawingItem::ReadFromXMLNode(IXMLNode& N) {
  const TVDTags& T = VDTags();
  FID = int(N.AttrAsInteger(T.ID));
  if (N.HasAttr(QStringLiteral("BlockTypeID"))) FBlockTypeID = int(N.AttrAsInteger(QStringLiteral("BlockTypeID")));
  if (N.HasAttr(QStringLiteral("BlcokID"))) FBlockID = int(N.AttrAsInteger(QStringLiteral("BlcokID")));
  const int Layer = int(N.AttrAsInteger(T.LayerID));
  FLayer = FOwner ? FOwner->Layers().GetItemByID(Layer) : nullptr;
  FColor = TColor(N.AttrAsInteger(T.Color));
  FRelationID = int(N.AttrAsInteger(T.RelationID));
  FEnableType = int(N.AttrAsInteger(T.EnableType));
  FCurrentScale = N.AttrAsFloat(T.CurrentScale);
  FExtData = N.Text();
}

void TVectorDrawingItem::WriteXMLAttributes(TVDXMLOut& N) const {
  const TVDTags& T = VDTags();
  N.Int(T.ItemType, ItemType());
  N.Int(T.ID, FID);
  N.Int(QStringLiteral("BlockTypeID"), FBlockTypeID);
  N.Int(QStringLiteral("BlcokID"), FBlockID);
  N.Int(T.LayerID, FLayer ? FLayer->ID() : 0);
  N.Int(T.Color, FColor);
  N.Int(T.RelationID, FRelationID);
  N.Int(T.EnableType, FEnableType);
  N.Float(T.CurrentScale, FCurrentScale);
}

void TVectorDrawingItem::WriteToXML(TVDXMLOut& AOut) const {
  WriteXMLAttributes(AOut);
  if (!FExtData.isEmpty()) AOut.Text(FExtData);
}

// ---- points and circles -----------------------------------------------------

void TVectorPoint::ReadFromStream(TVDReader& R) {
  TVectorDrawingItem::ReadFromStream(R);
  TVDReader::TFields F = R.Take(19);
  FInsertPt = F.Point();
  FSize = F.I16();
  FPointStyle = F.U8() == 1 ? psCross : psPoint;
}

void TVectorPoint::WriteToStream(TVDWriter& W) const {
  TVectorDrawingItem::WriteToStream(W);
  W.Point(FInsertPt);
  W.I16(FSize);
  W.U8(quint8(FPointStyle));
}

void TVectorPoint::ReadFromXMLNode(IXMLNode& N) {
  TVectorDrawingItem::ReadFromXMLNode(N);
  const TVDTags& T = VDTags();
  FInsertPt = VDTextPoint(N.AttrAsView(T.InsertPt));
  FSize = qint16(N.AttrAsInteger(T.PointSize));
  FPointStyle = N.AttrAsInteger(T.PointStyle) == 1 ? psCross : psPoint;
}

void TVectorPoint::WriteXMLAttributes(TVDXMLOut& N) const {
  TVectorDrawingItem::WriteXMLAttributes(N);
  const TVDTags& T = VDTags();
  N.Point(T.InsertPt, FInsertPt);
  N.Int(T.PointSize, FSize);
  N.Int(T.PointStyle, FPointStyle);
}

void TVectorCircle::ReadFromStream(TVDReader& R) {
  TVectorDrawingItem::ReadFromStream(R);
  TVDReader::TFields F = R.Take(27);
  FLineWidth = F.I16();
  FLineStyle = F.U8();
  FCenterPt = F.Point();
  FRadius = F.F64();
}

void TVectorCircle::WriteToStream(TVDWriter& W) const {
  TVectorDrawingItem::WriteToStream(W);
  W.I16(FLineWidth);
  W.U8(FLineStyle);
  W.Point(FCenterPt);
  W.F64(FRadius);
}

void TVectorCircle::ReadFromXMLNode(IXMLNode& N) {
  TVectorDrawingItem::ReadFromXMLNode(N);
  const TVDTags& T = VDTags();
  FLineWidth = qint16(N.AttrAsInteger(T.LineWidth));
  FLineStyle = quint8(N.AttrAsInteger(T.LineStyle));
  FCenterPt = VDTextPoint(N.AttrAsView(T.CenterPt));
  FRadius = N.AttrAsFloat(T.Radius);
}

void TVectorCircle::WriteXMLAttributes(TVDXMLOut& N) const {
  TVectorDrawingItem::WriteXMLAttributes(N);
  const TVDTags& T = VDTags();
  N.Int(T.LineWidth, FLineWidth);
  N.Int(T.LineStyle, FLineStyle);
  N.Point(T.CenterPt, FCenterPt);
  N.Float(T.Radius, FRadius);
}

// ---- text and comment -------------------------------------------------------

// Bold and italic give 3, bold 1, italic 2, otherwise 0.
static int FontStyleByte(int AStyle) { return AStyle & (fsBold | fsItalic); }

void TVectorText::ReadFromStream(TVDReader& R) {
  TVectorDrawingItem::ReadFromStream(R);
  FText = R.Str(2);
  TVDReader::TFields F = R.Take(24);
  FHeight = F.I16();
  FAngle = F.F32();
  FInsertPt = F.Point();
  FHorzAlignment = THorzAlignment(std::min<int>(F.U8(), haCenter));
  FVertAlignment = TVertAlignment(std::min<int>(F.U8(), vaCenter));
  FFontName = R.SharedStr(1);
  const bool HasFloatHeight = R.TextsHaveFloatHeight();
  TVDReader::TFields G = R.Take(HasFloatHeight ? 10 : 6);
  FFontStyle = G.U8() & 3;
  FTransparent = G.U8() != 0;
  FBackColor = G.U32();
  FFloatHeight = HasFloatHeight ? G.F32() : 0;
}

void TVectorText::WriteToStream(TVDWriter& W) const {
  TVectorDrawingItem::WriteToStream(W);
  W.Str(FText, 2);
  W.I16(FHeight);
  W.F32(FAngle);
  W.Point(FInsertPt);
  W.U8(quint8(FHorzAlignment));
  W.U8(quint8(FVertAlignment));
  W.Str(FFontName, 1);
  W.U8(quint8(FontStyleByte(FFontStyle)));
  W.U8(FTransparent ? 1 : 0);
  W.U32(FBackColor);
  W.F32(FFloatHeight);
}

void TVectorText::ReadFromXMLNode(IXMLNode& N) {
  TVectorDrawingItem::ReadFromXMLNode(N);
  const TVDTags& T = VDTags();
  const TVectorDrawing& D = *FOwner;
  FText = VDDecodeText(N.AttrAsString(T.Text), D, 1.3);
  FAngle = float(N.AttrAsFloat(T.Angle));
  FHeight = qint16(N.AttrAsInteger(T.FontHeight));
  // The float height may stand under "FontFloatHeight" or under an empty name.
  QStringView Float = N.AttrAsView(T.FontFloatHeight);
  if (Float.isEmpty()) Float = N.AttrAsView(T.FontFloatHeight.isEmpty() ? QStringLiteral("FontFloatHeight") : QString());
  FFloatHeight = float(StrToFloatDef(Float, 0.0));
  FFontName = VDDecodeText(N.AttrAsString(T.FontName), D, 1.4);
  FFontStyle = int(N.AttrAsInteger(T.FontStyle)) & 3;
  FBackColor = TColor(N.AttrAsInteger(T.BackColor));
  FTransparent = N.AttrAsBoolean(T.Transparent);
  FHorzAlignment = THorzAlignment(std::clamp<qint64>(N.AttrAsInteger(T.HorzAlignment), 0, haCenter));
  FVertAlignment = TVertAlignment(std::clamp<qint64>(N.AttrAsInteger(T.VertAlignment), 0, vaCenter));
  FInsertPt = VDTextPoint(N.AttrAsView(T.InsertPt));
}

void TVectorText::WriteXMLAttributes(TVDXMLOut& N) const {
  TVectorDrawingItem::WriteXMLAttributes(N);
  const TVDTags& T = VDTags();
  N.Str(T.Text, VDEncodeText(FText));
  N.Float(T.Angle, FAngle);
  N.Int(T.FontHeight, FHeight);
  N.Float(T.FontFloatHeight, FFloatHeight);
  N.Str(T.FontName, VDEncodeText(FFontName));
  N.Int(T.FontStyle, FontStyleByte(FFontStyle));
  N.Int(T.BackColor, FBackColor);
  N.Bool(T.Transparent, FTransparent);
  N.Int(T.HorzAlignment, FHorzAlignment);
  N.Int(T.VertAlignment, FVertAlignment);
  N.Point(T.InsertPt, FInsertPt);
}

void TVectorComment::ReadFromXMLNode(IXMLNode& N) {
  TVectorDrawingItem::ReadFromXMLNode(N);
  const TVDTags& T = VDTags();
  FText = VDDecodeText(N.AttrAsString(T.Text), *FOwner, 1.3);
  FDate = N.AttrAsString(QStringLiteral("Date"));
  FInsertPt = VDTextPoint(N.AttrAsView(T.InsertPt));
  VDTextVertices(N.AttrAsView(QStringLiteral("CommentPoly")), FCommentPoly->List());
}

void TVectorComment::WriteXMLAttributes(TVDXMLOut& N) const {
  TVectorDrawingItem::WriteXMLAttributes(N);
  const TVDTags& T = VDTags();
  N.Str(T.Text, VDEncodeText(FText));
  N.Str(QStringLiteral("Date"), FDate);
  N.Point(T.InsertPt, FInsertPt);
  N.Vertices(QStringLiteral("CommentPoly"), FCommentPoly->List(), false);
}

// ---- hatches ----------------------------------------------------------------

void TVectorHatch::ReadFromStream(TVDReader& R) {
  TVectorDrawingItem::ReadFromStream(R);
  FFillStyle = R.U8();
  R.VertexList(FXPoly->List());
}

void TVectorHatch::WriteToStream(TVDWriter& W) const {
  TVectorDrawingItem::WriteToStream(W);
  W.U8(FFillStyle);
  W.VertexList(FXPoly->List());
}

void TVectorHatch::ReadFromXMLNode(IXMLNode& N) {
  TVectorDrawingItem::ReadFromXMLNode(N);
  const TVDTags& T = VDTags();
  FFillStyle = quint8(N.AttrAsInteger(T.FillStyle));
  VDTextVertices(N.AttrAsView(T.XPoly), FXPoly->List());
}

// Only straight vertices are written: a boundary with arcs loses those vertices here.
void TVectorHatch::WriteXMLAttributes(TVDXMLOut& N) const {
  TVectorDrawingItem::WriteXMLAttributes(N);
  const TVDTags& T = VDTags();
  N.Int(T.FillStyle, FFillStyle);
  N.Vertices(T.XPoly, FXPoly->List(), true);
}

void TVectorHatchM::ReadFromXMLNode(IXMLNode& N) {
  TVectorDrawingItem::ReadFromXMLNode(N);
  FHatchStyle = quint8(N.AttrAsInteger(QStringLiteral("HchStyle")));
  FXPoly->Clear();
  QString Polys = N.AttrAsString(QStringLiteral("HchPoly"));
  Polys.remove(u' ');
  for (const QString& P : Polys.split(u'&', Qt::SkipEmptyParts)) {
    auto Poly = std::make_unique<TKRNPolygon2d>();
    try {
      Poly->LoadFromString(P.toStdString());
    } catch (const std::exception&) {
      throw EVDEError(QString::fromUtf8(SKRNPolygonStringError));
    }
    FXPoly->Add(Poly.release());
  }
  FHatchPatternData = N.AttrAsString(QStringLiteral("HchPattern")).split(u'&', Qt::SkipEmptyParts);
}

void TVectorHatchM::WriteXMLAttributes(TVDXMLOut& N) const {
  TVectorDrawingItem::WriteXMLAttributes(N);
  N.Int(QStringLiteral("HchStyle"), FHatchStyle);
  QStringList Polys;
  for (int I = 0; I < FXPoly->Count(); ++I) Polys << QString::fromStdString(FXPoly->GetItems(I)->AsString());
  N.Str(QStringLiteral("HchPoly"), Polys.join(u'&'));
  N.Str(QStringLiteral("HchPattern"), FHatchPatternData.join(u'&'));
}

// ---- lines ------------------------------------------------------------------

static TMarkStyle MarkStyleOf(int AValue) { return AValue >= msNone && AValue <= msHoop ? TMarkStyle(AValue) : msNone; }

void TVectorLineBase::ReadLineBase(TVDReader& R) {
  if (R.OldLongTags()) {
    TVDReader::TFields F = R.Take(7);
    FLineWidth = F.I16();
    FLineStyle = F.U8();
    // MarkPos, one size for both ends, MarkStyle + 1 for each end that has a mark
    const quint8 Pos = F.U8();
    const qint16 Size = F.I16();
    const TMarkStyle Style = MarkStyleOf(F.U8() + 1);
    FStartMarkSize = FEndMarkSize = Size;
    FStartMarkStyle = (Pos == 1 || Pos == 3) ? Style : msNone;
    FEndMarkStyle = (Pos == 2 || Pos == 3) ? Style : msNone;
    FPrevItemID = FNextItemID = -1;
    return;
  }
  const bool HasLinks = R.VersionNumber() >= 2.1;
  TVDReader::TFields F = R.Take(HasLinks ? 17 : 9);
  FLineWidth = F.I16();
  FLineStyle = F.U8();
  FStartMarkSize = F.I16();
  FEndMarkSize = F.I16();
  FStartMarkStyle = MarkStyleOf(F.U8());
  FEndMarkStyle = MarkStyleOf(F.U8());
  if (HasLinks) {
    FPrevItemID = F.I32();
    FNextItemID = F.I32();
  } else {
    FPrevItemID = FNextItemID = -1;
  }
}

void TVectorLineBase::WriteLineBase(TVDWriter& W) const {
  W.I16(FLineWidth);
  W.U8(FLineStyle);
  W.I16(FStartMarkSize);
  W.I16(FEndMarkSize);
  W.U8(quint8(FStartMarkStyle));
  W.U8(quint8(FEndMarkStyle));
  W.I32(FPrevItemID);
  W.I32(FNextItemID);
}

void TVectorLineBase::ReadLineBase(IXMLNode& N) {
  const TVDTags& T = VDTags();
  FLineWidth = qint16(N.AttrAsInteger(T.LineWidth));
  FLineStyle = quint8(N.AttrAsInteger(T.LineStyle));
  if (IsOldLongTagVersion(FOwner->Version())) {
    const qint64 Pos = N.AttrAsInteger(QStringLiteral("MarkPos"));
    const TMarkStyle Style = MarkStyleOf(int(N.AttrAsInteger(QStringLiteral("MarkStyle"))) + 1);
    FStartMarkSize = FEndMarkSize = qint16(N.AttrAsInteger(QStringLiteral("MarkSize")));
    FStartMarkStyle = (Pos == 1 || Pos == 3) ? Style : msNone;
    FEndMarkStyle = (Pos == 2 || Pos == 3) ? Style : msNone;
    FPrevItemID = FNextItemID = 0;  // a missing attribute reads as 0
    return;
  }
  FStartMarkStyle = MarkStyleOf(int(N.AttrAsInteger(T.StartMarkStyle)));
  FEndMarkStyle = MarkStyleOf(int(N.AttrAsInteger(T.EndMarkStyle)));
  FStartMarkSize = qint16(N.AttrAsInteger(T.StartMarkSize));
  FEndMarkSize = qint16(N.AttrAsInteger(T.EndMarkSize));
  FPrevItemID = int(N.AttrAsInteger(T.PrevItemID));
  FNextItemID = int(N.AttrAsInteger(T.NextItemID));
}

void TVectorLineBase::WriteLineBase(TVDXMLOut& N) const {
  const TVDTags& T = VDTags();
  N.Int(T.LineWidth, FLineWidth);
  N.Int(T.LineStyle, FLineStyle);
  N.Int(T.StartMarkStyle, FStartMarkStyle);
  N.Int(T.EndMarkStyle, FEndMarkStyle);
  N.Int(T.StartMarkSize, FStartMarkSize);
  N.Int(T.EndMarkSize, FEndMarkSize);
  N.Int(T.PrevItemID, FPrevItemID);
  N.Int(T.NextItemID, FNextItemID);
}

void TVectorLine::ReadFromStream(TVDReader& R) {
  TVectorDrawingItem::ReadFromStream(R);
  ReadLineBase(R);
  TVDReader::TFields F = R.Take(32);
  const TKRNVector2d S = F.Point();
  FXLine->SetStartPt(S);
  FXLine->SetEndPt(F.Point());
}

void TVectorLine::WriteToStream(TVDWriter& W) const {
  TVectorDrawingItem::WriteToStream(W);
  WriteLineBase(W);
  W.Point(FXLine->StartPt());
  W.Point(FXLine->EndPt());
}

void TVectorLine::ReadFromXMLNode(IXMLNode& N) {
  TVectorDrawingItem::ReadFromXMLNode(N);
  ReadLineBase(N);
  TKRNVector2d S, E;
  VDTextLine(N.AttrAsView(VDTags().Line), S, E);
  FXLine->SetStartPt(S);
  FXLine->SetEndPt(E);
}

void TVectorLine::WriteXMLAttributes(TVDXMLOut& N) const {
  TVectorDrawingItem::WriteXMLAttributes(N);
  WriteLineBase(N);
  N.Line(VDTags().Line, FXLine->StartPt(), FXLine->EndPt());
}

void TVectorArc::ReadFromStream(TVDReader& R) {
  TVectorLine::ReadFromStream(R);
  TVDReader::TFields F = R.Take(9);
  const double Radius = F.F64();
  const quint8 T = F.U8();
  if (T > atCL) throw EVDEError(SVDInvalidStream);
  Arc().SetArcType(TKRNArcType(T));
  Arc().SetRadius(T != atLine ? Radius : 0);
}

void TVectorArc::WriteToStream(TVDWriter& W) const {
  TVectorLine::WriteToStream(W);
  W.F64(Arc().Radius());
  W.U8(Arc().ArcType());
}

void TVectorArc::ReadFromXMLNode(IXMLNode& N) {
  TVectorLine::ReadFromXMLNode(N);
  const TVDTags& T = VDTags();
  const qint64 Type = N.AttrAsInteger(T.ArcType);
  Arc().SetArcType(Type >= atLine && Type <= atCL ? TKRNArcType(Type) : atLine);
  Arc().SetRadius(N.AttrAsFloat(T.Radius));
}

void TVectorArc::WriteXMLAttributes(TVDXMLOut& N) const {
  TVectorLine::WriteXMLAttributes(N);
  const TVDTags& T = VDTags();
  N.Float(T.Radius, Arc().Radius());
  N.Int(T.ArcType, Arc().ArcType());
}

void TVectorPolyline::ReadFromStream(TVDReader& R) {
  TVectorDrawingItem::ReadFromStream(R);
  ReadLineBase(R);
  R.VertexList(FPolyline->List());
  RefillEdges();
}

void TVectorPolyline::WriteToStream(TVDWriter& W) const {
  TVectorDrawingItem::WriteToStream(W);
  WriteLineBase(W);
  W.VertexList(FPolyline->List());
}

void TVectorPolyline::ReadFromXMLNode(IXMLNode& N) {
  TVectorDrawingItem::ReadFromXMLNode(N);
  ReadLineBase(N);
  VDTextVertices(N.AttrAsView(VDTags().Polyline), FPolyline->List());
  RefillEdges();
}

void TVectorPolyline::WriteXMLAttributes(TVDXMLOut& N) const {
  TVectorDrawingItem::WriteXMLAttributes(N);
  WriteLineBase(N);
  N.Vertices(VDTags().Polyline, FPolyline->List(), false);
}
