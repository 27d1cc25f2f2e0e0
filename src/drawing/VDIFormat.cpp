#include "VDIFormat.h"

#include "SelkaXMLDoc.h"

#include "SelkaStreamUtils.h"
#include "VectorDrawing.h"

#include <QStringDecoder>

#include <cmath>
#include <cstring>
#include <limits>

const QString SVDInvalidStream = QStringLiteral("非法矢量图流格式");
const QString SVDInvalidXML = QStringLiteral("XML格式非法");

// ---- reading ----------------------------------------------------------------

TVDReader::TVDReader(TStream& AStream, const TVectorDrawing& ADrawing) : FStream(AStream), FDrawing(ADrawing) {
  if (const auto* B = dynamic_cast<const TBytesStream*>(&AStream)) {
    FData = B->Bytes().constData();
    FSize = B->Bytes().size();
    FPos = AStream.GetPosition();
  }
  VersionRead();
}

void TVDReader::VersionRead() {
  FVersionNumber = FDrawing.ConvertedVersion();
  FItemsHaveExtData = FDrawing.Version() != QLatin1String("1.0");
  FOldLongTags = IsOldLongTagVersion(FDrawing.Version());
  FTextsHaveFloatHeight = FDrawing.CompareVersion(2.2) != -1;
  FUtf8Strings = FDrawing.CompareVersion(1.9) != -1;
  FLastLayer = nullptr;
  FHasShared = false;
}

TLayer* TVDReader::Layer(int AID) {
  if (!FLastLayer || FLastLayerID != AID) {
    FLastLayer = FDrawing.Layers().GetItemByID(AID);
    FLastLayerID = AID;
    if (!FLastLayer) return nullptr;
  }
  return FLastLayer;
}

TVDReader::~TVDReader() {
  if (FData) FStream.SetPosition(FPos);
}

void TVDReader::Read(void* ABuffer, qint64 ACount) {
  if (FData) {
    if (ACount < 0 || ACount > FSize - FPos) throw EVDEError(SVDInvalidStream);
    std::memcpy(ABuffer, FData + FPos, size_t(ACount));
    FPos += ACount;
    return;
  }
  if (ACount < 0 || ACount > Remaining() || FStream.Read(ABuffer, ACount) != ACount) throw EVDEError(SVDInvalidStream);
}

TVDReader::TFields TVDReader::TakeSlow(qint64 ACount) {
  if (ACount > MaxFields) throw EVDEError(SVDInvalidStream);
  Read(FFieldBuffer, ACount);
  return TFields(FFieldBuffer);
}

qint64 TVDReader::Remaining() const {
  return FData ? FSize - FPos : FStream.GetSize() - const_cast<TStream&>(FStream).GetPosition();
}

void TVDReader::CheckCount(qint64 ACount, int AMinSize) {
  if (ACount < 0 || ACount > Remaining() / std::max(1, AMinSize)) throw EVDEError(SVDInvalidStream);
}

quint32 TVDReader::Length(int ALenSize) {
  if (FData && FSize - FPos >= 4) {  // one load whatever the size, then the size's bytes
    quint32 L;
    std::memcpy(&L, FData + FPos, 4);
    FPos += ALenSize;
    return ALenSize == 4 ? L : ALenSize == 2 ? L & 0xFFFF : L & 0xFF;
  }
  quint32 Len = 0;
  Read(&Len, ALenSize);
  return Len;
}

QByteArray TVDReader::Bytes(int ALenSize) {
  const quint32 Len = Length(ALenSize);
  if (qint64(Len) > Remaining()) throw EVDEError(SVDInvalidStream);
  QByteArray B(qsizetype(Len), Qt::Uninitialized);
  Read(B.data(), Len);
  return B;
}

QString TVDReader::Utf8Str(int ALenSize) {
  if (FData) {  // decoded where the bytes are
    const quint32 Len = Length(ALenSize);
    if (qint64(Len) > FSize - FPos) throw EVDEError(SVDInvalidStream);
    const QByteArrayView B(FData + FPos, qsizetype(Len));
    FPos += Len;
    return Len == 0 ? QString() : QString::fromUtf8(B);
  }
  return QString::fromUtf8(Bytes(ALenSize));
}

QString TVDReader::SharedStr(int ALenSize) {
  if (!FData) return Str(ALenSize);
  const quint32 Len = Length(ALenSize);
  if (qint64(Len) > FSize - FPos) throw EVDEError(SVDInvalidStream);
  const QByteArrayView B(FData + FPos, qsizetype(Len));
  if (!FHasShared || B != FSharedBytes) {
    FShared = !FUtf8Strings ? QStringDecoder("GBK")(B) : Len == 0 ? QString() : QString::fromUtf8(B);
    FSharedBytes = B.toByteArray();
    FHasShared = true;
  }
  FPos += Len;
  return FShared;
}

QString TVDReader::Str(int ALenSize) {
  if (FUtf8Strings) return Utf8Str(ALenSize);
  return QStringDecoder("GBK")(Bytes(ALenSize));
}


void TVDReader::VertexList(TKRNVertex2dList& AList) {
  AList.Clear();
  const quint16 N = U16();
  CheckCount(N, 17);
  AList.Reserve(N);
  for (int I = 0; I < N; ++I) {
    TFields F = Take(17);
    const quint8 T = F.U8();
    if (T > atCL) throw EVDEError(SVDInvalidStream);
    const TKRNVector2d P = F.Point();
    if (T == atLine) AList.AddLinePoint(P);
    else AList.AddArcPoint(P, TKRNArcType(T), F64());
  }
}

// ---- writing ----------------------------------------------------------------

void TVDWriter::Str(const QString& S, int ALenSize) { WriteStrToStream(S, FStream, ALenSize); }

void TVDWriter::VertexList(const TKRNVertex2dList& AList) {
  U16(quint16(std::min(AList.Count(), 65535)));
  for (int I = 0; I < std::min(AList.Count(), 65535); ++I) {
    const TKRNVertex2d* V = AList[I];
    // An elliptic vertex is written as a straight one.
    const TKRNArcType T = V->VertexType() == vtArc ? V->ArcType() : atLine;
    U8(T);
    Point(V->Point());
    if (T != atLine) F64(V->Radius());
  }
}

// ---- tags -------------------------------------------------------------------

TVDTags& VDTags() {
  static TVDTags Tags;
  return Tags;
}

bool IsOldLongTagVersion(const QString& AVersion) {
  const QStringView V = QStringView(AVersion).trimmed();
  return V == u"1.0" || V == u"1.1";
}

void SetVDTagTable(const QString& AVersion) {
  TVDTags& T = VDTags();
  if (IsOldLongTagVersion(AVersion)) {
    T.Item = QStringLiteral("Item"); T.ItemType = QStringLiteral("ItemType"); T.ID = QStringLiteral("ID");
    T.LayerID = QStringLiteral("LayerID"); T.Color = QStringLiteral("Color"); T.InsertPt = QStringLiteral("InsertPt");
    T.PointSize = QStringLiteral("PointSize"); T.PointStyle = QStringLiteral("PointStyle"); T.Line = QStringLiteral("Line");
    T.CenterPt = QStringLiteral("CenterPt"); T.Radius = QStringLiteral("Radius"); T.ArcType = QStringLiteral("LineType");
    T.LineWidth = QStringLiteral("LineWidth"); T.LineStyle = QStringLiteral("LineStyle"); T.XPoly = QStringLiteral("XPoly");
    T.Polyline = QStringLiteral("Polyline"); T.FillStyle = QStringLiteral("FillStyle"); T.Text = QStringLiteral("Text");
    T.Angle = QStringLiteral("Angle"); T.FontName = QStringLiteral("FontName"); T.FontHeight = QStringLiteral("FontHeight");
    T.FontStyle = QStringLiteral("FontStyle"); T.Transparent = QStringLiteral("Transparent");
    T.BackColor = QStringLiteral("BackColor"); T.HorzAlignment = QStringLiteral("HorzAlignment");
    T.VertAlignment = QStringLiteral("VertAlignment");
    T.FontFloatHeight = QStringLiteral("FontFloatHeight");
  } else {
    T.Item = QStringLiteral("DI"); T.ItemType = QStringLiteral("DIT"); T.ID = QStringLiteral("ID");
    T.LayerID = QStringLiteral("LID"); T.Color = QStringLiteral("Cl"); T.InsertPt = QStringLiteral("IP");
    T.PointSize = QStringLiteral("PS"); T.PointStyle = QStringLiteral("PST"); T.Line = QStringLiteral("Ln");
    T.CenterPt = QStringLiteral("CP"); T.Radius = QStringLiteral("R"); T.ArcType = QStringLiteral("LT");
    T.LineWidth = QStringLiteral("LW"); T.LineStyle = QStringLiteral("LS"); T.XPoly = QStringLiteral("Poly");
    T.Polyline = QStringLiteral("PL"); T.FillStyle = QStringLiteral("FS"); T.Text = QStringLiteral("T");
    T.Angle = QStringLiteral("A"); T.FontName = QStringLiteral("FN"); T.FontHeight = QStringLiteral("FH");
    T.FontStyle = QStringLiteral("FS"); T.Transparent = QStringLiteral("Tp"); T.BackColor = QStringLiteral("BC");
    T.HorzAlignment = QStringLiteral("HA"); T.VertAlignment = QStringLiteral("VA");
    T.StartMarkStyle = QStringLiteral("SMST"); T.EndMarkStyle = QStringLiteral("EMST");
    T.StartMarkSize = QStringLiteral("SMS"); T.EndMarkSize = QStringLiteral("EMS"); T.RelationID = QStringLiteral("RID");
    T.EnableType = QStringLiteral("EType"); T.CurrentScale = QStringLiteral("CurrentScale");
    T.PrevItemID = QStringLiteral("PrevItemID"); T.NextItemID = QStringLiteral("NextItemID");
  }
}

// ---- text forms -------------------------------------------------------------

// Numbers in the XML form keep six decimals at most.
static void AppendNumber(QString& AOut, double AValue) { AppendFloatFixed(AOut, AValue, 6); }

QString VDNumberText(double AValue) {
  QString R;
  AppendNumber(R, AValue);
  return R;
}

static double Field(QStringView S) { return StrToFloatDef(S, 0.0); }

// The comma-separated fields of a text, read without copies; absent fields are empty.
template <int N>
static void Fields(QStringView AText, QStringView (&AOut)[N]) {
  qsizetype Start = 0;
  for (int I = 0; I < N; ++I) {
    if (Start > AText.size()) {
      AOut[I] = QStringView();
      continue;
    }
    qsizetype Comma = AText.indexOf(u',', Start);
    if (Comma < 0) Comma = AText.size();
    AOut[I] = AText.mid(Start, Comma - Start);
    Start = Comma + 1;
  }
}

// Points and vertex lists are written straight into one string.
static void AppendPoint(QString& AOut, const TKRNVector2d& P) {
  AppendNumber(AOut, P.X);
  AOut += u',';
  AppendNumber(AOut, P.Y);
}

QString VDPointText(const TKRNVector2d& P) {
  QString R;
  R.reserve(32);
  AppendPoint(R, P);
  return R;
}

TKRNVector2d VDTextPoint(QStringView AText) {
  QStringView F[2];
  Fields(AText, F);
  return {Field(F[0]), Field(F[1])};
}

static void AppendLine(QString& AOut, const TKRNVector2d& A, const TKRNVector2d& B) {
  AppendPoint(AOut, A);
  AOut += u',';
  AppendPoint(AOut, B);
}

QString VDLineText(const TKRNVector2d& A, const TKRNVector2d& B) {
  QString R;
  R.reserve(64);
  AppendLine(R, A, B);
  return R;
}

void VDTextLine(QStringView AText, TKRNVector2d& A, TKRNVector2d& B) {
  QStringView F[4];
  Fields(AText, F);
  A = {Field(F[0]), Field(F[1])};
  B = {Field(F[2]), Field(F[3])};
}

static void AppendVertexText(QString& R, const TKRNVertex2dList& AList, bool ALineOnly) {
  bool First = true;
  for (int I = 0; I < AList.Count(); ++I) {
    const TKRNVertex2d* V = AList[I];
    const bool Arc = V->VertexType() == vtArc && V->ArcType() != atLine;
    if (ALineOnly && V->VertexType() != vtLine) continue;
    if (!First) R += u';';
    First = false;
    AppendPoint(R, V->Point());
    if (Arc) {
      R += u',';
      AppendNumber(R, V->Radius());
      R += u',';
      R += QChar(u'0' + V->ArcType());  // atACS..atCL: one digit
    } else {
      R += QLatin1StringView(",0,0");
    }
  }
}

QString VDVertexText(const TKRNVertex2dList& AList, bool ALineOnly) {
  QString R;
  R.reserve(qsizetype(AList.Count()) * 40);
  AppendVertexText(R, AList, ALineOnly);
  return R;
}

void VDTextVertices(QStringView AText, TKRNVertex2dList& AList) {
  AList.Clear();
  const QStringView Text(AText);
  qsizetype Start = 0;
  while (Start <= Text.size()) {
    qsizetype End = Text.indexOf(u';', Start);
    if (End < 0) End = Text.size();
    const QStringView Piece = Text.mid(Start, End - Start);
    Start = End + 1;
    if (Piece.isEmpty()) continue;
    QStringView F[4];
    Fields(Piece, F);
    const TKRNVector2d P{Field(F[0]), Field(F[1])};
    const int T = StrToIntDef(F[3], 0);
    if (T == 0) AList.AddLinePoint(P);
    else if (T >= 1 && T <= 4) AList.AddArcPoint(P, TKRNArcType(T), Field(F[2]));
  }
}

QString VDEncodeText(const QString& AText) {
  if (AText.isEmpty()) return QString();
  QByteArray B(qsizetype(AText.size() * 2), Qt::Uninitialized);
  for (qsizetype I = 0; I < AText.size(); ++I) {
    const char16_t C = AText[I].unicode();
    B[2 * I] = char(C & 0xFF);
    B[2 * I + 1] = char(C >> 8);
  }
  return QString::fromLatin1(B.toBase64());
}

QString VDDecodeText(const QString& AValue, const TVectorDrawing& ADrawing, double AThreshold) {
  if (AValue.isEmpty() || ADrawing.CompareVersion(AThreshold) == -1) return AValue;
  const auto Decoded = QByteArray::fromBase64Encoding(AValue.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
  if (ADrawing.CompareVersion(1.9) == -1) return Decoded ? QStringDecoder("GBK")(*Decoded) : AValue;
  // Not Base64 of UTF-16LE (a plain string in a new file): the attribute as it stands.
  const QByteArray& B = *Decoded;
  if (!Decoded || B.size() % 2 != 0 || AValue.contains(QChar(u' '))) return AValue;
  QString S(qsizetype(B.size() / 2), Qt::Uninitialized);
  for (qsizetype I = 0; I < S.size(); ++I) S[I] = QChar(char16_t(quint8(B[2 * I]) | (quint8(B[2 * I + 1]) << 8)));
  return S;
}

// ---- item writers -----------------------------------------------------------

void TVDXMLOut::Int(const QString& AName, qint64 AValue) {
  AppendInt(BeginRaw(AName), AValue);
  EndRaw();
}
void TVDXMLOut::Float(const QString& AName, double AValue) {
  AppendFloatToStr(BeginRaw(AName), AValue);
  EndRaw();
}
void TVDXMLOut::Bool(const QString& AName, bool AValue) {
  BeginRaw(AName) += AValue ? QLatin1StringView("True") : QLatin1StringView("False");
  EndRaw();
}
void TVDXMLOut::Point(const QString& AName, const TKRNVector2d& P) {
  AppendPoint(BeginRaw(AName), P);
  EndRaw();
}
void TVDXMLOut::Line(const QString& AName, const TKRNVector2d& A, const TKRNVector2d& B) {
  AppendLine(BeginRaw(AName), A, B);
  EndRaw();
}
void TVDXMLOut::Vertices(const QString& AName, const TKRNVertex2dList& AList, bool ALineOnly) {
  AppendVertexText(BeginRaw(AName), AList, ALineOnly);
  EndRaw();
}

void TVDNodeOut::Str(const QString& AName, const QString& AValue) { FNode.SetAttr(AName, AValue); }
void TVDNodeOut::Text(const QString& AValue) { FNode.SetText(AValue); }
QString& TVDNodeOut::BeginRaw(const QString& AName) {
  FName = &AName;
  FValue.clear();
  return FValue;
}
void TVDNodeOut::EndRaw() { FNode.SetAttr(*FName, FValue); }

void TVDTextOut::Str(const QString& AName, const QString& AValue) { FOut.Attr(AName, AValue); }
void TVDTextOut::Text(const QString& AValue) { FOut.Text(AValue); }
QString& TVDTextOut::BeginRaw(const QString& AName) { return FOut.BeginRawAttr(AName); }
void TVDTextOut::EndRaw() { FOut.EndRawAttr(); }
